#pragma once

#include <QObject>
#include <functional>

class QDBusVariant;

namespace vantle {

// The desktop's light or dark preference, from the freedesktop settings portal
// (org.freedesktop.appearance color-scheme), and its changes. Without a portal the running
// style's own palette decides. VANTLE_COLOR_SCHEME=dark or light overrides both, for desktops
// whose portal does not tell.
class DesktopAppearance final : public QObject {
    Q_OBJECT
public:
    // changed runs on the main thread whenever the portal reports a new scheme.
    explicit DesktopAppearance(std::function<void()> changed);

    // Asks afresh every time; answers within half a second even when the portal hangs.
    bool dark() const;

    // Applies light or dark colours to every window of the program.
    static void apply(bool dark);

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    std::function<void()> changed_;
};

}  // namespace vantle
