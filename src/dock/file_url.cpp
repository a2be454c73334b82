#include "dock/file_url.h"

#include <vector>

#include "localization/utf.h"

namespace vantle {
namespace {

bool isAsciiLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }
bool isAsciiAlphanumeric(char c) { return isAsciiLetter(c) || isAsciiDigit(c); }

std::optional<int> hexValue(char c) {
    if (isAsciiDigit(c)) {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return std::nullopt;
}

// The characters a file URL's path keeps as they are; everything else is percent-encoded.
bool isPathCharacter(char c) {
    return isAsciiAlphanumeric(c) || std::string_view("-._~!$&'()*+,;=:@/").find(c) != std::string_view::npos;
}

// The characters that may stand unencoded anywhere in a URL. Brackets belong to an IPv6 host
// only and are checked there.
bool isUrlCharacter(char c) {
    return isAsciiAlphanumeric(c) || std::string_view("-._~:/?#@!$&'()*+,;=").find(c) != std::string_view::npos;
}

bool isWellFormed(std::string_view text, std::size_t authorityEnd) {
    bool fragmentSeen = false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char c = text[index];
        if (c == '%') {
            if (index + 2 >= text.size() || !hexValue(text[index + 1]) || !hexValue(text[index + 2])) {
                return false;
            }
            index += 2;
        } else if (c == '#') {
            if (fragmentSeen) {
                return false;
            }
            fragmentSeen = true;
        } else if ((c == '[' || c == ']') && index < authorityEnd) {
            continue;
        } else if (!isUrlCharacter(c)) {
            return false;
        }
    }
    return true;
}

// The length of the scheme at the start of the text, or 0 when it has none: a letter, then
// letters, digits, "+", "-" or ".", ended by ":".
std::size_t schemeLength(std::string_view text) {
    if (text.empty() || !isAsciiLetter(text.front())) {
        return 0;
    }
    for (std::size_t index = 1; index < text.size(); ++index) {
        const char c = text[index];
        if (c == ':') {
            return index;
        }
        if (!isAsciiAlphanumeric(c) && c != '+' && c != '-' && c != '.') {
            return 0;
        }
    }
    return 0;
}

std::string percentDecoded(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '%' && index + 2 < text.size()) {
            bytes.push_back(static_cast<char>(*hexValue(text[index + 1]) * 16 + *hexValue(text[index + 2])));
            index += 2;
        } else {
            bytes.push_back(text[index]);
        }
    }
    return bytes;
}

std::string standardized(const std::string& path) {
    const bool absolute = !path.empty() && path.front() == '/';
    std::vector<std::string> segments;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t end = path.find('/', start);
        if (end == std::string::npos) {
            end = path.size();
        }
        std::string segment = path.substr(start, end - start);
        if (segment.empty() || segment == ".") {
            // Doubled slashes and references to the current folder say nothing.
        } else if (segment == ".." && absolute) {
            // Above the root there is only the root.
            if (!segments.empty()) {
                segments.pop_back();
            }
        } else {
            segments.push_back(std::move(segment));
        }
        start = end + 1;
    }
    std::string result = absolute ? "/" : "";
    for (std::size_t index = 0; index < segments.size(); ++index) {
        result += (index == 0 ? "" : "/") + segments[index];
    }
    return result;
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t index = 0; index < left.size(); ++index) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(left[index]) != lower(right[index])) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string fileUrlString(std::string_view absolutePath, bool isDirectory) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : absolutePath) {
        if (isPathCharacter(c)) {
            url.push_back(c);
        } else {
            const auto byte = static_cast<unsigned char>(c);
            url.push_back('%');
            url.push_back(kHex[byte >> 4]);
            url.push_back(kHex[byte & 0x0F]);
        }
    }
    if (isDirectory && (url.back() != '/')) {
        url.push_back('/');
    }
    return url;
}

std::optional<std::string> urlPath(std::string_view urlString) {
    if (urlString.empty()) {
        return std::nullopt;
    }
    const std::size_t scheme = schemeLength(urlString);
    std::string_view rest = scheme > 0 ? urlString.substr(scheme + 1) : urlString;
    std::size_t authorityEnd = 0;
    if (rest.starts_with("//")) {
        const std::size_t end = rest.find_first_of("/?#", 2);
        authorityEnd = urlString.size() - rest.size() + (end == std::string_view::npos ? rest.size() : end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
    }
    if (!isWellFormed(urlString, authorityEnd)) {
        return std::nullopt;
    }
    rest = rest.substr(0, rest.find_first_of("?#"));

    std::string path = percentDecoded(rest);
    if (!isValidUtf8(path)) {
        return std::string();
    }
    if (scheme > 0 && equalsIgnoringCase(urlString.substr(0, scheme), "file")) {
        path = standardized(path);
    }
    if (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

}  // namespace vantle
