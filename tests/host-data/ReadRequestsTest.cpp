#include "tests/host-data/DataAccessFixture.h"

#include "tests/support/CapturedLog.h"

namespace {

using journaltest::call;
using journaltest::callBack;
using journaltest::CapturedLog;
using journaltest::surnames;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using Words = CallListDatabaseAdapterHelper;

class ReadRequests : public journaltest::DataAccessFixture {
protected:
    std::string read(const std::string& schema, const std::string& fields = {}) {
        return journal().send(Words::READREQUEST, fields, schema);
    }
    std::string conversations(const std::string& fields = {}) {
        return read(Words::CONVERSATIONS_SCHEMA, fields);
    }

    struct Mixed {
        std::deque<MissedCallItem> missed;
        std::deque<DialledCallItem> dialled;
        std::deque<ReceivedCallItem> received;
        std::deque<ForwardedCallItem> forwarded;
        std::vector<Contact> contacts;
    };
    static Mixed parsed(const std::string& answer) {
        Mixed mixed;
        EXPECT_TRUE(JournalServiceHelper::parseXMLdata(answer, mixed.missed, mixed.dialled, mixed.received,
                                                       mixed.forwarded, mixed.contacts));
        return mixed;
    }
};

TEST_F(ReadRequests, GiveTheNewestFirstAndNoMoreThanTheyAskFor) {
    for (const char* const time : {"05:00:00", "09:00:00", "07:00:00", "08:00:00", "06:00:00"}) {
        journal().writeOne(call<DialledCallItem>(time, time));
    }
    EXPECT_THAT(surnames(journal().read<DialledCallItem>()),
                ElementsAre("09:00:00", "08:00:00", "07:00:00", "06:00:00", "05:00:00"));
    EXPECT_THAT(surnames(journal().read<DialledCallItem>(2)), ElementsAre("09:00:00", "08:00:00"));
    EXPECT_THAT(journal().read<DialledCallItem>(0), IsEmpty());

    std::deque<DialledCallItem> page;
    JournalServiceHelper::parseXMLDialledCallList(
        read(Words::DAS_CALLLOGDIALLEDCALLS,
             Words::createXMLField(Words::OFFSET, "3") + Words::createXMLField(Words::ROWLIMIT, "9")),
        page);
    EXPECT_THAT(surnames(page), ElementsAre("06:00:00", "05:00:00"));

    for (const char* const time : {"05:00:00", "07:00:00", "06:00:00"}) {
        journal().writeOne(callBack(time, time));
    }
    const auto callBacks = journal().read<CallBackItem>(2);
    ASSERT_THAT(callBacks, SizeIs(2));
    EXPECT_EQ(callBacks[0].getEntryId() + " " + callBacks[1].getEntryId(), "07:00:00 06:00:00");
}

TEST_F(ReadRequests, OrderItemsOfOneSecondByTheirEntryIdsAndOneWithoutCallsByItsOwn) {
    for (const char* const digits : {"00000001", "00000003", "00000002"}) {
        auto item = call<MissedCallItem>(digits, "05:00:00");
        item.setEntryId(std::string("2026-11-21T05:00:00Z") + digits);
        journal().writeOne(item);
    }
    auto empty = call<MissedCallItem>("empty", "06:00:00");
    empty.setMissedCallInfoList({});
    journal().writeOne(empty);
    journal().writeOne(call<MissedCallItem>("after", "07:00:00"));
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()),
                ElementsAre("after", "empty", "00000003", "00000002", "00000001"));
}

TEST_F(ReadRequests, MoveAnItemToTheFrontWhenItsNewestCallIsNewer) {
    auto item = call<MissedCallItem>("moves", "05:00:00");
    journal().file(item);
    journal().writeOne(call<MissedCallItem>("stays", "06:00:00"));
    auto later = call<MissedCallItem>("moves", "07:00:00");
    later.setUniqueId(item.getUniqueId());
    journal().writeOne(later);
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("moves", "stays"));
}

TEST_F(ReadRequests, OfConversationsCountTheNewestOfAllListsTogether) {
    journal().writeOne(call<MissedCallItem>("missed", "05:00:00"));
    journal().writeOne(call<DialledCallItem>("dialled", "08:00:00"));
    journal().writeOne(call<ReceivedCallItem>("received", "06:00:00"));
    journal().writeOne(call<ForwardedCallItem>("forwarded", "07:00:00"));
    journal().writeOne(callBack("no call", "09:00:00"));

    const Mixed all = parsed(conversations());
    EXPECT_THAT(surnames(all.missed), ElementsAre("missed"));
    EXPECT_THAT(surnames(all.dialled), ElementsAre("dialled"));
    EXPECT_THAT(surnames(all.received), ElementsAre("received"));
    EXPECT_THAT(surnames(all.forwarded), ElementsAre("forwarded"));
    EXPECT_THAT(all.contacts, IsEmpty());

    const Mixed newest = parsed(conversations(Words::createXMLField(Words::ROWLIMIT, "2")));
    EXPECT_THAT(newest.missed, IsEmpty());
    EXPECT_THAT(newest.received, IsEmpty());
    EXPECT_THAT(newest.dialled, SizeIs(1));
    EXPECT_THAT(newest.forwarded, SizeIs(1));
}

TEST_F(ReadRequests, OfAnEmptyDatabaseGiveEmptyDocuments) {
    for (const char* const schema :
         {Words::DAS_CALLLOGMISSEDCALLS, Words::DAS_CALLLOGDIALLEDCALLS, Words::DAS_CALLLOGRECEIVEDCALLS,
          Words::DAS_CALLLOGFORWARDEDCALLS, Words::DAS_CALLLOGCALLBACKS, Words::CONVERSATIONS_SCHEMA,
          Words::CALLLOGPHONEBOOK_SCHEMA, JournalServiceHelper::SETTINGS_SCHEMA}) {
        const std::string answer = read(schema);
        EXPECT_THAT(answer, HasSubstr(schema));
        EXPECT_THAT(answer, Not(HasSubstr("ENTRY")));
    }
}

TEST_F(ReadRequests, ThatCannotBeReadFailWithOneLogLineAndLeaveTheDatabaseHealthy) {
    for (const std::string& request :
         {std::string(), std::string("<Schema"), std::string("<x/>"), std::string(100, '\0'),
          Words::addXMLHeaderFooter(Words::createXMLField(Words::REASONFORMESSAGE, "drop_request"),
                                    Words::DAS_CALLLOGMISSEDCALLS),
          Words::addXMLHeaderFooter(Words::createXMLField(Words::REASONFORMESSAGE, Words::READREQUEST),
                                    "CallLogAll")}) {
        CapturedLog::reset();
        EXPECT_EQ(m_access->processRequest(request), "failed");
        EXPECT_THAT(CapturedLog::lines("Database"), SizeIs(1)) << request;
        EXPECT_TRUE(m_access->healthy());
    }
}

}  // namespace
