// Feeds arbitrary text to the percentage field's parse. A result must be a level from 0 to 1
// (never a negative zero, which would show as "-0"), and plain decimal text must be judged as
// the C library's own decimal reading judges it.
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "display/brightness_control.h"
#include "fuzz_check.h"

namespace {

using vantle::fuzz::require;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Whether the text is a plain decimal number: an optional "+", digits with at most one decimal
// point (at least one digit in all), and an optional exponent.
bool isPlainDecimal(std::string_view text) {
    std::size_t index = 0;
    if (index < text.size() && text[index] == '+') {
        ++index;
    }
    std::size_t digits = 0;
    while (index < text.size() && isDigit(text[index])) {
        ++index;
        ++digits;
    }
    if (index < text.size() && text[index] == '.') {
        ++index;
        while (index < text.size() && isDigit(text[index])) {
            ++index;
            ++digits;
        }
    }
    if (digits == 0) {
        return false;
    }
    if (index < text.size() && (text[index] == 'e' || text[index] == 'E')) {
        ++index;
        if (index < text.size() && (text[index] == '+' || text[index] == '-')) {
            ++index;
        }
        std::size_t exponentDigits = 0;
        while (index < text.size() && isDigit(text[index])) {
            ++index;
            ++exponentDigits;
        }
        if (exponentDigits == 0) {
            return false;
        }
    }
    return index == text.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::optional<float> level = vantle::parsePercentage(text);
    if (level) {
        require(*level >= 0.0f && *level <= 1.0f, "a typed percentage gives a level from 0 to 1");
        require(!std::signbit(*level), "a typed percentage never gives a negative zero");
    }

    std::string normalized(text);
    for (char& c : normalized) {
        c = c == ',' ? '.' : c;
    }
    if (!isPlainDecimal(normalized) || normalized.size() > 64) {
        return 0;
    }
    // Plain decimal text that the C library reads as a number from 0 to 100 (overflow reads as
    // infinity and is rejected) is accepted with the same value.
    std::setlocale(LC_NUMERIC, "C");
    const float expected = std::strtof(normalized.c_str(), nullptr);
    const bool accepted = expected >= 0.0f && expected <= 100.0f;
    require(level.has_value() == accepted, "plain decimal text is accepted exactly when it is from 0 to 100");
    if (accepted) {
        require(*level == expected / 100.0f, "plain decimal text gives its own value divided by 100");
    }
    return 0;
}
