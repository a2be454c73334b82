#include "ui/appearance_linux.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QPalette>
#include <QStyle>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "services/file_contents.h"
#include "ui/desktop_scheme_linux.h"

namespace vantle {
namespace {

constexpr const char* kPortalService = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kSettingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* kAppearanceGroup = "org.freedesktop.appearance";
constexpr const char* kColorSchemeKey = "color-scheme";
// The portal's answer: 0 no preference, 1 prefers dark, 2 prefers light.
constexpr uint kPrefersDark = 1;

// The portal wraps the value in one or two variants, depending on its version.
uint unwrapScheme(QVariant value) {
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value.toUInt();
}

std::optional<bool> overriddenScheme() {
    const QByteArray scheme = qgetenv("VANTLE_COLOR_SCHEME");
    if (scheme == "dark") {
        return true;
    }
    if (scheme == "light") {
        return false;
    }
    return std::nullopt;
}

std::optional<bool> portalScheme() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return std::nullopt;
    }
    QDBusInterface settings(kPortalService, kPortalPath, kSettingsInterface, bus);
    settings.setTimeout(500);
    const QDBusReply<QVariant> reply = settings.call("Read", kAppearanceGroup, kColorSchemeKey);
    if (!reply.isValid()) {
        return std::nullopt;
    }
    return unwrapScheme(reply.value()) == kPrefersDark;
}

// The style and palette the desktop gave the program, taken before the program first changes
// either, so that the light scheme is the desktop's own look and not a stand-in for it.
struct DesktopLook {
    QString style;
    QPalette palette;
};

const DesktopLook& desktopLook() {
    static const DesktopLook look{QApplication::style()->name(), QApplication::palette()};
    return look;
}

std::filesystem::path userConfigFolder() {
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    if (configured != nullptr && std::filesystem::path(configured).is_absolute()) {
        return configured;
    }
    const char* home = std::getenv("HOME");
    return home != nullptr ? std::filesystem::path(home) / ".config" : std::filesystem::path();
}

std::optional<bool> gtkScheme(const std::filesystem::path& config) {
    if (const char* theme = std::getenv("GTK_THEME")) {
        if (const std::optional<bool> dark = gtkThemeVariablePrefersDark(theme)) {
            return dark;
        }
    }
    for (const char* version : {"gtk-4.0", "gtk-3.0"}) {
        if (const std::optional<bool> dark = gtkSettingsPreferDark(readFileContents(config / version / "settings.ini").value_or(""))) {
            return dark;
        }
    }
    return std::nullopt;
}

std::optional<bool> kdeScheme(const std::filesystem::path& config) {
    return kdeGlobalsPreferDark(readFileContents(config / "kdeglobals").value_or(""));
}

// What the desktop's own settings files say, its own toolkit's first.
std::optional<bool> settingsFilesScheme() {
    const std::filesystem::path config = userConfigFolder();
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    const bool kdeFirst = desktop != nullptr && std::string(desktop).find("KDE") != std::string::npos;
    const std::optional<bool> first = kdeFirst ? kdeScheme(config) : gtkScheme(config);
    return first ? first : (kdeFirst ? gtkScheme(config) : kdeScheme(config));
}

QPalette darkPalette() {
    QPalette palette;
    const QColor window(0x2b, 0x2b, 0x2e);
    const QColor base(0x1f, 0x1f, 0x22);
    const QColor text(0xe8, 0xe8, 0xea);
    const QColor dimmed(0x8a, 0x8a, 0x90);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, dimmed);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3e));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, QColor(0x4a, 0x4a, 0x50));
    palette.setColor(QPalette::Midlight, QColor(0x40, 0x40, 0x45));
    palette.setColor(QPalette::Mid, QColor(0x30, 0x30, 0x34));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x1a));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0xe6, 0xad, 0x00));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::Link, QColor(0xf0, 0xc0, 0x40));
    palette.setColor(QPalette::LinkVisited, QColor(0xd0, 0xa0, 0x30));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, dimmed);
    }
    return palette;
}

}  // namespace

DesktopAppearance::DesktopAppearance(std::function<void()> changed) : changed_(std::move(changed)) {
    if (!changed_) {
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        bus.connect(kPortalService, kPortalPath, kSettingsInterface, "SettingChanged", this,
                    SLOT(settingChanged(QDBusMessage)));
    }
}

bool DesktopAppearance::dark() const {
    if (const std::optional<bool> scheme = overriddenScheme()) {
        return *scheme;
    }
    if (const std::optional<bool> scheme = portalScheme()) {
        return *scheme;
    }
    if (const std::optional<bool> scheme = settingsFilesScheme()) {
        return *scheme;
    }
    return desktopLook().palette.color(QPalette::Window).lightness() < 128;
}

void DesktopAppearance::apply(bool dark) {
    const DesktopLook& desktop = desktopLook();
    if (dark) {
        // Fusion draws every part from the palette, so the dark colours reach every control,
        // whatever the desktop's own style would have made of them.
        if (QApplication::style()->name().compare(QStringLiteral("fusion"), Qt::CaseInsensitive) != 0) {
            QApplication::setStyle(QStringLiteral("Fusion"));
        }
        QApplication::setPalette(darkPalette());
        return;
    }
    if (QApplication::style()->name() != desktop.style) {
        QApplication::setStyle(desktop.style);
    }
    QApplication::setPalette(desktop.palette);
}

void DesktopAppearance::settingChanged(const QDBusMessage& message) {
    const QList<QVariant> arguments = message.arguments();
    if (arguments.size() >= 2 && arguments[0].toString() == kAppearanceGroup &&
        arguments[1].toString() == kColorSchemeKey && changed_) {
        changed_();
    }
}

}  // namespace vantle
