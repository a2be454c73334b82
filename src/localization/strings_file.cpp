#include "localization/strings_file.h"

#include <cstdint>

#include "localization/utf.h"

namespace vantle {
namespace {

bool isUnquotedCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           c == '/' || c == ':' || c == '.' || c == '-';
}

int hexDigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// A recursive-descent reader over UTF-8 text. Every method returns false (or empty) at the
// first error; the caller then drops the whole table.
class StringsReader {
public:
    explicit StringsReader(std::string_view text) : text_(text) {}

    std::optional<StringTable> readTable() {
        StringTable table;
        if (!skipSpaceAndComments()) return std::nullopt;
        const bool braced = peek() == '{';
        if (braced) {
            ++position_;
        }
        for (;;) {
            if (!skipSpaceAndComments()) return std::nullopt;
            if (atEnd()) {
                if (braced) return std::nullopt;  // the closing brace is missing
                break;
            }
            if (braced && peek() == '}') {
                ++position_;
                if (!skipSpaceAndComments() || !atEnd()) return std::nullopt;
                break;
            }
            if (!readEntry(table)) return std::nullopt;
        }
        return table;
    }

private:
    bool atEnd() const { return position_ >= text_.size(); }
    char peek() const { return atEnd() ? '\0' : text_[position_]; }

    bool readEntry(StringTable& table) {
        std::optional<std::string> key = readString();
        if (!key || !skipSpaceAndComments()) return false;
        if (peek() == ';') {
            ++position_;
            table.insert_or_assign(*key, *key);
            return true;
        }
        if (peek() != '=') return false;
        ++position_;
        if (!skipSpaceAndComments()) return false;
        std::optional<std::string> value = readString();
        if (!value || !skipSpaceAndComments() || peek() != ';') return false;
        ++position_;
        table.insert_or_assign(std::move(*key), std::move(*value));
        return true;
    }

    // A quoted string or an unquoted token; anything else (arrays, dictionaries, data, stray
    // punctuation) is not a string.
    std::optional<std::string> readString() {
        const char first = peek();
        if (first == '"' || first == '\'') {
            return readQuoted(first);
        }
        const std::size_t start = position_;
        while (!atEnd() && isUnquotedCharacter(peek())) {
            ++position_;
        }
        if (position_ == start) return std::nullopt;
        return std::string(text_.substr(start, position_ - start));
    }

    std::optional<std::string> readQuoted(char quote) {
        ++position_;
        std::string result;
        // A \U escape of a high surrogate waits here for its low half; zero when none waits.
        char32_t pendingHighSurrogate = 0;
        auto flushSurrogate = [&] {
            if (pendingHighSurrogate != 0) {
                appendUtf8(result, kReplacementCharacter);
                pendingHighSurrogate = 0;
            }
        };
        while (!atEnd()) {
            const char c = text_[position_++];
            if (c == quote) {
                flushSurrogate();
                return result;
            }
            if (c != '\\') {
                flushSurrogate();
                result.push_back(c);
                continue;
            }
            if (atEnd()) return std::nullopt;
            const char escaped = text_[position_++];
            if (escaped == 'U' || escaped == 'u') {
                const char32_t unit = readHexUnit();
                if (unit >= 0xD800 && unit <= 0xDBFF) {
                    flushSurrogate();
                    pendingHighSurrogate = unit;
                } else if (unit >= 0xDC00 && unit <= 0xDFFF) {
                    if (pendingHighSurrogate != 0) {
                        appendUtf8(result, 0x10000 + ((pendingHighSurrogate - 0xD800) << 10) + (unit - 0xDC00));
                        pendingHighSurrogate = 0;
                    } else {
                        appendUtf8(result, kReplacementCharacter);
                    }
                } else {
                    flushSurrogate();
                    appendUtf8(result, unit);
                }
                continue;
            }
            flushSurrogate();
            if (escaped >= '0' && escaped <= '7') {
                appendUtf8(result, readOctal(escaped));
                continue;
            }
            switch (escaped) {
            case 'a': result.push_back('\a'); break;
            case 'b': result.push_back('\b'); break;
            case 'f': result.push_back('\f'); break;
            case 'n': result.push_back('\n'); break;
            case 'r': result.push_back('\r'); break;
            case 't': result.push_back('\t'); break;
            case 'v': result.push_back('\v'); break;
            default: result.push_back(escaped); break;  // \" \' \\ and any other character stand for themselves
            }
        }
        return std::nullopt;  // the closing quote is missing
    }

    // Up to four hexadecimal digits after \U.
    char32_t readHexUnit() {
        char32_t unit = 0;
        for (int digits = 0; digits < 4 && !atEnd(); ++digits) {
            const int value = hexDigitValue(peek());
            if (value < 0) break;
            unit = unit * 16 + static_cast<char32_t>(value);
            ++position_;
        }
        return unit;
    }

    // One to three octal digits, the first already read.
    char32_t readOctal(char first) {
        char32_t value = static_cast<char32_t>(first - '0');
        for (int digits = 1; digits < 3 && peek() >= '0' && peek() <= '7'; ++digits) {
            value = value * 8 + static_cast<char32_t>(text_[position_++] - '0');
        }
        return value;
    }

    // Skips blanks, line breaks and both kinds of comment. False for a comment left open.
    bool skipSpaceAndComments() {
        while (!atEnd()) {
            const char c = peek();
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v') {
                ++position_;
            } else if (text_.substr(position_, 2) == "//") {
                const std::size_t end = text_.find('\n', position_);
                position_ = end == std::string_view::npos ? text_.size() : end + 1;
            } else if (text_.substr(position_, 2) == "/*") {
                const std::size_t end = text_.find("*/", position_ + 2);
                if (end == std::string_view::npos) return false;
                position_ = end + 2;
            } else {
                break;
            }
        }
        return true;
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace

std::optional<StringTable> parseStringsFile(std::string_view bytes) {
    std::optional<std::string> text = decodeUnicodeText(bytes);
    if (!text || text->find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return StringsReader(*text).readTable();
}

}  // namespace vantle
