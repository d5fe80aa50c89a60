#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataAnswer.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/XmlLimits.h"

namespace {

constexpr const char* kEntryId = CallListDatabaseAdapterHelper::ENTRYID;

TEST(MethodOfMessage, IsReadOrMinusOne) {
    const std::pair<const char*, int> messages[] = {
        {"<JournalRequest><Method>0</Method></JournalRequest>", 0},
        {"<any><Method>41</Method></any>", 41},
        {"<j:any xmlns:j='x'><j:Method>7</j:Method></j:any>", 7},
        {"<any>\n  <Method><!-- which? -->7</Method>\n</any>", 7},
        {"<any><Method>7</Method><Method>8</Method></any>", 7},
        {"<any><Method>12345</Method></any>", 12345},
        {"<any><ENTRY><Method>7</Method></ENTRY></any>", -1},
        {"<any Method='7'/>", -1},
        {"<Method>7</Method>", -1},
        {"<any><Method>-2</Method></any>", -1},
        {"<any><Method>7 </Method></any>", -1},
        {"<any><Method>seven</Method></any>", -1},
        {"<any><Method>99999999999</Method></any>", -1},
        {"<any><Method/></any>", -1},
        {"<any/>", -1},
        {"7", -1},
        {"", -1},
    };
    for (const auto& [message, method] : messages) {
        EXPECT_EQ(JournalServiceHelper::getMethodFromXMLMsg(message), method) << message;
    }
}

TEST(GetXMLValue, GivesTheFirstValueAndTellsAnEmptyFieldFromAMissingOne) {
    std::string value = "before";
    EXPECT_FALSE(JournalServiceHelper::getXMLValue("<m><Other>a</Other></m>", "Value", value));
    EXPECT_EQ(value, "before");
    const std::pair<const char*, const char*> fields[] = {
        {"<Value>a</Value><Value>b</Value>", "a"},
        {"<Value/>", ""},
        {"<Value>  </Value>", "  "},
        {"<Value> a<![CDATA[<&>]]><!-- - -->b </Value>", " a<&>b "},
    };
    for (const auto& [text, expected] : fields) {
        EXPECT_TRUE(JournalServiceHelper::getXMLValue(std::string("<m>") + text + "</m>", "Value", value))
            << text;
        EXPECT_EQ(value, expected) << text;
    }
}

TEST(GetXMLValue, ReadsSettingsKeysAsBooleans) {
    const std::string answer =
        "<Schema name='JournalSettings'><call-log-enabled>false</call-log-enabled>"
        "<missed-logging>1</missed-logging><delete-missed-when-called>maybe</delete-missed-when-called></"
        "Schema>";
    bool enabled = true;
    bool missed = false;
    bool deleteMissed = true;
    EXPECT_TRUE(JournalServiceHelper::getXMLValue(answer, "call-log-enabled", enabled));
    EXPECT_FALSE(enabled);
    EXPECT_TRUE(JournalServiceHelper::getXMLValue(answer, "missed-logging", missed));
    EXPECT_TRUE(missed);
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(answer, "delete-missed-when-called", deleteMissed));
    EXPECT_TRUE(deleteMissed);
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(answer, "clear-calllog", deleteMissed));
}

TEST(GetXMLValue, RefusesAMessageBeyondItsBound) {
    std::string value;
    const std::string rest(journalxml::kMaxMessageBytes, 'x');
    EXPECT_FALSE(JournalServiceHelper::getXMLValue("<m><Value>a</Value>" + rest + "</m>", "Value", value));
}

TEST(GetAndRemoveXMLValue, TakesEveryValueInOrderAndLeavesAMessage) {
    std::string message =
        "<?xml version='1.0'?><m><Method>4</Method><EntryId>one</EntryId><EntryId>t&amp;wo</EntryId>"
        "<EntryId/><Value>v</Value><x:EntryId a='>'>fo<!--</EntryId>-->ur</x:EntryId></m>";
    std::vector<std::string> taken;
    std::string value;
    while (JournalServiceHelper::getAndRemoveXMLValue(message, kEntryId, value)) {
        taken.push_back(value);
    }
    EXPECT_EQ(taken, (std::vector<std::string>{"one", "t&wo", "", "four"}));
    EXPECT_EQ(message, "<?xml version='1.0'?><m><Method>4</Method><Value>v</Value></m>");
    EXPECT_EQ(value, "four");
}

TEST(GetAndRemoveXMLValue, CountsPlacesBehindAByteOrderMarkAndLongTexts) {
    std::string message =
        "\xEF\xBB\xBF<m><Value>&amp;&amp;&#13;\xC3\xBC\r\n</Value><EntryId>one</EntryId></m>";
    std::string value;
    ASSERT_TRUE(JournalServiceHelper::getAndRemoveXMLValue(message, kEntryId, value));
    EXPECT_EQ(value, "one");
    EXPECT_EQ(message, "\xEF\xBB\xBF<m><Value>&amp;&amp;&#13;\xC3\xBC\r\n</Value></m>");
}

TEST(GetAndRemoveXMLValue, TakesNothingOutOfAnEntry) {
    std::string message = "<m><ENTRY><EntryId>inner</EntryId></ENTRY></m>";
    const std::string before = message;
    std::string value;
    EXPECT_FALSE(JournalServiceHelper::getAndRemoveXMLValue(message, kEntryId, value));
    EXPECT_EQ(message, before);
}

TEST(GetAndRemoveXMLValue, TakesAFieldWithElementsInItAsAWhole) {
    std::string message = "<m><EntryId>a<EntryId>b</EntryId>c</EntryId><Value>v</Value></m>";
    std::string value;
    ASSERT_TRUE(JournalServiceHelper::getAndRemoveXMLValue(message, kEntryId, value));
    EXPECT_EQ(value, "ac");
    EXPECT_EQ(message, "<m><Value>v</Value></m>");
}

TEST(GetXMLValues, GivesAllInOnePass) {
    EXPECT_EQ(JournalServiceHelper::getXMLValues("<m><EntryId>b</EntryId><EntryId>a</EntryId></m>", kEntryId),
              (std::vector<std::string>{"b", "a"}));
    EXPECT_TRUE(JournalServiceHelper::getXMLValues("<m>", kEntryId).empty());
}

TEST(ParseLastUniqueId, IsEmptyUnlessTheAnswerNamesOne) {
    const auto uniqueIdOf = [](const std::string& answer) {
        return JournalServiceHelper::parseLastUniqueId(answer);
    };
    EXPECT_EQ(uniqueIdOf(journalxml::buildUpdateAnswer("CallLogMissedCalls", "17")), "17");
    EXPECT_EQ(uniqueIdOf(journalxml::buildUpdateAnswer("CallLogMissedCalls")), "");
    EXPECT_EQ(uniqueIdOf("failed"), "");
}

}  // namespace
