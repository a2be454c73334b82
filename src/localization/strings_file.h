#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vantle {

// Key to text, as read from one language's string table.
using StringTable = std::map<std::string, std::string, std::less<>>;

// Parses the classic strings-file syntax:
//     /* comment */  // comment
//     "key" = "value";
//     key = "value with \"quotes\", \n, \t, \U00B7 and \101";
//     "key";                      (the text is the key itself)
// optionally wrapped in one pair of braces. Keys and values may be quoted with double or single
// quotes, or be unquoted tokens of letters, digits and _$/:.-. The bytes are UTF-8, or UTF-16
// with a byte-order mark. A later entry with the same key replaces an earlier one.
//
// Returns empty when the text breaks the syntax anywhere, holds a value that is not a string
// (an array, a dictionary or data), or is not valid Unicode: a table is used whole or not at all.
std::optional<StringTable> parseStringsFile(std::string_view bytes);

}  // namespace vantle
