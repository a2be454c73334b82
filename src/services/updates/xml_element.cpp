#include "services/updates/xml_reader.h"

namespace vantle {

const XmlElement* XmlElement::child(std::string_view childName) const {
    for (const XmlElement& candidate : children) {
        if (candidate.name == childName) {
            return &candidate;
        }
    }
    return nullptr;
}

std::optional<std::string> XmlElement::attribute(std::string_view attributeName) const {
    for (const auto& [key, value] : attributes) {
        if (key == attributeName) {
            return value;
        }
    }
    return std::nullopt;
}

std::string_view localName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool hasPrefix(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon != std::string_view::npos && colon > 0;
}

}  // namespace vantle
