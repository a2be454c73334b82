#pragma once

#include <QSystemTrayIcon>
#include <filesystem>
#include <functional>

#include "ui/status_icon.h"

class QMenu;

namespace vantle {

// The program's icon in the desktop's tray (StatusNotifierItem or the older XEmbed tray). A
// click opens or closes the popover; the context menu is the program's main menu.
//
// Made in two steps, so that the icon's window exists as early as possible. The tray draws the
// icon, and its tooltip and menu can be asked for, only once the event loop runs: whatever
// finish() sets before then is all the user ever sees.
class StatusItem final : public QObject, public StatusIcon {
public:
    // Shows the icon at once, with our own "two displays" artwork at one size. iconFolder holds
    // that artwork at every size.
    StatusItem(const std::filesystem::path& iconFolder, std::function<void()> clicked);

    // Gives the icon its tooltip, its context menu and its final artwork: a theme icon named "vantle-control"
    // where the desktop's theme has one, else ours at every size. Called once, before the event
    // loop runs.
    void finish(QMenu* menu) override;

    QRect geometry() const override { return tray_.geometry(); }
    bool visible() const override { return tray_.isVisible(); }

private:
    std::filesystem::path iconFolder_;
    QSystemTrayIcon tray_;
};

}  // namespace vantle
