// The fakes that have rules of their own keep them: a fake that bends a contract makes every test on it lie.

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/framework/Executable.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/logging/Logging.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeDataAccess.h"

namespace journaltest {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using Db = CallListDatabaseAdapterHelper;

class Handler final : public Executable {
public:
    std::vector<int> expired;
    std::function<void(int)> during;

    void timerEvent(int id) override {
        expired.push_back(id);
        if (during) {
            during(id);
        }
    }
};

class FakeTimers : public testing::Test {
protected:
    FakeContext context;
    Handler handler;
};

TEST_F(FakeTimers, ExpireOnceInTheOrderOfTheirTimes) {
    const int slow = context.createTimer(handler, 300);
    const int fast = context.createTimer(handler, 100);
    context.startTimer(slow);
    context.startTimer(fast);
    context.advance(milliseconds(99));
    EXPECT_THAT(handler.expired, IsEmpty());
    context.advance(milliseconds(1000));
    EXPECT_THAT(handler.expired, ElementsAre(fast, slow));
    EXPECT_FALSE(context.isTimerRunning(fast));
}

TEST_F(FakeTimers, AreLeftAloneByASecondStartAndBegunAgainByARestart) {
    const int started = context.createTimer(handler, 100);
    const int restarted = context.createTimer(handler, 100);
    context.startTimer(started);
    context.restartTimer(restarted);
    context.advance(milliseconds(60));
    context.startTimer(started);
    context.restartTimer(restarted);
    context.advance(milliseconds(40));
    EXPECT_THAT(handler.expired, ElementsAre(started));
    context.advance(milliseconds(60));
    EXPECT_THAT(handler.expired, ElementsAre(started, restarted));
}

TEST_F(FakeTimers, DoNotExpireOnceAnEarlierExpiryHasStoppedThem) {
    const int first = context.createTimer(handler, 100);
    const int second = context.createTimer(handler, 100);
    context.startTimer(first);
    context.startTimer(second);
    handler.during = [&](int) { context.deleteTimer(second); };
    context.advance(milliseconds(100));
    EXPECT_THAT(handler.expired, ElementsAre(first));
    EXPECT_THAT(context.timers(), ElementsAre(first));
}

TEST_F(FakeTimers, ThatAreNotKnownAnswerFalse) {
    EXPECT_FALSE(context.startTimer(-1));
    EXPECT_FALSE(context.stopTimer(7));
    EXPECT_FALSE(context.restartTimer(7));
    EXPECT_FALSE(context.deleteTimer(7));
    EXPECT_FALSE(context.isTimerRunning(7));
    context.refuseTimers();
    EXPECT_EQ(context.createTimer(handler, 1), -1);
}

class FakeDatabase : public testing::Test {
protected:
    FakeDataAccess data;

    /// Writes an item and answers with the unique id that the database names.
    std::string write(const MissedCallItem& item) {
        return JournalServiceHelper::parseLastUniqueId(change(item, Db::WRITEREQUEST));
    }
    std::string change(const MissedCallItem& item, const char* requestType) {
        return data.processRequest(Db::addXMLHeaderFooter(
            Db::createXMLField(Db::REASONFORMESSAGE, requestType) +
                Db::createXMLElement(Db::ENTRY, Db::createXMLMissedCallItemBody(item, requestType)),
            Db::DAS_CALLLOGMISSEDCALLS));
    }
    std::vector<MissedCallItem> stored() const {
        return data.rows<MissedCallItem>(Db::DAS_CALLLOGMISSEDCALLS);
    }

    static MissedCallItem itemOf(const std::string& entryId, const std::string& time) {
        MissedCallItem item;
        item.setEntryId(entryId);
        MissedCallItem::MissedCallInfo occurrence;
        occurrence.setTimeAndDate(time);
        item.addCallInfoToList(occurrence);
        return item;
    }
};

TEST_F(FakeDatabase, CountsUniqueIdsUpAndReplacesTheRowThatIsNamed) {
    MissedCallItem item = itemOf("m1", "2026-11-21T05:22:05Z");
    const std::string uniqueId = write(item);
    EXPECT_NE(write(itemOf("m2", "2026-11-21T05:23:05Z")), uniqueId);

    item.setUniqueId(uniqueId);
    item.setEntryId("m3");
    EXPECT_EQ(write(item), uniqueId);
    ASSERT_EQ(stored().size(), 2U);
    EXPECT_TRUE(stored().front().sameContent(item));

    change(item, Db::DELETEREQUEST);
    ASSERT_EQ(stored().size(), 1U);
    EXPECT_EQ(stored().front().getEntryId(), "m2");
}

TEST_F(FakeDatabase, ReadsNewestFirstUpToTheLimit) {
    write(itemOf("old", "2026-11-21T05:00:00Z"));
    write(itemOf("newest", "2026-11-21T07:00:00Z"));
    write(itemOf("newer", "2026-11-21T06:00:00Z"));
    std::deque<MissedCallItem> read;
    ASSERT_TRUE(
        JournalServiceHelper::parseXMLMissedCallList(data.processRequest(Db::readMissedCallList(2)), read));
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].getEntryId(), "newest");
    EXPECT_EQ(read[1].getEntryId(), "newer");
}

TEST_F(FakeDatabase, ChangesNothingWhileItFails) {
    data.setFailing(true);
    EXPECT_EQ(change(itemOf("m1", "2026-11-21T05:22:05Z"), Db::WRITEREQUEST), Db::FAILED);
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(data.processRequest("nonsense"), Db::FAILED);
    EXPECT_EQ(data.documents().size(), 2U);
}

TEST(FakeClocks, FormatAndSplitTheSameText) {
    FakeClock clock;
    EXPECT_EQ(clock.formatTimeDate(clock.getSeconds()), "2026-11-21T05:22:05Z");
    ClockServiceIfc::DateTime time;
    ASSERT_TRUE(clock.splitTimeDate("2026-11-21T05:22:05Z", time));
    EXPECT_EQ(time.hour, 5);
    EXPECT_EQ(time.second, clock.getDateTime().second);
    EXPECT_FALSE(clock.splitTimeDate("21.11.2026", time));
    EXPECT_FALSE(clock.splitTimeDate("2026-11-21T05:22:05Zulu", time));
}

TEST(CapturedLogs, KeepWhatIsOnAndNothingElse) {
    CapturedLog::setLevel(3);
    logAppUni("Component", "source", 3, 1, "kept %d", 1);
    logAppUni("Component", "source", 4, 1, "not kept");
    EXPECT_THAT(CapturedLog::lines("Component"), ElementsAre("kept 1"));
    EXPECT_FALSE(loggingOnAppUni("Component", 4));
}

TEST(CapturedLogs, AreEmptyAndOpenAtTheBeginningOfEachTest) {
    EXPECT_THAT(CapturedLog::lines(), IsEmpty());
    EXPECT_TRUE(loggingOnAppUni("Component", 6));
}

}  // namespace
}  // namespace journaltest
