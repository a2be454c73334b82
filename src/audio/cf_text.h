#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantle {

// The pure steps of turning a system string into the UTF-8 text that AudioHal hands out for its
// name and unique-id properties. The system calls themselves stay in the macOS backend.

// The bytes to allocate for a string's UTF-8 form plus its terminator, given the worst case that
// the string library reports for the string's length. Empty when that worst case is negative
// (the library's way of saying it overflowed) or when the text could not be described by the
// 32-bit sizes of AudioHal.
std::optional<std::size_t> terminatedUtf8BufferSize(std::int64_t maximumBytes);

// The text that a conversion to a terminated string left in a buffer of capacity bytes: the bytes
// before the first NUL, or all of them when the buffer holds none.
std::string textBeforeTerminator(const char* buffer, std::size_t capacity);

// How many leading bytes of the UTF-8 text fit into capacity bytes without cutting a character
// in two, so that a caller with too small a buffer still gets valid text.
std::size_t wholeCharacterPrefixLength(std::string_view text, std::size_t capacity);

}  // namespace vantle
