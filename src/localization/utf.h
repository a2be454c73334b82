#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantle {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// Appends the code point as UTF-8; surrogates and values past U+10FFFF become U+FFFD.
void appendUtf8(std::string& out, char32_t codePoint);

bool isValidUtf8(std::string_view text);

// Text files arrive as UTF-8 (with or without a byte-order mark) or as UTF-16 with one.
// Returns the text as UTF-8 without the mark, or empty when the bytes are not valid in the
// encoding they announce.
std::optional<std::string> decodeUnicodeText(std::string_view bytes);

}  // namespace vantle
