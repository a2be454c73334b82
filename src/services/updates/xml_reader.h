#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vantle {

// One element of a parsed XML document. Names are kept as written, prefix included
// ("sparkle:version"); a feed may bind its namespace to any prefix, so callers that care
// compare local names.
struct XmlElement {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    // The character data directly inside this element, with references resolved and CDATA
    // sections included, in document order; the text of children is not part of it.
    std::string text;
    std::vector<XmlElement> children;

    // The first child named exactly name, or null.
    const XmlElement* child(std::string_view name) const;
    // The value of the attribute named exactly name.
    std::optional<std::string> attribute(std::string_view name) const;
};

// The part of a name after its prefix: "version" for "sparkle:version" and for "version".
std::string_view localName(std::string_view name);
// Whether the name carries a namespace prefix.
bool hasPrefix(std::string_view name);

// Parses a whole document (in the encoding it declares, UTF-8 by default, with or without a
// byte-order mark) into its root element. Empty when the document is not well-formed (unbalanced
// tags, a duplicate attribute, an unknown entity or namespace prefix, text outside the root, a
// second root) or nests deeper than 256 elements. Any document type declaration is refused, so
// that a document can never define entities that expand into more text than it holds.
std::optional<XmlElement> parseXml(std::string_view document);

}  // namespace vantle
