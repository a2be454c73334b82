#pragma once

#include <QSystemTrayIcon>
#include <filesystem>
#include <functional>

class QMenu;

namespace vantle {

// The program's icon in the desktop's tray (StatusNotifierItem or the older XEmbed tray). A
// click opens or closes the popover; the context menu is the program's main menu.
class StatusItem final : public QObject {
public:
    // iconFolder holds our own "two displays" artwork; a theme icon named "vantle-control"
    // replaces it where the desktop's theme has one.
    StatusItem(const std::filesystem::path& iconFolder, QMenu* menu, std::function<void()> clicked);

    // Where the icon sits on the screen; empty while the tray has not placed it.
    QRect geometry() const { return tray_.geometry(); }
    bool visible() const { return tray_.isVisible(); }

private:
    QSystemTrayIcon tray_;
};

}  // namespace vantle
