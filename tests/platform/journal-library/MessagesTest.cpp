#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/journal-library/ClientResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"
#include "platform/journal-library/XmlLimits.h"
#include "tests/support/Table.h"

/// The messages between clients, the journal and the management that hold no items.
namespace {

using Helper = JournalServiceHelper;
using journaltest::table;

TEST(MethodOfMessage, IsReadOrMinusOne) {
    for (const auto& row : table(2, R"(
        0     | <any><Method>0</Method></any>
        7     | <j:any xmlns:j='x'><j:Method>7</j:Method></j:any>; <any> <Method><!-- 8 -->7</Method> </any>
        7     | <any><Method>7</Method><Method>8</Method></any>
        -1    | <any><ENTRY><Method>7</Method></ENTRY></any>; <any Method='7'/>; <Method>7</Method>; 7;
        -1    | <any><Method>-2</Method></any>; <any><Method>7 </Method></any>; <any><Method/></any>
        -1    | <any><Method>seven</Method></any>; <any><Method>99999999999</Method></any>
        )")) {
        for (const std::string& message : journaltest::split(row[1], ';')) {
            EXPECT_EQ(std::to_string(Helper::getMethodFromXMLMsg(message)), row[0]) << message;
        }
    }
}

TEST(GetXMLValue, ReturnsTheFirstValueAndDistinguishesAnEmptyFieldFromAMissingOne) {
    for (const auto& row : table(2, R"(
        <Other>a</Other>                                   | none
        <Value>a</Value><Value>b</Value>                   | [a]
        <Value/>                                           | []
        <Value>  </Value>                                  | [  ]
        <Value> a<![CDATA[<&>]]><!-- - -->b </Value>       | [ a<&>b ]
        )")) {
        std::string value = "before";
        const bool found = Helper::getXMLValue("<m>" + row[0] + "</m>", "Value", value);
        EXPECT_EQ(found ? "[" + value + "]" : "none", row[1]) << row[0];
        EXPECT_TRUE(found || value == "before") << row[0];
    }
    std::string value;
    const std::string rest(journalxml::kMaxMessageBytes, 'x');
    EXPECT_FALSE(Helper::getXMLValue("<m><Value>a</Value>" + rest + "</m>", "Value", value));
}

TEST(GetAndRemoveXMLValue, RemovesEveryValueInOrderAndLeavesAMessage) {
    for (const auto& row : table(3, R"(
        <m><EntryId>1</EntryId><EntryId>t&amp;wo</EntryId><EntryId/></m>     | <m></m>           | 1 t&wo -
        <?x y?><m><x:EntryId a='>'>4<!--</EntryId>-->5</x:EntryId><V>v</V></m> | <?x y?><m><V>v</V></m> | 45
        <m><EntryId>a<EntryId>b</EntryId>c</EntryId><V>v</V></m>             | <m><V>v</V></m>   | ac
        <m><ENTRY><EntryId>i</EntryId></ENTRY></m>          | <m><ENTRY><EntryId>i</EntryId></ENTRY></m> |
        <m><EntryId>1</EntryId>                             | <m><EntryId>1</EntryId>           |
        )")) {
        std::string message = row[0];
        std::vector<std::string> taken;
        for (std::string value; Helper::getAndRemoveXMLValue(message, "EntryId", value);) {
            taken.push_back(value);
        }
        EXPECT_EQ(message, row[1]);
        EXPECT_EQ(Helper::getXMLValues(row[0], "EntryId"), taken);
        std::replace(taken.begin(), taken.end(), std::string(), std::string("-"));
        EXPECT_EQ(taken, journaltest::split(row[2], ' ')) << row[0];
    }
    std::string message = "\xEF\xBB\xBF<m><V>&amp;&#13;\xC3\xBC\r\n</V><EntryId>one</EntryId></m>";
    std::string value;
    ASSERT_TRUE(Helper::getAndRemoveXMLValue(message, "EntryId", value));
    EXPECT_EQ(message, "\xEF\xBB\xBF<m><V>&amp;&#13;\xC3\xBC\r\n</V></m>");
}

TEST(ContactList, IsEmptyOrRefusedAsAWhole) {
    std::vector<Contact> contacts;
    EXPECT_TRUE(journalxml::parseContactList("", contacts));
    EXPECT_FALSE(journalxml::parseContactList("<Entry/></ContactList><ContactList>", contacts));
    EXPECT_FALSE(journalxml::parseContactList("<Entry/><Entry>", contacts));
    EXPECT_TRUE(contacts.empty());
}

TEST(ObserverMessage, IsRefusedIfItIsNotComplete) {
    for (const auto& row : table(2, R"(
        <Event>missedCallsCountUpdate</Event><Count>4294967295</Count>          | 4294967295
        <Event>callBacksCountUpdate</Event><Count>0</Count>                     | 0
        <Event>missedCallsCountUpdate</Event>                                   | refused
        <Event>missedCallsCountUpdate</Event><Count>-1</Count>                  | refused
        <Event>missedCallsUpdate</Event><Action>2</Action><EntryId>17</EntryId> | 2 of 17
        <Event>missedCallsUpdate</Event>                                        | refused
        <Event>hello</Event>                                                    | refused
        </any>                                                                  | refused
        )")) {
        const auto read = journalxml::parseObserverMessage("<any>" + row[0] + "</any>");
        std::string text = "refused";
        if (read && std::holds_alternative<std::monostate>(read->item)) {
            text = std::to_string(read->count);
        } else if (read) {
            text = std::to_string(read->action) + " of " + read->entryId;
            EXPECT_TRUE(std::get<MissedCallItem>(read->item).sameContent({}));
        }
        EXPECT_EQ(text, row[1]) << row[0];
    }
}

}  // namespace
