#include "services/login/desktop_entry_linux.h"

#include "services/key_file.h"

namespace vantle {
namespace {

constexpr std::string_view kReservedInExec = " \t\n\"'\\><~|&;$*?#()`";

std::string entryText(std::string_view executablePath, bool hidden) {
    std::string text = "[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Vantle Control\n"
                       "Exec=" +
                       execArgument(executablePath) +
                       "\n"
                       "Terminal=false\n"
                       "X-GNOME-Autostart-enabled=true\n";
    if (hidden) {
        text += "Hidden=true\n";
    }
    return text;
}

}  // namespace

std::string execArgument(std::string_view argument) {
    std::string quoted;
    const bool needsQuotes = argument.empty() || argument.find_first_of(kReservedInExec) != std::string_view::npos;
    if (needsQuotes) {
        quoted.push_back('"');
    }
    for (char c : argument) {
        if (needsQuotes && (c == '"' || c == '`' || c == '$' || c == '\\')) {
            quoted.push_back('\\');
        }
        quoted.push_back(c);
        // A lone percent sign would start a field code such as %f.
        if (c == '%') {
            quoted.push_back('%');
        }
    }
    if (needsQuotes) {
        quoted.push_back('"');
    }
    // The value of every key is a string with escapes of its own, undone before the command
    // line is read.
    std::string value;
    for (char c : quoted) {
        switch (c) {
        case '\\':
            value += "\\\\";
            break;
        case '\n':
            value += "\\n";
            break;
        case '\t':
            value += "\\t";
            break;
        case '\r':
            value += "\\r";
            break;
        default:
            value.push_back(c);
        }
    }
    return value;
}

std::string autostartEntryText(std::string_view executablePath) {
    return entryText(executablePath, false);
}

std::string hiddenAutostartEntryText(std::string_view executablePath) {
    return entryText(executablePath, true);
}

bool entryStartsAtLogin(std::string_view text) {
    bool inMainGroup = false;
    bool mainGroupSeen = false;
    bool hasCommand = false;
    bool switchedOff = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmedOfBlanks(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            inMainGroup = line == "[Desktop Entry]";
            mainGroupSeen = mainGroupSeen || inMainGroup;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!inMainGroup || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmedOfBlanks(line.substr(0, equals));
        const std::string_view value = trimmedOfBlanks(line.substr(equals + 1));
        if (key == "Exec") {
            hasCommand = !value.empty();
        } else if (key == "Hidden") {
            switchedOff = switchedOff || value == "true";
        } else if (key == "X-GNOME-Autostart-enabled") {
            switchedOff = switchedOff || value == "false";
        }
    }
    return mainGroupSeen && hasCommand && !switchedOff;
}

}  // namespace vantle
