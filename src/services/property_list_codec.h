#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "services/property_list.h"

namespace vantle {

// Reads a property list in any format libplist knows (XML or binary). Empty when the bytes are
// not a property list.
std::optional<PlistValue> parsePropertyList(std::string_view bytes);

// Writes the value as an XML property list, the format people can read and edit.
std::string serializePropertyListXml(const PlistValue& value);

}  // namespace vantle
