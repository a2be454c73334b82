#include "audio/cf_text.h"

#include <cstring>
#include <limits>

namespace vantle {

namespace {

// A byte of the form 10xxxxxx continues a character that began in an earlier byte.
bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

}  // namespace

std::optional<std::size_t> terminatedUtf8BufferSize(std::int64_t maximumBytes) {
    if (maximumBytes < 0) {
        return std::nullopt;
    }
    // The text's byte count travels as a 32-bit size; the terminator is ours alone.
    constexpr std::uint64_t kLargestText = std::numeric_limits<std::uint32_t>::max();
    if (static_cast<std::uint64_t>(maximumBytes) > kLargestText) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(maximumBytes) + 1;
}

std::string textBeforeTerminator(const char* buffer, std::size_t capacity) {
    if (buffer == nullptr) {
        return {};
    }
    const void* terminator = std::memchr(buffer, '\0', capacity);
    const std::size_t length =
        terminator != nullptr ? static_cast<std::size_t>(static_cast<const char*>(terminator) - buffer) : capacity;
    return std::string(buffer, length);
}

std::size_t wholeCharacterPrefixLength(std::string_view text, std::size_t capacity) {
    if (capacity >= text.size()) {
        return text.size();
    }
    // Step back from the cut over the continuation bytes of the character it would split.
    std::size_t length = capacity;
    while (length > 0 && continuesCharacter(text[length])) {
        --length;
    }
    return length;
}

}  // namespace vantle
