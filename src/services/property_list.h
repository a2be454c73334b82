#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vantle {

// A property-list value: the value model shared by the settings store and the Dock tile records.
// Every property-list type is kept, so that a file written by another program survives our own
// rewrite of it unchanged in meaning.
class PlistValue {
public:
    using Array = std::vector<PlistValue>;
    using Dictionary = std::map<std::string, PlistValue, std::less<>>;
    using Data = std::vector<std::uint8_t>;
    // Seconds since 2001-01-01 00:00:00 UTC, the epoch property lists use for dates.
    struct Date {
        double secondsSinceReference = 0;
        bool operator==(const Date&) const = default;
    };

    PlistValue() : value_(false) {}
    PlistValue(bool value) : value_(value) {}
    PlistValue(int value) : value_(std::int64_t{value}) {}
    PlistValue(std::int64_t value) : value_(value) {}
    PlistValue(double value) : value_(value) {}
    PlistValue(const char* value) : value_(std::string(value)) {}
    PlistValue(std::string value) : value_(std::move(value)) {}
    PlistValue(Array value) : value_(std::move(value)) {}
    PlistValue(Dictionary value) : value_(std::move(value)) {}
    PlistValue(Data value) : value_(std::move(value)) {}
    PlistValue(Date value) : value_(value) {}

    static PlistValue stringArray(const std::vector<std::string>& strings);

    const bool* asBool() const { return std::get_if<bool>(&value_); }
    const std::int64_t* asInteger() const { return std::get_if<std::int64_t>(&value_); }
    const double* asReal() const { return std::get_if<double>(&value_); }
    const std::string* asString() const { return std::get_if<std::string>(&value_); }
    const Array* asArray() const { return std::get_if<Array>(&value_); }
    const Dictionary* asDictionary() const { return std::get_if<Dictionary>(&value_); }
    const Data* asData() const { return std::get_if<Data>(&value_); }
    const Date* asDate() const { return std::get_if<Date>(&value_); }

    // An integer or a real, as a double; booleans are not numbers here.
    std::optional<double> asNumber() const;

    // The array when every element is a string, all or nothing.
    std::optional<std::vector<std::string>> asStringArray() const;

    bool operator==(const PlistValue&) const = default;

private:
    std::variant<bool, std::int64_t, double, std::string, Array, Dictionary, Data, Date> value_;
};

}  // namespace vantle
