#include "platform/journal-library/XmlScanner.h"

#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/XmlLimits.h"
#include "tests/journal-library/RandomItems.h"

namespace {

using journalxml::isSafeXml;
using journalxml::kMaxDepth;
using journalxml::kMaxDocumentBytes;

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

std::string nested(std::size_t depth) {
    return repeated("<a>", depth) + repeated("</a>", depth);
}

struct Case {
    const char* why;
    std::string text;
};

class AcceptedXml : public ::testing::TestWithParam<Case> {};

TEST_P(AcceptedXml, PassesTheScanner) {
    EXPECT_TRUE(isSafeXml(GetParam().text, kMaxDocumentBytes)) << GetParam().why;
}

INSTANTIATE_TEST_SUITE_P(
    Table, AcceptedXml,
    ::testing::Values(Case{"a declaration", "<?xml version=\"1.0\" encoding=\"utf-8\"?><a/>"},
                      Case{"a byte order mark", "\xEF\xBB\xBF<a/>"},
                      Case{"white space around the element", " \n<a/>\r\n\t"},
                      Case{"comments and instructions anywhere", "<!-- < & --><?p <?><a><!--x--></a><!---->"},
                      Case{"a greater-than sign within quotes", "<a b='>' c=\"/>'\">x</a>"},
                      Case{"references", "<a b='&lt;'>&amp;&gt;&quot;&apos;&#65;&#x1F600;&#0000000065;</a>"},
                      Case{"character data with anything in it", "<a><![CDATA[<b> & &#0; <!DOCTYPE ]]></a>"},
                      Case{"prefixes", "<p:a xmlns:p='urn:x'><p:b/></p:a>"},
                      Case{"as deep as allowed", nested(kMaxDepth)}));

class RefusedXml : public ::testing::TestWithParam<Case> {};

TEST_P(RefusedXml, StopsAtTheScanner) {
    EXPECT_FALSE(isSafeXml(GetParam().text, kMaxDocumentBytes)) << GetParam().why;
    std::string value = "before";
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(GetParam().text, "b", value)) << GetParam().why;
    EXPECT_EQ(value, "before") << GetParam().why;
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedXml,
    ::testing::Values(
        Case{"nothing", ""}, Case{"only white space", " \n"}, Case{"no element", "failed"},
        Case{"only a comment", "<!-- a -->"}, Case{"text before the element", "x<a><b/></a>"},
        Case{"text behind the element", "<a><b/></a>x"}, Case{"two elements", "<a><b/></a><a><b/></a>"},
        Case{"character data outside", "<a><b/></a><![CDATA[]]>"},
        Case{"a document type", "<!DOCTYPE a><a><b/></a>"},
        Case{"an entity that would explode",
             "<!DOCTYPE a [<!ENTITY x \"xxxxxxxxxx\"><!ENTITY y \"&x;&x;&x;\">]><a><b>&y;</b></a>"},
        Case{"an unknown entity", "<a><b>&y;</b></a>"}, Case{"a lone ampersand", "<a><b>R&D</b></a>"},
        Case{"an unfinished reference", "<a><b>&amp</b></a>"},
        Case{"a reference to NUL", "<a><b>x&#0;y</b></a>"},
        Case{"a reference to a control character", "<a><b>&#x1;</b></a>"},
        Case{"a reference to a surrogate", "<a><b>&#xD800;</b></a>"},
        Case{"a reference beyond Unicode", "<a><b>&#x110000;</b></a>"},
        Case{"a reference that overflows", "<a><b>&#99999999999999999999;</b></a>"},
        Case{"a reference without digits", "<a><b>&#;&#x;</b></a>"},
        Case{"a negative reference", "<a><b>&#-65;</b></a>"},
        Case{"a bad reference in an attribute", "<a c='&#0;'><b/></a>"},
        Case{"a tag within a tag", "<a <b/></a>"}, Case{"an end tag too many", "<a><b/></a></a>"},
        Case{"an end tag first", "</a><a><b/></a>"}, Case{"an unclosed element", "<a><b/>"},
        Case{"an unclosed tag", "<a><b/></a"}, Case{"an unclosed quote", "<a c='><b/></a>"},
        Case{"an unclosed comment", "<a><b/></a><!-- "},
        Case{"unclosed character data", "<a><b/><![CDATA[ </a>"},
        Case{"an unclosed instruction", "<a><b/></a><?x"},
        Case{"a NUL byte", std::string("<a><b/>\0</a>", 12)},
        Case{"a raw control character", "<a><b/>\x01</a>"},
        Case{"bytes that are no UTF-8", "<a><b/>\xFF</a>"},
        Case{"a surrogate in UTF-8", "<a><b/>\xED\xA0\x80</a>"},
        Case{"another encoding", std::string("\xFF\xFE<\0a\0/\0>\0", 10)},
        Case{"one level too deep", nested(17)}, Case{"a staircase", nested(200000)}));

