#include "localization/utf.h"

#include <cstdint>

namespace vantle {

void appendUtf8(std::string& out, char32_t codePoint) {
    if ((codePoint >= 0xD800 && codePoint <= 0xDFFF) || codePoint > 0x10FFFF) {
        codePoint = kReplacementCharacter;
    }
    if (codePoint < 0x80) {
        out.push_back(static_cast<char>(codePoint));
    } else if (codePoint < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else if (codePoint < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    }
}

bool isValidUtf8(std::string_view text) {
    std::size_t index = 0;
    while (index < text.size()) {
        const auto lead = static_cast<std::uint8_t>(text[index]);
        std::size_t length = 0;
        char32_t codePoint = 0;
        if (lead < 0x80) {
            ++index;
            continue;
        } else if ((lead & 0xE0) == 0xC0) {
            length = 2;
            codePoint = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3;
            codePoint = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4;
            codePoint = lead & 0x07;
        } else {
            return false;
        }
        if (index + length > text.size()) {
            return false;
        }
        for (std::size_t offset = 1; offset < length; ++offset) {
            const auto continuation = static_cast<std::uint8_t>(text[index + offset]);
            if ((continuation & 0xC0) != 0x80) {
                return false;
            }
            codePoint = (codePoint << 6) | (continuation & 0x3F);
        }
        // Overlong forms, surrogates and values past Unicode are not text.
        static constexpr char32_t kSmallestOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
        if (codePoint < kSmallestOfLength[length] || codePoint > 0x10FFFF ||
            (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
            return false;
        }
        index += length;
    }
    return true;
}

namespace {

std::optional<std::string> decodeUtf16(std::string_view bytes, bool bigEndian) {
    if (bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    auto unitAt = [&](std::size_t index) {
        const auto first = static_cast<std::uint8_t>(bytes[index]);
        const auto second = static_cast<std::uint8_t>(bytes[index + 1]);
        return static_cast<char32_t>(bigEndian ? (first << 8 | second) : (second << 8 | first));
    };
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t index = 0; index < bytes.size(); index += 2) {
        const char32_t unit = unitAt(index);
        if (unit >= 0xDC00 && unit <= 0xDFFF) {
            return std::nullopt;
        }
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            if (index + 2 >= bytes.size()) {
                return std::nullopt;
            }
            const char32_t low = unitAt(index + 2);
            if (low < 0xDC00 || low > 0xDFFF) {
                return std::nullopt;
            }
            appendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
            index += 2;
            continue;
        }
        appendUtf8(text, unit);
    }
    return text;
}

}  // namespace

std::optional<std::string> decodeUnicodeText(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE")) {
        return decodeUtf16(bytes.substr(2), false);
    }
    if (bytes.starts_with("\xFE\xFF")) {
        return decodeUtf16(bytes.substr(2), true);
    }
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    if (!isValidUtf8(bytes)) {
        return std::nullopt;
    }
    return std::string(bytes);
}

}  // namespace vantle
