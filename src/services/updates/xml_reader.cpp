#include "services/updates/xml_reader.h"

#include <cstdint>

namespace vantle {
namespace {

constexpr std::size_t kMaximumDepth = 256;

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isNameStart(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte == ':' || byte >= 0x80;
}

bool isNameChar(char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

// The code points XML allows in a document.
bool isAllowedCodePoint(std::uint32_t code) {
    return code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
           (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

void appendUtf8(std::string& out, std::uint32_t code) {
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

// A reader over the document that builds the tree with an explicit stack, so that the depth of
// a hostile document costs heap, bounded by kMaximumDepth, never call stack.
class Reader {
public:
    explicit Reader(std::string_view document) : in_(document) {}

    std::optional<XmlElement> document() {
        if (startsWith("\xEF\xBB\xBF")) {
            position_ += 3;
        }
        if (!prolog()) {
            return std::nullopt;
        }
        std::optional<XmlElement> root = elements();
        if (!root || !epilogue()) {
            return std::nullopt;
        }
        return root;
    }

private:
    bool atEnd() const { return position_ >= in_.size(); }
    char peek() const { return in_[position_]; }
    bool startsWith(std::string_view text) const { return in_.substr(position_).starts_with(text); }

    void skipSpace() {
        while (!atEnd() && isSpace(peek())) {
            ++position_;
        }
    }

    // Moves past the next occurrence of end; false when there is none.
    bool skipPast(std::string_view end) {
        const std::size_t found = in_.find(end, position_);
        if (found == std::string_view::npos) {
            return false;
        }
        position_ = found + end.size();
        return true;
    }

    std::optional<std::string> name() {
        if (atEnd() || !isNameStart(peek())) {
            return std::nullopt;
        }
        const std::size_t start = position_;
        while (!atEnd() && isNameChar(peek())) {
            ++position_;
        }
        return std::string(in_.substr(start, position_ - start));
    }

    // Comments and processing instructions, wherever markup may stand.
    enum class Misc { none, skipped, broken };
    Misc misc() {
        if (startsWith("<!--")) {
            position_ += 4;
            return skipPast("-->") ? Misc::skipped : Misc::broken;
        }
        if (startsWith("<?")) {
            position_ += 2;
            return skipPast("?>") ? Misc::skipped : Misc::broken;
        }
        return Misc::none;
    }

    bool prolog() {
        bool doctypeSeen = false;
        for (;;) {
            skipSpace();
            const Misc skipped = misc();
            if (skipped == Misc::broken) {
                return false;
            }
            if (skipped == Misc::skipped) {
                continue;
            }
            if (startsWith("<!DOCTYPE")) {
                if (doctypeSeen || !doctype()) {
                    return false;
                }
                doctypeSeen = true;
                continue;
            }
            return startsWith("<") && !startsWith("</") && !startsWith("<!");
        }
    }

    // A declaration that only names an external type is harmless: we never load it. One with
    // an internal subset could declare entities, which this reader does not support.
    bool doctype() {
        for (position_ += 9; !atEnd(); ++position_) {
            if (peek() == '[') {
                return false;
            }
            if (peek() == '>') {
                ++position_;
                return true;
            }
        }
        return false;
    }

    bool epilogue() {
        for (;;) {
            skipSpace();
            if (atEnd()) {
                return true;
            }
            if (misc() != Misc::skipped) {
                return false;
            }
        }
    }

    // At '&': appends the character the reference stands for.
    bool reference(std::string& out) {
        ++position_;
        const std::size_t end = in_.find(';', position_);
        if (end == std::string_view::npos || end == position_) {
            return false;
        }
        const std::string_view body = in_.substr(position_, end - position_);
        position_ = end + 1;
        if (body[0] == '#') {
            return characterReference(body.substr(1), out);
        }
        if (body == "lt") {
            out.push_back('<');
        } else if (body == "gt") {
            out.push_back('>');
        } else if (body == "amp") {
            out.push_back('&');
        } else if (body == "quot") {
            out.push_back('"');
        } else if (body == "apos") {
            out.push_back('\'');
        } else {
            return false;
        }
        return true;
    }

    static bool characterReference(std::string_view digits, std::string& out) {
        std::uint32_t base = 10;
        if (!digits.empty() && digits[0] == 'x') {
            base = 16;
            digits.remove_prefix(1);
        }
        if (digits.empty() || digits.size() > 8) {
            return false;
        }
        std::uint32_t code = 0;
        for (char c : digits) {
            std::uint32_t digit = 0;
            if (c >= '0' && c <= '9') {
                digit = static_cast<std::uint32_t>(c - '0');
            } else if (base == 16 && c >= 'a' && c <= 'f') {
                digit = static_cast<std::uint32_t>(c - 'a' + 10);
            } else if (base == 16 && c >= 'A' && c <= 'F') {
                digit = static_cast<std::uint32_t>(c - 'A' + 10);
            } else {
                return false;
            }
            code = code * base + digit;
        }
        if (!isAllowedCodePoint(code)) {
            return false;
        }
        appendUtf8(out, code);
        return true;
    }

    bool attributeValue(std::string& out) {
        if (atEnd() || (peek() != '"' && peek() != '\'')) {
            return false;
        }
        const char quote = peek();
        ++position_;
        while (!atEnd() && peek() != quote) {
            const char c = peek();
            if (c == '<') {
                return false;
            }
            if (c == '&') {
                if (!reference(out)) {
                    return false;
                }
                continue;
            }
            // Line ends and tabs in an attribute read as blanks.
            out.push_back(isSpace(c) ? ' ' : c);
            ++position_;
        }
        if (atEnd()) {
            return false;
        }
        ++position_;
        return true;
    }

    // At '<' of a start tag. selfClosing tells "<a/>" from "<a>".
    bool startTag(XmlElement& element, bool& selfClosing) {
        ++position_;
        std::optional<std::string> elementName = name();
        if (!elementName) {
            return false;
        }
        element.name = std::move(*elementName);
        for (;;) {
            const std::size_t before = position_;
            skipSpace();
            if (atEnd()) {
                return false;
            }
            if (peek() == '>') {
                ++position_;
                selfClosing = false;
                return true;
            }
            if (startsWith("/>")) {
                position_ += 2;
                selfClosing = true;
                return true;
            }
            // Attributes are separated from the name and from each other by white space.
            if (position_ == before) {
                return false;
            }
            std::optional<std::string> attributeName = name();
            if (!attributeName || element.attribute(*attributeName)) {
                return false;
            }
            skipSpace();
            if (atEnd() || peek() != '=') {
                return false;
            }
            ++position_;
            skipSpace();
            std::string value;
            if (!attributeValue(value)) {
                return false;
            }
            element.attributes.emplace_back(std::move(*attributeName), std::move(value));
        }
    }

    // At '</': true when it closes the element named open.
    bool endTag(const std::string& open) {
        position_ += 2;
        std::optional<std::string> closing = name();
        skipSpace();
        if (!closing || *closing != open || atEnd() || peek() != '>') {
            return false;
        }
        ++position_;
        return true;
    }

    std::optional<XmlElement> elements() {
        std::vector<XmlElement> open;
        XmlElement root;
        bool selfClosing = false;
        if (!startTag(root, selfClosing)) {
            return std::nullopt;
        }
        if (selfClosing) {
            return root;
        }
        open.push_back(std::move(root));
        while (!open.empty()) {
            if (atEnd()) {
                return std::nullopt;
            }
            if (startsWith("</")) {
                if (!endTag(open.back().name)) {
                    return std::nullopt;
                }
                XmlElement done = std::move(open.back());
                open.pop_back();
                if (open.empty()) {
                    return done;
                }
                open.back().children.push_back(std::move(done));
            } else if (startsWith("<![CDATA[")) {
                position_ += 9;
                const std::size_t end = in_.find("]]>", position_);
                if (end == std::string_view::npos) {
                    return std::nullopt;
                }
                open.back().text.append(in_.substr(position_, end - position_));
                position_ = end + 3;
            } else if (startsWith("<!--") || startsWith("<?")) {
                if (misc() != Misc::skipped) {
                    return std::nullopt;
                }
            } else if (startsWith("<!")) {
                return std::nullopt;
            } else if (peek() == '<') {
                XmlElement child;
                if (open.size() >= kMaximumDepth || !startTag(child, selfClosing)) {
                    return std::nullopt;
                }
                if (selfClosing) {
                    open.back().children.push_back(std::move(child));
                } else {
                    open.push_back(std::move(child));
                }
            } else if (peek() == '&') {
                if (!reference(open.back().text)) {
                    return std::nullopt;
                }
            } else {
                const std::size_t end = in_.find_first_of("<&", position_);
                const std::size_t stop = end == std::string_view::npos ? in_.size() : end;
                open.back().text.append(in_.substr(position_, stop - position_));
                position_ = stop;
            }
        }
        return std::nullopt;
    }

    std::string_view in_;
    std::size_t position_ = 0;
};

}  // namespace

const XmlElement* XmlElement::child(std::string_view childName) const {
    for (const XmlElement& candidate : children) {
        if (candidate.name == childName) {
            return &candidate;
        }
    }
    return nullptr;
}

std::optional<std::string> XmlElement::attribute(std::string_view attributeName) const {
    for (const auto& [key, value] : attributes) {
        if (key == attributeName) {
            return value;
        }
    }
    return std::nullopt;
}

std::string_view localName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool hasPrefix(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon != std::string_view::npos && colon > 0;
}

std::optional<XmlElement> parseXml(std::string_view document) {
    return Reader(document).document();
}

}  // namespace vantle
