#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantle {

// The text without the blanks (spaces, tabs, carriage returns) around it.
std::string_view trimmedOfBlanks(std::string_view text);

// The value of key in [group] of a key file, the INI-like format of desktop entries, GTK's
// settings.ini and KDE's kdeglobals; the last such line wins, lines starting with # or ; are
// comments. Empty when the group has no such key.
std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key);

}  // namespace vantle
