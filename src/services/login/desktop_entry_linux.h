#pragma once

#include <string>
#include <string_view>

namespace vantle {

// The file name of the program's autostart entry, in an "autostart" folder of the user's or
// the system's configuration folders.
inline constexpr std::string_view kAutostartEntryName = "vantle-control.desktop";

// A desktop entry that starts the program at executablePath at login.
std::string autostartEntryText(std::string_view executablePath);
// The same entry marked hidden: in the user's folder, it keeps an entry of the same name in the
// system's folders from starting the program.
std::string hiddenAutostartEntryText(std::string_view executablePath);

// Whether the desktop session starts the program for this entry: its "Desktop Entry" group has
// a command and is neither hidden nor switched off with GNOME's enabled flag.
bool entryStartsAtLogin(std::string_view text);

// One argument of an entry's Exec value: quoted when it holds a character the desktop's command
// line treats specially, with percent signs doubled and the value's own escapes applied, so
// that any path reaches the program exactly as it is.
std::string execArgument(std::string_view argument);

}  // namespace vantle
