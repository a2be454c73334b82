#include "services/property_list_codec.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(PropertyListCodecTest, EveryValueTypeSurvivesXmlRoundTrip) {
    PlistValue::Dictionary dictionary{
        {"flag", true},
        {"count", std::int64_t{-42}},
        {"big", std::int64_t{1} << 40},
        {"level", 0.1f},
        {"name", "Séparateur ⚠"},
        {"list", PlistValue::Array{1, 2.5, "three"}},
        {"nested", PlistValue::Dictionary{{"inner", PlistValue::Array{}}}},
        {"bytes", PlistValue::Data{0, 1, 254, 255}},
        {"when", PlistValue::Date{786'000'000.0}},
    };
    const std::string xml = serializePropertyListXml(PlistValue(dictionary));
    std::optional<PlistValue> parsed = parsePropertyList(xml);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(*parsed, PlistValue(dictionary));
}

TEST(PropertyListCodecTest, DoubleKeepsEveryBitOfAFloat) {
    const float level = 0.7362891f;
    std::optional<PlistValue> parsed =
        parsePropertyList(serializePropertyListXml(PlistValue(PlistValue::Array{static_cast<double>(level)})));
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(static_cast<float>(*parsed->asArray()->at(0).asReal()), level);
}

TEST(PropertyListCodecTest, GarbageEmptyAndTruncatedInputAreNotPropertyLists) {
    EXPECT_FALSE(parsePropertyList("").has_value());
    EXPECT_FALSE(parsePropertyList("this is not a property list").has_value());
    const std::string xml = serializePropertyListXml(PlistValue(PlistValue::Dictionary{{"linked", false}}));
    EXPECT_FALSE(parsePropertyList(xml.substr(0, xml.size() / 2)).has_value());
}

TEST(PropertyListCodecTest, ReadsHandWrittenXmlWithIntegersAndReals) {
    const std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<plist version=\"1.0\"><dict><key>a</key><integer>7</integer><key>b</key><real>0.25</real>"
        "<key>c</key><false/></dict></plist>";
    std::optional<PlistValue> parsed = parsePropertyList(xml);
    ASSERT_TRUE(parsed.has_value());
    const PlistValue::Dictionary& dictionary = *parsed->asDictionary();
    EXPECT_EQ(*dictionary.at("a").asInteger(), 7);
    EXPECT_EQ(*dictionary.at("b").asReal(), 0.25);
    EXPECT_EQ(*dictionary.at("c").asBool(), false);
}

}  // namespace
}  // namespace vantle
