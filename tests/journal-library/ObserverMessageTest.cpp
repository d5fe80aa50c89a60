#include "platform/journal-library/ObserverMessage.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/JournalServiceHelper.h"

namespace {

using journalxml::ObserverMessage;
using journalxml::parseObserverMessage;
using Event = ObserverMessage::Event;

TEST(ObserverMessage, TellsCounts) {
    const auto missed = parseObserverMessage(JournalServiceHelper::obsReqMissedCallsCountUpdate(UINT_MAX));
    ASSERT_TRUE(missed);
    EXPECT_EQ(missed->event, Event::eMissedCallsCountUpdate);
    EXPECT_EQ(missed->count, UINT_MAX);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(missed->item));

    const auto callBacks = parseObserverMessage(JournalServiceHelper::obsReqCallBacksCountUpdate(0));
    ASSERT_TRUE(callBacks);
    EXPECT_EQ(callBacks->event, Event::eCallBacksCountUpdate);
    EXPECT_EQ(callBacks->count, 0U);
}

TEST(ObserverMessage, TellsWhichListChanged) {
    const auto eventOf = [](const std::string& text) {
        const auto message = parseObserverMessage(text);
        return message ? nameOf(message->event) : "none";
    };
    using Helper = JournalServiceHelper;
    EXPECT_STREQ(eventOf(Helper::obsReqMissedCallsUpdate({}, "", 3)), "missedCallsUpdate");
    EXPECT_STREQ(eventOf(Helper::obsReqDialledCallsUpdate({}, "", 3)), "dialledCallsUpdate");
    EXPECT_STREQ(eventOf(Helper::obsReqReceivedCallsUpdate({}, "", 3)), "receivedCallsUpdate");
    EXPECT_STREQ(eventOf(Helper::obsReqForwardedCallsUpdate({}, "", 3)), "forwardedCallsUpdate");
    EXPECT_STREQ(eventOf(Helper::obsReqCallBacksUpdate({}, "", 3)), "callBacksUpdate");
}

TEST(ObserverMessage, CarriesADefaultItemWhereThereIsNone) {
    const auto message = parseObserverMessage(
        "<any><Event>missedCallsUpdate</Event><Action>2</Action><EntryId>17</EntryId></any>");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->action, 2);
    EXPECT_EQ(message->entryId, "17");
    EXPECT_TRUE(std::get<MissedCallItem>(message->item).sameContent(MissedCallItem()));
}

TEST(ObserverMessage, IsNothingWhenItCannotBeUnderstood) {
    for (const char* text :
         {"", "failure", "<any/>", "<any><Event/></any>", "<any><Event>hello</Event></any>",
          "<any><Event>missedCallsCountUpdate</Event></any>",
          "<any><Event>missedCallsCountUpdate</Event><Count>-1</Count></any>",
          "<any><Event>missedCallsUpdate</Event></any>",
          "<any><Event>missedCallsUpdate</Event><Action>x</Action></any>"}) {
        EXPECT_FALSE(parseObserverMessage(text)) << text;
    }
}

}  // namespace
