#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "host/data/CallRows.h"
#include "host/data/ContactRows.h"
#include "host/presentation/ItemJson.h"
#include "host/stored-lists/StoredLists.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using Session = host::Database::Session;

/// Changes of missed entries, chosen at random, and pages from the snapshot and from the database.
class ListSnapshotTest : public testing::Test {
protected:
    unsigned draw(unsigned count) { return static_cast<unsigned>(m_random() % count); }

    void change() {
        const bool fails = draw(8) == 0;
        const bool done = m_database->write("changing", [&](Session& session) {
            for (unsigned more = draw(3) + 1; more > 0; --more) {
                changeOne(session);
            }
            if (fails) {
                throw std::runtime_error("rolled back on purpose");
            }
        });
        EXPECT_NE(done, fails);
    }

    void changeOne(Session& session) {
        host::CallRows rows(session, m_context);
        const auto item = static_cast<std::int64_t>(1 + draw(12));
        MissedCallItem missed;
        switch (draw(7)) {
            case 0:
            case 1:
                missed = entry();
                missed.setUniqueId(std::to_string(item));
                static_cast<void>(rows.write(missed));
                break;
            case 2:
                if (rows.find(item, missed)) {
                    missed.setViewed(!missed.getViewed());
                    static_cast<void>(rows.write(missed));
                }
                break;
            case 3: static_cast<void>(rows.remove(ListName::eMissed, std::to_string(item), "", {})); break;
            case 4:
                session.query("UPDATE call SET end_approximate = 1 - end_approximate WHERE item = ?")
                    .bind(item)
                    .run();
                break;
            case 5:
                session.query("DELETE FROM call WHERE id = (SELECT max(id) FROM call WHERE item = ?)")
                    .bind(item)
                    .run();
                break;
            default: {
                Contact contact;
                contact.setSurname("Surname " + std::to_string(draw(100)));
                contact.setOffice(number());
                static_cast<void>(host::ContactRows(session, m_line, nullptr).insert(contact));
            }
        }
    }

    std::string number() { return "+4930" + std::to_string(draw(5)); }

    MissedCallItem entry() {
        MissedCallItem missed;
        // Some in the future.
        const std::string time = "20" + std::to_string(20 + draw(40)) + "-01-01T00:00:00Z";
        missed.setEntryId(time + std::to_string(draw(1000)));
        missed.setSurname("Name");
        for (unsigned more = draw(12) + 1; more > 0; --more) {
            MissedCallItem::MissedCallInfo info;
            info.setNumber(number());
            info.setTimeAndDate(time);
            info.setCallId(std::to_string(++m_calls));
            missed.addCallInfoToList(info);
        }
        return missed;
    }

    std::mt19937 m_random{20};
    unsigned m_calls = 0;
    journaltest::TemporaryDatabase m_database;
    const std::string m_line = "2001";
    const host::HistoryRows::Context m_context{m_line};
    host::StoredLists m_lists{*m_database, m_line};
};

TEST_F(ListSnapshotTest, HasTheEntriesAsTheyAreStoredAfterAnyChange) {
    for (int round = 0; round < 120; ++round) {
        change();
        if (round % 7 == 0) {
            m_database.otherConnection().exec("UPDATE call_item SET surname = 'Changed' || " +
                                              std::to_string(round) + " WHERE id % 2 = 0");
        }
        const std::size_t offset = draw(3);
        const std::size_t limit = draw(3) == 0 ? 2 : 1000;
        const auto page = m_lists.page(ListName::eMissed, "", offset, limit);
        ASSERT_TRUE(page);
        EXPECT_EQ(m_lists.pageText(ListName::eMissed, offset, limit),
                  host::jsonText({{"list", "missed"},
                                  {"total", page->total},
                                  {"unviewed", page->unviewed},
                                  {"items", page->items}}))
            << "round " << round;
        EXPECT_EQ(m_lists.unviewed(), page->unviewed) << "round " << round;
    }
}

}  // namespace
