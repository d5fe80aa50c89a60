#include "host/csta-wire/WireDocument.h"

#include <gtest/gtest.h>

#include <string>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/XmlText.h"

namespace {

using host::MessageWriter;
using host::WireDocument;

std::string nested(std::size_t levels) {
    std::string xml;
    for (std::size_t i = 0; i < levels; ++i) {
        xml = "<b>" + xml + "</b>";
    }
    return xml;
}

/// The text of the root's child `name`, or "refused: why".
std::string read(const std::string& xml) {
    std::string fault;
    const std::optional<WireDocument> document = WireDocument::parse(xml, fault);
    return document ? host::childText(document->root(), "name") : "refused: " + fault;
}

TEST(WireDocument, ReadsTheFormsOfPeersAndRefusesUnsafeText) {
    const std::pair<std::string, std::string> cases[] = {
        {"\xEF\xBB\xBF<A><name>x</name></A>", "x"},
        {"\r\n <A><name> x\n</name></A>", "x"},
        {"<?xml version='1.0' encoding='windows-1252'?><A><name>\x80\x9F\xFC</name></A>", "€Ÿü"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><A><name>M\xFCller</name></A>", "M\xC3\xBCller"},
        {"<A><name>M\xFCller</name></A>", "M\xC3\xBCller"},
        {"<A><name>&lt;1&gt; &amp; &#252;&#x20AC;</name></A>", "<1> & \xC3\xBC\xE2\x82\xAC"},
        {"<A><name><![CDATA[<b>]]></name></A>", "<b>"},
        {"<p:A xmlns:p='urn:x'><p:other/><p:name>x</p:name></p:A>", "x"},
        {"<!DOCTYPE A [<!ENTITY e 'boom'>]><A><name>&e;</name></A>", "&e;"},
        {"<A><name>x</name>", "refused: the text is not XML"},
        {"<?xml version='1.0' encoding='UTF-16'?><A/>", "refused: the encoding of the text is unknown"},
        {std::string("<A><name>a\0b\x1B[\xC3\xBC</name></A>", 27), "a b [\xC3\xBC"},
        {"<A><name>M\x01\xFCller\xEF\xBF\xBE</name></A>", "M \xC3\xBCller"},
        {"<A><name>a&#0;b&#x01b;&#xFFFF;&#x110000;&#xD800;&#4294967296;c</name></A>", "a b     c"},
        {"<A><name>a&#x9F;&#;&#x;&#9;b&#1</name></A>", "a\xC2\x9F  \tb&#1"},
        {"<A><!-- ]]> --><name><![CDATA[a&#1;\x01]]></name></A>", "a&#1;"},
        {"<A\x01name>x</name></A>", "refused: the text is not XML"},
        {nested(WireDocument::kMaxDepth - 2), ""},
        {nested(WireDocument::kMaxDepth + 1), "refused: the text is nested too deeply"},
        {nested(9000), "refused: the text is nested too deeply"},
        {"<A>" + std::string(65536, 'x') + "</A>", "refused: the text is too long"},
    };
    for (const auto& [xml, name] : cases) {
        EXPECT_EQ(read(xml), name) << xml.substr(0, 100);
    }
}

TEST(MessageWriter, EscapesAnyText) {
    for (const std::string text : {"N<4711>Ann & Bob", "\"quoted\" 'too'", "a\rb", "\xE5\xB1\xB1", "]]>"}) {
        EXPECT_EQ(read(MessageWriter("A", "urn:a&b").text("name", text).finish()), text);
    }
    const std::string forbidden =
        MessageWriter("A", "urn:a").text("name", std::string("a\0\xFF", 3)).finish();
    EXPECT_EQ(read(forbidden), "a\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(XmlText, DetectsInvalidUtf8) {
    for (const char* good : {"", "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xED\x9F\xBF", "\t\r\n"}) {
        EXPECT_TRUE(host::isXmlUtf8(good)) << good;
    }
    for (const char* bad : {"\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\xF0\x82\x82\xAC", "\x80", "\xFF", "\x01", "\xEF\xBF\xBF"}) {
        EXPECT_FALSE(host::isXmlUtf8(bad)) << bad;
    }
}

}  // namespace
