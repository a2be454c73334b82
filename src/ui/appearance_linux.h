#pragma once

#include <QObject>
#include <functional>

class QDBusMessage;

namespace vantle {

// The desktop's light or dark preference, from the freedesktop settings portal
// (org.freedesktop.appearance color-scheme), and its changes. Without a portal the running
// style's own palette decides. VANTLE_COLOR_SCHEME=dark or light overrides both, for desktops
// whose portal does not tell.
class DesktopAppearance final : public QObject {
    Q_OBJECT
public:
    // changed runs on the main thread whenever the portal reports a new scheme; without one,
    // nothing listens for the portal's reports.
    explicit DesktopAppearance(std::function<void()> changed);

    // Asks afresh every time; answers within half a second even when the portal hangs.
    bool dark() const;

    // Applies light or dark colours to every window of the program.
    static void apply(bool dark);

private slots:
    // The portal's SettingChanged(group, key, value). Taken as the whole message: a slot with the
    // signal's own argument types is refused by the bus connection, whose check of the variant
    // argument fails, and would never be called.
    void settingChanged(const QDBusMessage& message);

private:
    std::function<void()> changed_;
};

}  // namespace vantle
