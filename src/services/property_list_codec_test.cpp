#include "services/property_list_codec.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vantle {
namespace {

// A binary list whose objects are arrays of references to other objects, given by number; an
// object without references is the one-letter string "x". Object 0 is the top.
std::string binaryList(const std::vector<std::vector<std::uint32_t>>& objects) {
    std::string bytes = "bplist00";
    auto put = [&bytes](std::uint64_t value, int size) {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
            bytes.push_back(static_cast<char>(value >> shift & 0xFF));
        }
    };
    std::vector<std::uint64_t> offsets;
    for (const std::vector<std::uint32_t>& references : objects) {
        offsets.push_back(bytes.size());
        if (references.empty()) {
            bytes += "\x51";
            bytes += "x";
            continue;
        }
        if (references.size() < 15) {
            put(0xA0 | references.size(), 1);
        } else {
            put(0xAF, 1);
            put(0x12, 1);
            put(references.size(), 4);
        }
        for (const std::uint32_t reference : references) {
            put(reference, 4);
        }
    }
    const std::uint64_t table = bytes.size();
    for (const std::uint64_t offset : offsets) {
        put(offset, 4);
    }
    put(0, 6);
    put(4, 1);
    put(4, 1);
    put(objects.size(), 8);
    put(0, 8);
    put(table, 8);
    return bytes;
}

// Arrays nested depth deep around one string.
std::string nestedXml(std::size_t depth) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";
    for (std::size_t level = 0; level < depth; ++level) {
        xml += "<array>";
    }
    xml += "<string>x</string>";
    for (std::size_t level = 0; level < depth; ++level) {
        xml += "</array>";
    }
    return xml + "</plist>";
}

std::vector<std::vector<std::uint32_t>> chain(std::uint32_t length, std::size_t width) {
    std::vector<std::vector<std::uint32_t>> objects(length);
    for (std::uint32_t index = 0; index + 1 < length; ++index) {
        objects[index].assign(width, index + 1);
    }
    return objects;
}

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

TEST(PropertyListCodecTest, StringWithANulByteEndsThereInsteadOfStoppingTheProgram) {
    using namespace std::string_literals;
    const std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<plist version=\"1.0\"><dict><key>keyboardStatus</key><string>Allowed\0junk</string>"
        "<key>sepa\0rator</key><integer>2</integer></dict></plist>"s;
    std::optional<PlistValue> parsed = parsePropertyList(xml);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(*parsed, PlistValue(PlistValue::Dictionary{{"keyboardStatus", "Allowed"}, {"sepa", 2}}));
    // What was read is what a rewrite keeps.
    EXPECT_EQ(parsePropertyList(serializePropertyListXml(*parsed)), parsed);
}

TEST(PropertyListCodecTest, BinaryKeyWithANulByteEndsThereInsteadOfStoppingTheProgram) {
    using namespace std::string_literals;
    // A binary list of one dictionary whose only key is "a", NUL, "b" and whose value is 1.
    const std::string binary =
        "bplist00\xD1\x01\x02\x53\x61\x00\x62\x10\x01\x08\x0B\x0F"
        "\x00\x00\x00\x00\x00\x00\x01\x01\x00\x00\x00\x00\x00\x00\x00\x03"
        "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x11"s;
    std::optional<PlistValue> parsed = parsePropertyList(binary);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(*parsed, PlistValue(PlistValue::Dictionary{{"a", 1}}));
}

TEST(PropertyListCodecTest, BinaryListSharingObjectsReadsEachUse) {
    // The top array holds object 1 twice; object 1 is an array holding the string twice.
    std::optional<PlistValue> parsed = parsePropertyList(binaryList({{1, 1}, {2, 2}, {}}));
    ASSERT_TRUE(parsed.has_value());
    const PlistValue inner(PlistValue::Array{"x", "x"});
    EXPECT_EQ(*parsed, PlistValue(PlistValue::Array{inner, inner}));
}

TEST(PropertyListCodecTest, ContainersSharedInLayersAreRefusedInsteadOfUnfoldingWithoutBound) {
    // Forty layers of two references each would unfold to a million million values.
    EXPECT_FALSE(parsePropertyList(binaryList(chain(40, 2))).has_value());
}

TEST(PropertyListCodecTest, DeepNestingIsRefusedInsteadOfOverflowingTheStack) {
    EXPECT_TRUE(parsePropertyList(binaryList(chain(200, 1))).has_value());
    EXPECT_FALSE(parsePropertyList(binaryList(chain(300, 1))).has_value());
    EXPECT_FALSE(parsePropertyList(binaryList(chain(200'000, 1))).has_value());
    EXPECT_TRUE(parsePropertyList(nestedXml(200)).has_value());
    EXPECT_FALSE(parsePropertyList(nestedXml(300)).has_value());
    EXPECT_FALSE(parsePropertyList(nestedXml(1'000'000)).has_value());
}

TEST(PropertyListCodecTest, BinaryListThatContainsItselfOrPointsOutsideIsRefused) {
    EXPECT_FALSE(parsePropertyList(binaryList({{1}, {0}})).has_value());
    std::string outside = binaryList({{1}, {}});
    outside[9] = 7;  // the top array's reference now names an object that does not exist
    EXPECT_FALSE(parsePropertyList(outside).has_value());
}

}  // namespace
}  // namespace vantle
