#include "localization/strings_file.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(StringsFileTest, ReadsEntriesCommentsAndBlankLines) {
    const char* text =
        "/* Settings window title */\n"
        "\"s046\" = \"Settings\";\n"
        "// a line comment\n"
        "\n"
        "\"s000\"=\"Brightness\" ;  /* trailing */\n";
    std::optional<StringTable> table = parseStringsFile(text);
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(*table, (StringTable{{"s046", "Settings"}, {"s000", "Brightness"}}));
}

TEST(StringsFileTest, DecodesEscapes) {
    std::optional<StringTable> table = parseStringsFile(
        R"("quote" = "say \"hi\"";)"
        R"("lines" = "one\ntwo\tthree\\";)"
        R"("dot" = "a\U00B7b";)"
        R"("octal" = "\101\102";)"
        R"("pair" = "\UD83D\UDE00";)"
        R"("lone" = "x\UD800y";)"
        R"("other" = "\q";)");
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->at("quote"), "say \"hi\"");
    EXPECT_EQ(table->at("lines"), "one\ntwo\tthree\\");
    EXPECT_EQ(table->at("dot"), "a\u00B7b");
    EXPECT_EQ(table->at("octal"), "AB");
    EXPECT_EQ(table->at("pair"), "\U0001F600");
    EXPECT_EQ(table->at("lone"), "x\uFFFDy");
    EXPECT_EQ(table->at("other"), "q");
}

TEST(StringsFileTest, AcceptsUnquotedTokensSingleQuotesBracesAndKeyOnlyEntries) {
    std::optional<StringTable> table = parseStringsFile("{ s001 = 'Ready.'; path = /usr/bin:x.y-z_$; \"same\"; }");
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(*table, (StringTable{{"s001", "Ready."}, {"path", "/usr/bin:x.y-z_$"}, {"same", "same"}}));
}

TEST(StringsFileTest, LaterDuplicateWins) {
    EXPECT_EQ(parseStringsFile(R"("k" = "first"; "k" = "second";)")->at("k"), "second");
}

TEST(StringsFileTest, ReadsUtf16WithByteOrderMarkAndUtf8WithBom) {
    const std::u16string text = u"\"s000\" = \"Яркость\";";
    std::string little = "\xFF\xFE";
    for (char16_t unit : text) {
        little.push_back(static_cast<char>(unit & 0xFF));
        little.push_back(static_cast<char>(unit >> 8));
    }
    EXPECT_EQ(parseStringsFile(little)->at("s000"), "Яркость");
    EXPECT_EQ(parseStringsFile("\xEF\xBB\xBF\"a\" = \"b\";")->at("a"), "b");
}

TEST(StringsFileTest, EmptyFileIsAnEmptyTable) {
    std::optional<StringTable> table = parseStringsFile("  /* nothing */ \n");
    ASSERT_TRUE(table.has_value());
    EXPECT_TRUE(table->empty());
}

TEST(StringsFileTest, BrokenFilesGiveNoTable) {
    const char* broken[] = {
        R"("a" = "b")",                // missing semicolon
        R"("a" = "b)",                 // unterminated string
        R"("a" "b";)",                 // missing equals sign
        R"("a" = ("b");)",             // an array is not a string
        R"("a" = <0fab>;)",            // data is not a string
        R"("a" = "b"; /* open)",       // comment left open
        R"({ "a" = "b";)",             // brace left open
        R"("a" = "b"; } )",            // stray brace
        "\"a\" = \"\xC3\x28\";",       // invalid UTF-8
        R"(= "b";)",                   // missing key
        R"("a" = "\)",                 // escape at the end
    };
    for (const char* text : broken) {
        EXPECT_FALSE(parseStringsFile(text).has_value()) << text;
    }
    EXPECT_FALSE(parseStringsFile(std::string_view("\"a\" = \"b\0c\";", 12)).has_value());
    EXPECT_FALSE(parseStringsFile(std::string_view("\xFF\xFE\x22", 3)).has_value());  // odd-length UTF-16
    EXPECT_FALSE(parseStringsFile(std::string_view("\xFF\xFE\x00\xDC", 4)).has_value());  // lone low surrogate
}

TEST(StringsFileTest, OctalEscapeNamesACharacterNotARawByte) {
    EXPECT_EQ(parseStringsFile(R"("a" = "\377";)")->at("a"), "\u00FF");
}

}  // namespace
}  // namespace vantle
