#include "services/property_list_codec.h"

#include <plist/plist.h>

#include <cstdlib>
#include <limits>
#include <memory>

#include "services/property_list_shape.h"

namespace vantle {
namespace {

struct PlistFree {
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistPtr = std::unique_ptr<void, PlistFree>;

struct MallocFree {
    void operator()(char* text) const { std::free(text); }
};
using MallocText = std::unique_ptr<char, MallocFree>;

// Property lists from other programs can nest deeply; past this depth a file is treated as
// broken rather than risking the stack.
constexpr int kMaxDepth = kPropertyListMaxDepth;

std::optional<PlistValue> fromNode(plist_t node, int depth);

std::optional<PlistValue> arrayFromNode(plist_t node, int depth) {
    PlistValue::Array array;
    const uint32_t size = plist_array_get_size(node);
    array.reserve(size);
    for (uint32_t index = 0; index < size; ++index) {
        std::optional<PlistValue> element = fromNode(plist_array_get_item(node, index), depth + 1);
        if (!element) {
            return std::nullopt;
        }
        array.push_back(std::move(*element));
    }
    return PlistValue(std::move(array));
}

std::optional<PlistValue> dictionaryFromNode(plist_t node, int depth) {
    PlistValue::Dictionary dictionary;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    if (iterator == nullptr) {
        return PlistValue(std::move(dictionary));
    }
    std::optional<PlistValue> result;
    for (;;) {
        char* rawKey = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &rawKey, &item);
        MallocText key(rawKey);
        if (item == nullptr || key == nullptr) {
            result = PlistValue(std::move(dictionary));
            break;
        }
        std::optional<PlistValue> value = fromNode(item, depth + 1);
        if (!value) {
            break;
        }
        dictionary.insert_or_assign(std::string(key.get()), std::move(*value));
    }
    std::free(iterator);
    return result;
}

std::optional<PlistValue> fromNode(plist_t node, int depth) {
    if (node == nullptr || depth > kMaxDepth) {
        return std::nullopt;
    }
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return PlistValue(value != 0);
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        // libplist keeps every integer in 64 unsigned bits; negative numbers come back in
        // two's complement, which the cast restores.
        return PlistValue(static_cast<std::int64_t>(value));
    }
    case PLIST_UID: {
        uint64_t value = 0;
        plist_get_uid_val(node, &value);
        return PlistValue(static_cast<std::int64_t>(value));
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return PlistValue(value);
    }
    case PLIST_STRING: {
        // A string may hold NUL bytes (a damaged file, or a binary list from elsewhere).
        // libplist's own copying accessor asserts against them and would stop the program, so
        // the text is read in place and, as libplist reads dictionary keys, ends at the first NUL.
        uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        if (text == nullptr) {
            return PlistValue(std::string());
        }
        const std::string_view whole(text, static_cast<std::size_t>(length));
        return PlistValue(std::string(whole.substr(0, whole.find('\0'))));
    }
    case PLIST_DATA: {
        char* raw = nullptr;
        uint64_t length = 0;
        plist_get_data_val(node, &raw, &length);
        MallocText bytes(raw);
        const auto* begin = reinterpret_cast<const std::uint8_t*>(bytes.get());
        return PlistValue(PlistValue::Data(begin, begin + (bytes ? length : 0)));
    }
    case PLIST_DATE: {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        return PlistValue(PlistValue::Date{seconds + microseconds / 1e6});
    }
    case PLIST_ARRAY:
        return arrayFromNode(node, depth);
    case PLIST_DICT:
        return dictionaryFromNode(node, depth);
    default:
        return std::nullopt;
    }
}

plist_t toNode(const PlistValue& value) {
    if (const bool* boolean = value.asBool()) {
        return plist_new_bool(*boolean ? 1 : 0);
    }
    if (const std::int64_t* integer = value.asInteger()) {
        return plist_new_uint(static_cast<uint64_t>(*integer));
    }
    if (const double* real = value.asReal()) {
        return plist_new_real(*real);
    }
    if (const std::string* string = value.asString()) {
        return plist_new_string(string->c_str());
    }
    if (const PlistValue::Data* data = value.asData()) {
        return plist_new_data(reinterpret_cast<const char*>(data->data()), data->size());
    }
    if (const PlistValue::Date* date = value.asDate()) {
        const double whole = static_cast<double>(static_cast<int64_t>(date->secondsSinceReference));
        const auto seconds = static_cast<int32_t>(whole);
        const auto microseconds = static_cast<int32_t>((date->secondsSinceReference - whole) * 1e6);
        return plist_new_date(seconds, microseconds);
    }
    if (const PlistValue::Array* array = value.asArray()) {
        plist_t node = plist_new_array();
        for (const PlistValue& element : *array) {
            plist_array_append_item(node, toNode(element));
        }
        return node;
    }
    plist_t node = plist_new_dict();
    for (const auto& [key, element] : *value.asDictionary()) {
        plist_dict_set_item(node, key.c_str(), toNode(element));
    }
    return node;
}

// libplist's dictionary accessors stop the program (a failed assertion) on a key that holds a
// NUL byte, which only its binary reader produces; its XML reader ends such text at the NUL. So
// a binary list is read through its XML form, which also makes it read exactly as it will after
// our own XML rewrite.
PlistPtr throughXml(PlistPtr root) {
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    plist_t reparsed = nullptr;
    if (xml != nullptr && length > 0) {
        plist_from_xml(xml, length, &reparsed);
    }
    plist_to_xml_free(xml);
    return PlistPtr(reparsed);
}

}  // namespace

std::optional<PlistValue> parsePropertyList(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<uint32_t>::max() || !hasReadablePropertyListShape(bytes)) {
        return std::nullopt;
    }
    plist_t raw = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &raw);
    PlistPtr root(raw);
    if (root != nullptr && bytes.starts_with("bplist")) {
        root = throughXml(std::move(root));
    }
    return fromNode(root.get(), 0);
}

std::string serializePropertyListXml(const PlistValue& value) {
    PlistPtr root(toNode(value));
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    std::string text(xml != nullptr ? xml : "", xml != nullptr ? length : 0);
    plist_to_xml_free(xml);
    return text;
}

}  // namespace vantle
