#include "services/updates/xml_reader.h"

#include <gtest/gtest.h>

#include <string>

namespace vantle {
namespace {

TEST(XmlReaderTest, ReadsElementsAttributesAndText) {
    const std::optional<XmlElement> root =
        parseXml("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a x=\"1\" y='two'><b>text</b><c/></a>");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->name, "a");
    EXPECT_EQ(root->attribute("x"), "1");
    EXPECT_EQ(root->attribute("y"), "two");
    EXPECT_FALSE(root->attribute("z"));
    ASSERT_EQ(root->children.size(), 2u);
    EXPECT_EQ(root->child("b")->text, "text");
    EXPECT_TRUE(root->child("c")->children.empty());
    EXPECT_EQ(root->child("d"), nullptr);
}

TEST(XmlReaderTest, ResolvesTheFivePredefinedEntitiesAndCharacterReferences) {
    const std::optional<XmlElement> root =
        parseXml("<a t=\"&quot;&amp;&#x41;\">&lt;&gt;&amp;&quot;&apos;&#65;&#xe9;&#x1F600;</a>");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->text, "<>&\"'A\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(root->attribute("t"), "\"&A");
}

TEST(XmlReaderTest, KeepsCdataAsItIsAndSkipsComments) {
    const std::optional<XmlElement> root = parseXml("<a><!-- note --><![CDATA[<b>&amp;</b>]]><?pi x?>tail</a>");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->text, "<b>&amp;</b>tail");
    EXPECT_TRUE(root->children.empty());
}

TEST(XmlReaderTest, KeepsNamespacePrefixesInNames) {
    const std::optional<XmlElement> root =
        parseXml("<rss xmlns:s=\"urn:x\"><s:version s:os=\"linux\">2</s:version></rss>");
    ASSERT_TRUE(root);
    const XmlElement* version = root->child("s:version");
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version->attribute("s:os"), "linux");
    EXPECT_EQ(localName(version->name), "version");
    EXPECT_TRUE(hasPrefix(version->name));
    EXPECT_FALSE(hasPrefix("version"));
}

TEST(XmlReaderTest, SkipsAByteOrderMark) {
    EXPECT_TRUE(parseXml("\xEF\xBB\xBF<a/>"));
}

TEST(XmlReaderTest, ReadsTheEncodingTheDocumentDeclares) {
    const std::optional<XmlElement> root = parseXml("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>caf\xE9</a>");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->text, "caf\xC3\xA9");
}

TEST(XmlReaderTest, RefusesAnyDocumentType) {
    EXPECT_FALSE(parseXml("<!DOCTYPE rss SYSTEM \"http://example.org/rss.dtd\">\n<rss/>"));
    EXPECT_FALSE(parseXml("<!DOCTYPE rss>\n<rss/>"));
}

TEST(XmlReaderTest, AttributeLineBreaksReadAsBlanks) {
    const std::optional<XmlElement> root = parseXml("<a t=\"one\ntwo\tthree\"/>");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->attribute("t"), "one two three");
}

TEST(XmlReaderTest, RefusesDocumentsThatAreNotWellFormed) {
    for (const char* broken : {
             "",
             "   ",
             "text only",
             "<a>",
             "<a></b>",
             "<a><b></a></b>",
             "<a/><b/>",
             "<a/>trailing",
             "<a x=\"1\" x=\"2\"/>",
             "<a x=1/>",
             "<a x=\"1\"y=\"2\"/>",
             "<a x=\"<\"/>",
             "<a>&unknown;</a>",
             "<a>&amp</a>",
             "<a>&#0;</a>",
             "<a>&#xD800;</a>",
             "<a>&#x110000;</a>",
             "<a><!-- unclosed </a>",
             "<a><![CDATA[ unclosed </a>",
             "</a>",
             "<1a/>",
             "<a><!ELEMENT x></a>",
             "<s:a/>",  // a prefix bound to no namespace
         }) {
        EXPECT_FALSE(parseXml(broken)) << broken;
    }
}

TEST(XmlReaderTest, RefusesAnInternalSubsetThatCouldDefineEntities) {
    EXPECT_FALSE(parseXml("<!DOCTYPE a [<!ENTITY e \"ee\">]><a>&e;</a>"));
}

TEST(XmlReaderTest, RefusesNestingDeeperThanTheLimit) {
    std::string deep;
    for (int level = 0; level < 300; ++level) {
        deep += "<a>";
    }
    for (int level = 0; level < 300; ++level) {
        deep += "</a>";
    }
    EXPECT_FALSE(parseXml(deep));

    std::string shallow;
    for (int level = 0; level < 200; ++level) {
        shallow += "<a>";
    }
    for (int level = 0; level < 200; ++level) {
        shallow += "</a>";
    }
    EXPECT_TRUE(parseXml(shallow));
}

TEST(XmlReaderTest, AllowsWhitespaceBeforeTheClosingBracketOfAnEndTag) {
    EXPECT_TRUE(parseXml("<a><b></b ></a\n>"));
}

}  // namespace
}  // namespace vantle
