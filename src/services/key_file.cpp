#include "services/key_file.h"

namespace vantle {

std::string_view trimmedOfBlanks(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key) {
    std::optional<std::string> found;
    bool inGroup = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmedOfBlanks(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#' || line.front() == ';') {
            continue;
        }
        if (line.front() == '[') {
            inGroup = line.size() == group.size() + 2 && line.back() == ']' && line.substr(1, group.size()) == group;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (inGroup && equals != std::string_view::npos && trimmedOfBlanks(line.substr(0, equals)) == key) {
            found = std::string(trimmedOfBlanks(line.substr(equals + 1)));
        }
    }
    return found;
}

}  // namespace vantle
