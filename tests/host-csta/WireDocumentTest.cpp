#include "host/csta-wire/WireDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/XmlText.h"

namespace {

using host::childNamed;
using host::childText;
using host::firstText;
using host::MessageKind;
using host::messageKindOf;
using host::MessageWriter;
using host::WireDocument;

std::string nested(std::size_t levels) {
    std::string xml = "<A>";
    for (std::size_t i = 0; i < levels; ++i) {
        xml += "<b>";
    }
    xml += "x";
    for (std::size_t i = 0; i < levels; ++i) {
        xml += "</b>";
    }
    return xml + "</A>";
}

/// The text of the root's first child, or "refused: why".
std::string read(const std::string& xml) {
    std::string fault;
    const std::optional<WireDocument> document = WireDocument::parse(xml, fault);
    return document ? childText(document->root(), "name") : "refused: " + fault;
}

struct TextCase {
    const char* what;
    std::string xml;
    std::string name;
};

TEST(WireDocument, ReadsTextsInTheEncodingsThatPeersUse) {
    const std::vector<TextCase> cases = {
        {"UTF-8 without a declaration", "<A><name>M\xC3\xBCller</name></A>", "M\xC3\xBCller"},
        {"a byte order mark", "\xEF\xBB\xBF<A><name>x</name></A>", "x"},
        {"blanks ahead", "\r\n <A><name> x\n</name></A>", "x"},
        {"declared ISO 8859-1", "<?xml version='1.0' encoding='ISO-8859-1'?><A><name>M\xFCller</name></A>",
         "M\xC3\xBCller"},
        {"ISO 8859-1 that declares nothing", "<A><name>M\xFCller</name></A>", "M\xC3\xBCller"},
        {"lower case in single quotes", "<?xml version='1.0' encoding='utf-8'?><A><name>\xC3\xBC</name></A>",
         "\xC3\xBC"},
        {"references", "<A><name>&lt;1&gt; &amp; &#252;&#x20AC;</name></A>", "<1> & \xC3\xBC\xE2\x82\xAC"},
        {"a section of characters", "<A><name><![CDATA[<b>]]></name></A>", "<b>"},
        {"prefixes and name spaces", "<p:A xmlns:p='urn:x'><p:other/><p:name>x</p:name></p:A>", "x"},
    };
    for (const TextCase& one : cases) {
        EXPECT_EQ(read(one.xml), one.name) << one.what;
    }
}

TEST(WireDocument, RefusesWhatCouldHurtLater) {
    const std::vector<TextCase> cases = {
        {"no XML", "hello", "refused: the text is not XML"},
        {"nothing", "", "refused: the text is not XML"},
        {"an open element", "<A><name>x</name>", "refused: the text is not XML"},
        {"an unknown encoding", "<?xml version='1.0' encoding='UTF-16'?><A/>",
         "refused: the text has an encoding that is not known"},
        {"a zero byte", std::string("<A>\0</A>", 8), "refused: the text holds what XML cannot carry"},
        {"a control character", "<A>\x01</A>", "refused: the text holds what XML cannot carry"},
        {"a reference to zero", "<A><name>a&#0;b</name></A>",
         "refused: the text holds what XML cannot carry"},
        {"a hexadecimal reference to zero", "<A><name>a&#x000;b</name></A>",
         "refused: the text holds what XML cannot carry"},
        {"too many levels", nested(WireDocument::kMaxDepth), "refused: the text is nested too deeply"},
        {"very many levels", nested(9000), "refused: the text is nested too deeply"},
        {"more than a frame holds", "<A>" + std::string(65536, 'x') + "</A>",
         "refused: the text is too long"},
    };
    for (const TextCase& one : cases) {
        EXPECT_EQ(read(one.xml), one.name) << one.what;
    }
    EXPECT_EQ(read(nested(WireDocument::kMaxDepth - 3)), "");
}

TEST(WireDocument, DoesNotExpandEntitiesOfAnInnerDocumentType) {
    const std::string text = read("<!DOCTYPE A [<!ENTITY e 'boom'>]><A><name>&e;</name></A>");
    EXPECT_EQ(text.find("boom"), std::string::npos) << text;
}

TEST(WireDocument, FindsTheFirstTextHoweverDeepItIsWrapped) {
    std::string fault;
    const auto document = WireDocument::parse("<A><d><e/><f> <g>200</g></f><h>201</h></d></A>", fault);
    ASSERT_TRUE(document);
    EXPECT_EQ(firstText(childNamed(document->root(), "d")), "200");
    EXPECT_EQ(firstText(childNamed(document->root(), "missing")), "");
}

TEST(MessageKind, IsToldByTheRootElement) {
    EXPECT_EQ(messageKindOf("DeliveredEvent"), MessageKind::eEvent);
    EXPECT_EQ(messageKindOf("MonitorStartResponse"), MessageKind::eAnswer);
    EXPECT_EQ(messageKindOf("StartApplicationSessionNegResponse"), MessageKind::eAnswer);
    EXPECT_EQ(messageKindOf("CSTAErrorCode"), MessageKind::eError);
    EXPECT_EQ(messageKindOf("ApplicationSessionTerminated"), MessageKind::eNotice);
    EXPECT_EQ(messageKindOf("SystemStatus"), MessageKind::eRequest);
    EXPECT_EQ(messageKindOf("keepalive"), MessageKind::eForeign);
    EXPECT_EQ(messageKindOf(""), MessageKind::eForeign);
}

TEST(MessageWriter, WritesAnyTextSoThatItIsReadBack) {
    for (const std::string text : {"N<4711>Ann & Bob", "\"quoted\" 'too'", "a\rb", "\xE5\xB1\xB1", "]]>"}) {
        const std::string xml = MessageWriter("A", "urn:a&b").text("name", text).finish();
        EXPECT_EQ(read(xml), text) << xml;
    }
}

TEST(MessageWriter, ReplacesBytesThatXmlCannotCarry) {
    const std::string xml = MessageWriter("A", "urn:a")
                                .text("name", std::string("a\0b\xFF"
                                                          "c\x1B",
                                                          6))
                                .finish();
    EXPECT_EQ(read(xml),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c\xEF\xBF\xBD");
}

TEST(XmlText, KnowsWellFormedUtf8) {
    for (const char* good :
         {"", "a", "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xED\x9F\xBF", "\t\r\n"}) {
        EXPECT_TRUE(host::isXmlUtf8(good)) << good;
    }
    for (const char* bad : {"\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\xF0\x82\x82\xAC", "\x80", "\xFF", "\x01", "\xEF\xBF\xBF"}) {
        EXPECT_FALSE(host::isXmlUtf8(bad)) << bad;
    }
}

}  // namespace
