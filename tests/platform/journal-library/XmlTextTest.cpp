#include <climits>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/client-utils/ClientUtils.h"
#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/XmlLimits.h"
#include "platform/journal-library/XmlScanner.h"
#include "tests/support/RandomItems.h"
#include "tests/support/Table.h"

/// The bytes that XML may carry, and their form.
namespace {

using journaltest::table;
using journalxml::isSafeXml;
using journalxml::kMaxDocumentBytes;

/// The bytes of a row: "\1b" is one byte, "[1b]" the private character U+EE1B that stands for one.
std::string bytesOf(const std::string& row) {
    std::string bytes;
    for (std::size_t at = 0; at < row.size(); ++at) {
        if (row[at] == '\\') {
            bytes += static_cast<char>(std::stoi(row.substr(at + 1, 2), nullptr, 16));
            at += 2;
        } else if (row[at] == '[' && row.substr(at + 3, 1) == "]") {
            utf8::append(bytes,
                         0xee00U + static_cast<unsigned>(std::stoi(row.substr(at + 1, 2), nullptr, 16)));
            at += 3;
        } else {
            bytes += row[at];
        }
    }
    return bytes;
}

TEST(EscapeXMLString, WritesWhatXmlCanCarry) {
    for (const auto& row : table(3, R"(
        plain text stays                      | Ada Miller                     | Ada Miller
        markup and quotes                     | <a>&"a' 'b"                    | &lt;a&gt;&amp;&quot;a&apos; &apos;b&quot;
        a carriage return would become a feed | a\0d\09\0ab                    | a&#13;\09\0ab
        UTF-8 of one to four bytes stays      | \7f\c3\bc\e2\82\ac\f0\9f\98\80 | \7f\c3\bc\e2\82\ac\f0\9f\98\80
        NUL and another control character     | \00\1b                         | [00][1b]
        a lone continuation byte              | \80                            | [80]
        a sequence cut short                  | \e2\82                         | [e2][82]
        a sequence broken by a plain letter   | \e2\82A                        | [e2][82]A
        an overlong form of NUL               | \c0\80                         | [c0][80]
        an overlong form of three bytes       | \e0\80\af                      | [e0][80][af]
        a surrogate                           | \ed\a0\80                      | [ed][a0][80]
        U+FFFF                                | \ef\bf\bf                      | [ef][bf][bf]
        beyond U+10FFFF                       | \f4\90\80\80                   | [f4][90][80][80]
        a genuine U+EE41                      | \ee\b9\81                      | [ee][b9][81]
        its neighbours below and above stay   | \ee\b7\bf\ee\bc\80             | \ee\b7\bf\ee\bc\80
        )")) {
        EXPECT_EQ(ClientUtils::escapeXMLString(bytesOf(row[1])), bytesOf(row[2])) << row[0];
    }
    EXPECT_EQ(ClientUtils::unescapeText(bytesOf(R"([fc]\ee\b7\bf cut \ee\b9)")),
              "\xfc\xEE\xB7\xBF cut \xEE\xB9");
}

TEST(IsStringBool, AcceptsFourWordsOfWhichTwoAreTrue) {
    for (const std::string word : {"true", "1", "false", "0", "", "True", " true", "2", "00"}) {
        const bool isTrue = word == "true" || word == "1";
        EXPECT_EQ(ClientUtils::stob(word), isTrue) << word;
        EXPECT_EQ(ClientUtils::isStringBool(word), isTrue || word == "false" || word == "0") << word;
    }
    EXPECT_EQ(ClientUtils::itos(UINT_MAX) + ClientUtils::itos(INT_MIN), "4294967295-2147483648");
}

TEST(SafeXml, IsWellFormedAndWithoutEntitiesOrForbiddenCharacters) {
    const std::string rows = R"(
safe:   declaration, byte order mark  | <?xml version="1.0" encoding="utf-8"?><a/> | \ef\bb\bf<a/>
safe:   white space around            | \20\0a<a/>\0d\0a\09
safe:   comments and instructions     | <!-- < & --><?p <?><a><!--x--></a><!---->
safe:   a greater-than within quotes  | <a b='>' c="/>'">x</a>
safe:   references                    | <a b='&lt;'>&amp;&gt;&quot;&apos;&#65;&#x1F600;&#0000000065;</a>
safe:   character data                | <a><![CDATA[<b> & &#0; <!DOCTYPE ]]></a>
safe:   prefixes                      | <p:a xmlns:p='urn:x'><p:b/></p:a>
safe:   names are left to the parser  | <a><b></c></a> | <a><b>x</b></z>
unsafe: no element                    | | \20\0a | failed | <!-- a -->
unsafe: text around the element       | x<a><b/></a> | <a><b/></a>x | <a><b/></a><![CDATA[]]>
unsafe: two elements                  | <a><b/></a><a><b/></a>
unsafe: a type that would explode     | <!DOCTYPE a [<!ENTITY y "&x;&x;&x;">]><a><b>&y;</b></a>
unsafe: entities unknown, unfinished  | <a><b>&y;</b></a> | <a><b>R&D</b></a> | <a><b>&amp</b></a>
unsafe: no XML characters             | <a><b>x&#0;y</b></a> | <a><b>&#x1;</b></a> | <a><b>&#xD800;</b></a>
unsafe: no numbers of characters      | <a><b>&#x110000;</b></a> | <a><b>&#99999999999999999999;</b></a>
unsafe: no numbers                    | <a><b>&#;</b></a> | <a><b>&#x;</b></a> | <a><b>&#-65;</b></a>
unsafe: a reference in a tag          | <a c='&#0;'><b/></a> | <a &lt;><b/></a>
unsafe: tags that do not match        | <a <b/></a> | <a><b/></a></a> | </a><a><b/></a> | <a><b/>
unsafe: unclosed tag, quote, comment  | <a><b/></a | <a c='><b/></a> | <a><b/></a><!--
unsafe: unclosed data, instruction    | <a><b/><![CDATA[ </a> | <a><b/></a><?x
unsafe: control characters            | <a><b/>\00</a> | <a><b/>\01</a>
unsafe: bytes that are no UTF-8       | <a><b/>\ff</a> | <a><b/>\ed\a0\80</a>
unsafe: another encoding              | \ff\fe<\00a\00/\00>\00
)";
    for (const std::string& row : journaltest::split(rows, '\n')) {
        const auto cells = journaltest::split(row, '|');
        for (std::size_t i = 1; i < cells.size(); ++i) {
            const std::string text = bytesOf(cells[i]);
            const bool isSafe = isSafeXml(text, kMaxDocumentBytes);
            EXPECT_EQ(isSafe, row.rfind("safe", 0) == 0) << text;
            std::string value = "before";
            EXPECT_TRUE(isSafe || !JournalServiceHelper::getXMLValue(text, "b", value)) << text;
            EXPECT_EQ(value, "before");
        }
    }
}

TEST(SafeXml, HasABoundedSizeDepthAndNumberOfElements) {
    using journalxml::kMaxMarkups;
    const auto repeated = [](const std::string& text, std::size_t times) {
        std::string all;
        for (; times > 0; --times) {
            all += text;
        }
        return all;
    };
    const std::string text = repeated("<a>", journalxml::kMaxDepth) + repeated("</a>", journalxml::kMaxDepth);
    EXPECT_TRUE(isSafeXml(text, text.size()));
    EXPECT_FALSE(isSafeXml(text, text.size() - 1));
    EXPECT_FALSE(isSafeXml("<a>" + text + "</a>", kMaxDocumentBytes));
    EXPECT_TRUE(isSafeXml("<a>" + repeated("<b/>", kMaxMarkups - 10) + "</a>", kMaxDocumentBytes));
    EXPECT_FALSE(isSafeXml("<a>" + repeated("<b/>", kMaxMarkups + 1) + "</a>", kMaxDocumentBytes));
}

// Every reader returns for any text; the sanitizers report what it must not do.
RC_GTEST_PROP(SafeXml, LetsNoTextCrashAReader, ()) {
    std::string text =
        "<?xml version='1.0'?><r><Method>4</Method><EntryId>x</EntryId><ENTRY><Occurrence/></ENTRY></r>";
    for (int count = *rc::gen::inRange(1, 6); count > 0; --count) {
        const auto at = *rc::gen::inRange<std::size_t>(0, text.size() + 1);
        text.replace(at, *rc::gen::inRange<std::size_t>(0, 5), journaltest::someText());
    }
    MissedCallItem item;
    std::string value;
    RC_ASSERT(JournalServiceHelper::getMethodFromXMLMsg(text) >= -1);
    RC_CLASSIFY(JournalServiceHelper::parseXMLMissedCallItem(text, item));
    const std::size_t values = JournalServiceHelper::getXMLValues(text, "EntryId").size();
    for (std::size_t taken = 0; taken <= values; ++taken) {
        RC_ASSERT(JournalServiceHelper::getAndRemoveXMLValue(text, "EntryId", value) == (taken < values));
    }
}

}  // namespace
