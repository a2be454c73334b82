#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

namespace vantle {

// The shortest decimal text that reads back as the same value, always with a fractional part
// or an exponent ("1.0", "0.5", "1e-05"), so a level never looks like a whole number.
std::string shortestDecimal(float value);
std::string shortestDecimal(double value);

// The plain textual description of a value handed to a text as an argument: strings as they
// are, whole numbers in decimal, fractional numbers in their shortest form, booleans as words.
inline std::string describe(std::string_view text) { return std::string(text); }
inline std::string describe(const char* text) { return std::string(text); }
inline std::string describe(const std::string& text) { return text; }
inline std::string describe(bool value) { return value ? "true" : "false"; }
inline std::string describe(float value) { return shortestDecimal(value); }
inline std::string describe(double value) { return shortestDecimal(value); }
template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>)
std::string describe(T value) {
    return std::to_string(value);
}

}  // namespace vantle
