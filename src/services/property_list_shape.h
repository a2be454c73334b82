#pragma once

#include <cstdint>
#include <string_view>

namespace vantle {

// The most containers nested in one another that a property list we read may have.
inline constexpr int kPropertyListMaxDepth = 256;
// The most values a property list may unfold to once the objects a binary list shares between
// several containers are counted once per use. The Dock's list and our settings hold a few
// thousand at most.
inline constexpr std::uint64_t kPropertyListMaxValues = 1'000'000;

// Whether bytes may be handed to the property-list library. It reads nesting recursively and
// copies every shared object of a binary list for each of its uses, so a small file that nests
// deeply overflows the stack and one that shares containers in layers unfolds without bound.
// This looks at the shape only (the tags of an XML list, the object table of a binary one) and
// says false for such lists and for binary tables that point outside the file; it says true
// for text that is no property list at all, which the library then rejects.
bool hasReadablePropertyListShape(std::string_view bytes);

}  // namespace vantle