TEST(SafeXml, LeavesNamesThatDisagreeToTheParser) {
    std::string value;
    EXPECT_FALSE(JournalServiceHelper::getXMLValue("<a><b></c></a>", "b", value));
    EXPECT_FALSE(JournalServiceHelper::getXMLValue("<a><b>x</b></z>", "b", value));
}

TEST(SafeXml, IsNotLongerThanItsBound) {
    const std::string text = "<a>" + std::string(100, 'x') + "</a>";
    EXPECT_TRUE(isSafeXml(text, text.size()));
    EXPECT_FALSE(isSafeXml(text, text.size() - 1));
}

TEST(SafeXml, HoldsABoundedNumberOfElements) {
    EXPECT_TRUE(
        isSafeXml("<a>" + repeated("<b/>", journalxml::kMaxMarkups - 10) + "</a>", kMaxDocumentBytes));
    EXPECT_FALSE(
        isSafeXml("<a>" + repeated("<b/>", journalxml::kMaxMarkups + 1) + "</a>", kMaxDocumentBytes));
}

TEST(SafeXml, NeverPassesAPieceOfAMessage) {
    MissedCallItem item("id", "Ada", "M\xC3\xBCller & <Sons>", {MissedCallItem::MissedCallInfo()}, true);
    const std::string whole = JournalServiceHelper::obsReqMissedCallsUpdate(item, "7", 1);
    ASSERT_TRUE(isSafeXml(whole, kMaxDocumentBytes));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(isSafeXml(whole.substr(0, length), kMaxDocumentBytes)) << length;
    }
}

// Whatever arrives, every reader answers; the sanitizers watch.
RC_GTEST_PROP(SafeXml, LetsNoTextCrashAReader, ()) {
    std::string text =
        "<?xml version='1.0'?><r><Method>4</Method><EntryId>x</EntryId><ENTRY><Occurrence/></ENTRY></r>";
    for (int count = *rc::gen::inRange(1, 6); count > 0; --count) {
        const auto at = *rc::gen::inRange<std::size_t>(0, text.size() + 1);
        const auto length = *rc::gen::inRange<std::size_t>(0, 5);
        text.replace(at, length, journaltest::someText());
    }
    MissedCallItem item;
    std::string value;
    std::string rest = text;
    const int method = JournalServiceHelper::getMethodFromXMLMsg(text);
    RC_ASSERT(method >= -1);
    const bool read = JournalServiceHelper::parseXMLMissedCallItem(text, item);
    RC_CLASSIFY(read);
    std::size_t taken = 0;
    while (JournalServiceHelper::getAndRemoveXMLValue(rest, "EntryId", value)) {
        ++taken;
        RC_ASSERT(taken <= text.size());
    }
    RC_ASSERT(JournalServiceHelper::getXMLValues(text, "EntryId").size() == taken);
}

}  // namespace
