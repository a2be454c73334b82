#include "dock/tile_record.h"

#include <limits>

#include "dock/file_url.h"
#include "localization/describe.h"

namespace vantle {
namespace {

const PlistValue* member(const PlistValue& dictionary, std::string_view key) {
    const PlistValue::Dictionary* entries = dictionary.asDictionary();
    if (entries == nullptr) {
        return nullptr;
    }
    const auto found = entries->find(key);
    return found == entries->end() ? nullptr : &found->second;
}

// A GUID as text, the way the Dock's own property-list values describe themselves: integers in
// decimal, whole reals without a fraction, booleans as 1 or 0, text as it is.
std::string guidText(const PlistValue& guid) {
    if (const std::int64_t* integer = guid.asInteger()) {
        return std::to_string(*integer);
    }
    if (const double* real = guid.asReal()) {
        std::string text = describe(*real);
        if (text.ends_with(".0")) {
            text.resize(text.size() - 2);
        }
        return text;
    }
    if (const bool* boolean = guid.asBool()) {
        return *boolean ? "1" : "0";
    }
    if (const std::string* text = guid.asString()) {
        return *text;
    }
    return {};
}

}  // namespace

std::optional<std::string> tileType(const TileRecord& tile) {
    const PlistValue* type = member(tile, "tile-type");
    if (type == nullptr || type->asString() == nullptr) {
        return std::nullopt;
    }
    return *type->asString();
}

std::optional<std::string> tilePath(const TileRecord& tile) {
    const PlistValue* tileData = member(tile, "tile-data");
    const PlistValue* fileData = tileData != nullptr ? member(*tileData, "file-data") : nullptr;
    const PlistValue* url = fileData != nullptr ? member(*fileData, "_CFURLString") : nullptr;
    if (url == nullptr || url->asString() == nullptr) {
        return std::nullopt;
    }
    return urlPath(*url->asString());
}

std::string dockIdentity(const TileRecord& tile) {
    std::string type = tileType(tile).value_or("");
    if (type.find("spacer") != std::string::npos) {
        return type;
    }
    const PlistValue* guid = member(tile, "GUID");
    return type + "|" + (guid != nullptr ? guidText(*guid) : "");
}

TileRecord spacerTile(std::string_view type, std::uint32_t guid) {
    return PlistValue(PlistValue::Dictionary{
        {"tile-type", PlistValue(std::string(type))},
        {"GUID", PlistValue(std::int64_t{guid})},
        {"tile-data", PlistValue(PlistValue::Dictionary{})},
    });
}

std::uint32_t spacerGuid(std::uint32_t drawn) {
    // The draw stops one short of the largest value, so adding one never wraps round to 0.
    return drawn < std::numeric_limits<std::uint32_t>::max() ? drawn + 1 : drawn;
}

TileRecord separatorTile(std::string_view urlString, std::string_view label) {
    PlistValue::Dictionary fileData{
        {"_CFURLString", PlistValue(std::string(urlString))},
        {"_CFURLStringType", PlistValue(15)},
    };
    PlistValue::Dictionary tileData{
        {"file-data", PlistValue(std::move(fileData))},
        {"file-label", PlistValue(std::string(label))},
    };
    return PlistValue(PlistValue::Dictionary{
        {"tile-type", PlistValue(std::string(kFileTile))},
        {"tile-data", PlistValue(std::move(tileData))},
    });
}

}  // namespace vantle
