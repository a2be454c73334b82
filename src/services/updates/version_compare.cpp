#include "services/updates/version_compare.h"

#include <algorithm>
#include <vector>

namespace vantle {
namespace {

struct Part {
    bool number = false;
    std::string_view text;  // a number's digits without leading zeros, or a word
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Letters of any script count as a word; bytes of a multi-byte character are all >= 0x80.
bool isLetter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte >= 0x80;
}

std::vector<Part> partsOf(std::string_view version) {
    std::vector<Part> parts;
    std::size_t index = 0;
    while (index < version.size()) {
        const std::size_t start = index;
        if (isDigit(version[index])) {
            while (index < version.size() && isDigit(version[index])) {
                ++index;
            }
            std::string_view digits = version.substr(start, index - start);
            // Stripping leading zeros lets numbers of any length compare by length, then text.
            const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
            parts.push_back({true, digits.substr(first)});
        } else if (isLetter(version[index])) {
            while (index < version.size() && isLetter(version[index])) {
                ++index;
            }
            parts.push_back({false, version.substr(start, index - start)});
        } else {
            ++index;
        }
    }
    return parts;
}

std::weak_ordering compareNumbers(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return left.size() <=> right.size();
    }
    return left.compare(right) <=> 0;
}

char lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::weak_ordering compareWords(std::string_view left, std::string_view right) {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t index = 0; index < common; ++index) {
        const char a = lower(left[index]);
        const char b = lower(right[index]);
        if (a != b) {
            return static_cast<unsigned char>(a) <=> static_cast<unsigned char>(b);
        }
    }
    return left.size() <=> right.size();
}

// A part against a version that has ended: against a number the end reads as zero; against a
// word it reads as the release, which is newer than any of its pre-releases.
std::weak_ordering comparePartWithEnd(const Part& part) {
    if (part.number) {
        return part.text.empty() ? std::weak_ordering::equivalent : std::weak_ordering::greater;
    }
    return std::weak_ordering::less;
}

std::weak_ordering compareParts(const Part& left, const Part& right) {
    if (left.number && right.number) {
        return compareNumbers(left.text, right.text);
    }
    if (!left.number && !right.number) {
        return compareWords(left.text, right.text);
    }
    // "1.0.1" is newer than "1.0b1": a number continues a release, a word starts a pre-release.
    return left.number ? std::weak_ordering::greater : std::weak_ordering::less;
}

}  // namespace

std::weak_ordering compareVersions(std::string_view left, std::string_view right) {
    const std::vector<Part> leftParts = partsOf(left);
    const std::vector<Part> rightParts = partsOf(right);
    const std::size_t count = std::max(leftParts.size(), rightParts.size());
    for (std::size_t index = 0; index < count; ++index) {
        std::weak_ordering order = std::weak_ordering::equivalent;
        if (index >= leftParts.size()) {
            order = 0 <=> comparePartWithEnd(rightParts[index]);
        } else if (index >= rightParts.size()) {
            order = comparePartWithEnd(leftParts[index]);
        } else {
            order = compareParts(leftParts[index], rightParts[index]);
        }
        if (order != 0) {
            return order;
        }
    }
    return std::weak_ordering::equivalent;
}

}  // namespace vantle
