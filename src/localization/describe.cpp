#include "localization/describe.h"

#include <charconv>
#include <cmath>

namespace vantle {
namespace {

template <typename Float>
std::string shortest(Float value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    char buffer[64];
    const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, result.ptr);
    if (text.find_first_of(".e") == std::string::npos) {
        text += ".0";
    }
    return text;
}

}  // namespace

std::string shortestDecimal(float value) { return shortest(value); }
std::string shortestDecimal(double value) { return shortest(value); }

}  // namespace vantle
