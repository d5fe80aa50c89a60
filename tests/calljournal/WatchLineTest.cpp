#include "apps/calljournal/WatchLine.h"

#include <gtest/gtest.h>

#include <string>

#include "include/JournalServiceObserverIfc.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace host {
namespace {

journalxml::ObserverMessage read(const std::string& text) {
    return journalxml::parseObserverMessage(text).value();
}

ForwardedCallItem forwarded() {
    ForwardedCallItem item;
    item.setEntryId("e1");
    item.setSurname("Ann\n\x1b[2J");
    ForwardedCallItem::ForwardedCallInfo info;
    info.setNumber("4711");
    item.addCallInfoToList(info);
    return item;
}

TEST(WatchLine, SaysChangesInSentencesThatAreSafeToShow) {
    const auto message = read(JournalServiceHelper::obsReqForwardedCallsUpdate(forwarded(), "", 0));
    EXPECT_FALSE(isCount(message));
    EXPECT_EQ(watchText(message), "forwarded call from Ann\\n\\x1b[2J (4711)");
    EXPECT_EQ(watchText(read(JournalServiceHelper::obsReqCallBacksUpdate({}, "9", 2))),
              "a callback was deleted");
}

TEST(WatchLine, SaysCountsInSentences) {
    const auto missed = read(JournalServiceHelper::obsReqMissedCallsCountUpdate(3));
    EXPECT_TRUE(isCount(missed));
    EXPECT_EQ(watchText(missed), "3 new missed calls");
    const auto callbacks = read(JournalServiceHelper::obsReqCallBacksCountUpdate(1));
    EXPECT_TRUE(isCount(callbacks));
    EXPECT_EQ(watchText(callbacks), "1 callback");
}

TEST(WatchLine, WritesOneObjectForEachCallback) {
    EXPECT_EQ(watchJson(read(JournalServiceHelper::obsReqMissedCallsCountUpdate(3))),
              R"({"event":"missedCallsCountUpdate","data":{"count":3}})");
    EXPECT_EQ(watchJson(read(JournalServiceHelper::obsReqReceivedCallsUpdate({}, "17", 2))),
              R"({"event":"receivedCallsUpdate","data":{"action":2,"entryId":"17","item":null}})");
    const std::string line =
        watchJson(read(JournalServiceHelper::obsReqForwardedCallsUpdate(forwarded(), "17", 1)));
    EXPECT_EQ(line.find('\n'), std::string::npos);
    EXPECT_EQ(
        line.find(
            R"({"event":"forwardedCallsUpdate","data":{"action":1,"entryId":"17","item":{"entryId":"e1",)"),
        0U);
}

}  // namespace
}  // namespace host
