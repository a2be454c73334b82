#pragma once

#include <optional>
#include <string_view>

namespace vantle {

// Whether the desktop prefers dark colours, as the desktops' own settings files say it when no
// settings portal answers. Each reader answers empty when its text says nothing either way.

// A GTK settings.ini ([Settings] gtk-application-prefer-dark-theme, else gtk-theme-name: a
// theme whose name says "dark", as Adwaita-dark does, is dark).
std::optional<bool> gtkSettingsPreferDark(std::string_view settingsIni);

// The GTK_THEME variable: a theme name with an optional variant, such as "Adwaita:dark".
std::optional<bool> gtkThemeVariablePrefersDark(std::string_view theme);

// KDE's kdeglobals: the window background of [Colors:Window] (BackgroundNormal=r,g,b), else the
// name of [General] ColorScheme.
std::optional<bool> kdeGlobalsPreferDark(std::string_view kdeGlobals);

}  // namespace vantle
