#include "host/data/ContactRows.h"
#include "host/digits/DigitAnalysis.h"
#include "tests/host-data/DataAccessFixture.h"

namespace {

using journaltest::call;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Words = CallListDatabaseAdapterHelper;

class CallContacts : public journaltest::DataAccessFixture {
protected:
    void knows(const std::string& surname, const std::string& mobile, const std::string& line = "2001") {
        Contact contact;
        contact.setSurname(surname);
        contact.setMobile(mobile);
        ASSERT_TRUE(m_database->write("test", [&](host::Database::Session& session) {
            host::ContactRows(session, line, &m_digits).insert(contact);
        }));
    }
    std::vector<Contact> contacts(const std::string& fields = {}) {
        host::SqliteDataAccess access(*m_database, "2001", &m_digits);
        const std::string answer =
            journalOf(access).send(Words::READREQUEST, fields, Words::CALLLOGPHONEBOOK_SCHEMA);
        std::deque<MissedCallItem> missed;
        std::deque<DialledCallItem> dialled;
        std::deque<ReceivedCallItem> received;
        std::deque<ForwardedCallItem> forwarded;
        std::vector<Contact> read;
        EXPECT_TRUE(JournalServiceHelper::parseXMLdata(answer, missed, dialled, received, forwarded, read));
        EXPECT_TRUE(missed.empty() && dialled.empty() && received.empty() && forwarded.empty());
        return read;
    }
    static std::vector<std::string> names(const std::vector<Contact>& contacts) {
        std::vector<std::string> read;
        for (const Contact& contact : contacts) {
            read.push_back(contact.getSurname());
        }
        return read;
    }

    host::DigitAnalysis m_digits{"DE", {}};
};

TEST_F(CallContacts, BeginWithThoseWhoseNumberACallHasInAnySpelling) {
    knows("Albers", "999");
    knows("Miller", "+49 30 4711");
    knows("Elsewhere", "123", "3001");
    journal().writeOne(call<MissedCallItem>("0049 30/4711", "05:00:00"));
    journal().writeOne(call<DialledCallItem>("123", "06:00:00"));
    journal().writeOne(call<ReceivedCallItem>("", "07:00:00"));
    EXPECT_THAT(names(contacts()), ElementsAre("Miller", "Albers"));
    EXPECT_THAT(contacts().back().getCallRecords(), IsEmpty());
}

TEST_F(CallContacts, CarryTheItemsThatNameThemNewestFirst) {
    knows("Miller", "4711");
    const auto missed = call<MissedCallItem>("4711", "05:00:00");
    const auto dialled = call<DialledCallItem>("47-11", "07:00:00");
    const auto received = call<ReceivedCallItem>("4711", "06:00:00");
    const auto forwarded = call<ForwardedCallItem>("4711", "04:00:00");
    journal().writeOne(missed);
    journal().writeOne(dialled);
    journal().writeOne(received);
    journal().writeOne(forwarded);

    const auto read = contacts();
    ASSERT_THAT(read, SizeIs(1));
    EXPECT_THAT(read.front().getCallRecords(),
                ElementsAre(Contact::CallRecord{dialled.getEntryId(), "dialled"},
                            Contact::CallRecord{received.getEntryId(), "received"},
                            Contact::CallRecord{missed.getEntryId(), "missed"},
                            Contact::CallRecord{forwarded.getEntryId(), "forwarded"}));
}

TEST_F(CallContacts, ComeInTheOrderOfTheirCallsAndWithinTheRowLimit) {
    for (const char* const number : {"1", "2", "3", "4"}) {
        knows(number, number);
        journal().writeOne(call<MissedCallItem>(number, std::string("0") + number + ":00:00"));
    }
    EXPECT_THAT(names(contacts()), ElementsAre("4", "3", "2", "1"));
    EXPECT_THAT(names(contacts("<RowLimit>2</RowLimit>")), ElementsAre("4", "3"));
    EXPECT_THAT(names(contacts("<Offset>1</Offset><RowLimit>2</RowLimit>")), ElementsAre("3", "2"));
    EXPECT_THAT(names(contacts("<RowLimit>0</RowLimit>")), IsEmpty());
}

}  // namespace
