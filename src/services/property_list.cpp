#include "services/property_list.h"

namespace vantle {

PlistValue PlistValue::stringArray(const std::vector<std::string>& strings) {
    Array array;
    array.reserve(strings.size());
    for (const std::string& string : strings) {
        array.emplace_back(string);
    }
    return PlistValue(std::move(array));
}

std::optional<double> PlistValue::asNumber() const {
    if (const std::int64_t* integer = asInteger()) {
        return static_cast<double>(*integer);
    }
    if (const double* real = asReal()) {
        return *real;
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> PlistValue::asStringArray() const {
    const Array* array = asArray();
    if (array == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> strings;
    strings.reserve(array->size());
    for (const PlistValue& element : *array) {
        const std::string* string = element.asString();
        if (string == nullptr) {
            return std::nullopt;
        }
        strings.push_back(*string);
    }
    return strings;
}

}  // namespace vantle
