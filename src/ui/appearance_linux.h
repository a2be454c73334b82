#pragma once

#include <QObject>
#include <functional>

#include "ui/appearance_source.h"

class QDBusMessage;

namespace vantle {

// The desktop's light or dark preference, from the freedesktop settings portal
// (org.freedesktop.appearance color-scheme), and its changes. Without a portal the desktop's
// own settings files decide (GTK's settings.ini and GTK_THEME, KDE's kdeglobals), and without
// those the palette the desktop gave the program. VANTLE_COLOR_SCHEME=dark or light overrides
// them all, for desktops that tell none of them.
class DesktopAppearance final : public QObject, public AppearanceSource {
    Q_OBJECT
public:
    // changed runs on the main thread whenever the portal reports a new scheme; without one,
    // nothing listens for the portal's reports.
    explicit DesktopAppearance(std::function<void()> changed);

    // Answers within half a second even when the portal hangs.
    bool dark() const override;
    // The light scheme is the desktop's own style and palette.
    void apply(bool dark) override;

private slots:
    // The portal's SettingChanged(group, key, value). Taken as the whole message: a slot with the
    // signal's own argument types is refused by the bus connection, whose check of the variant
    // argument fails, and would never be called.
    void settingChanged(const QDBusMessage& message);

private:
    std::function<void()> changed_;
};

}  // namespace vantle
