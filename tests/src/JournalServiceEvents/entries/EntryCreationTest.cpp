// The path of every call into its list, for all four lists: a new item, a merge, names, limits, the
// database and the observers.

#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "journal-items/Occurrences.h"
#include "platform/journal-library/ListXml.h"
#include "src/JournalServiceEvents/entries/OccurrenceFiling.h"
#include "tests/support/EntriesFixture.h"

namespace journaltest {
namespace {

template <typename Item>
class EntryCreation : public testing::Test {
protected:
    static constexpr bool kMissed = std::is_same_v<Item, MissedCallItem>;
    static constexpr bool kDialled = std::is_same_v<Item, DialledCallItem>;
    static constexpr bool kReceived = std::is_same_v<Item, ReceivedCallItem>;
    static constexpr const char* kUpdate = kMissed     ? "missed"
                                           : kDialled  ? "dialled"
                                           : kReceived ? "received"
                                                       : "forwarded";
    /// The list's number in the switch's log, which has no forwarded calls.
    static constexpr const char* kLogTarget = kMissed ? "1" : kDialled ? "4" : kReceived ? "0" : "";

    bool files(const std::string& number, const std::string& name = {}) {
        return fixture.template files<Item>(number, name);
    }
    bool filesLater(const std::string& number, const std::string& name = {}) {
        fixture.time.advance(60);
        return files(number, name);
    }
    [[nodiscard]] std::vector<Item> items() { return fixture.template items<Item>(); }

    /// The update for an observer; of a missed call the number of unviewed ones comes first.
    [[nodiscard]] static std::string announced(const std::string& entryId, const std::string& uniqueId,
                                               int action, int unviewed) {
        return (kMissed ? "missedCount(" + std::to_string(unviewed) + "); " : "") + kUpdate + "(" + entryId +
               ", " + uniqueId + ", " + std::to_string(action) + ")";
    }

    void startWith(const std::vector<Item>& list) {
        for (const Item& item : list) {
            fixture.database.addRow(ListXml<Item>::kTable, item);
        }
        fixture.startWith({});
    }
    static Item stored(const std::string& uniqueId, const std::vector<Occurrence>& calls) {
        auto item = itemOf<Item>("e" + uniqueId, uniqueId, calls);
        if constexpr (kDialled) {
            item.setJournalSeviceGroupBy(calls.front().number);
        }
        return item;
    }

    EntriesFixture fixture;
};

using Lists = testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem>;
TYPED_TEST_SUITE(EntryCreation, Lists);

TYPED_TEST(EntryCreation, PutsANewPartyInFrontAndMergesACallOfAKnownOneIntoItsItemAndItsRow) {
    ASSERT_TRUE(this->files("4711", "Ann"));
    ASSERT_TRUE(this->files("4712", "Bob"));
    const std::string first = "2026-11-21T05:22:05Z00000001";
    const std::string second = "2026-11-21T05:22:05Z00000002";
    EXPECT_EQ(this->fixture.entryIds(), second + " " + first);
    EXPECT_EQ(this->fixture.heard(),
              this->announced(first, "-", 0, 1) + "; " + this->announced(second, "-", 0, 2));
    EXPECT_EQ(this->fixture.listContents(), this->fixture.databaseContents());

    const std::string uniqueId = this->items()[1].getUniqueId();
    ASSERT_FALSE(uniqueId.empty());
    this->fixture.forget();
    ASSERT_TRUE(this->filesLater("4711"));
    const std::string merged = "2026-11-21T05:23:05Z00000003";
    EXPECT_EQ(this->fixture.entryIds(), merged + " " + second);
    const auto item = this->items()[0];
    EXPECT_EQ(item.getUniqueId(), uniqueId);
    EXPECT_EQ(item.getSurname(), "Ann") << "a call without a name takes none away";
    ASSERT_EQ(occurrencesOf(item).size(), 2U);
    EXPECT_EQ(occurrencesOf(item).back().getTimeAndDate(), "2026-11-21T05:22:05Z");
    EXPECT_EQ(this->fixture.heard(), this->announced(merged, uniqueId, 1, 2));
    const std::string table = std::string(ListXml<TypeParam>::kTable).substr(std::string("CallLog").size());
    EXPECT_EQ(this->fixture.written(), "write " + table + " " + uniqueId);
    EXPECT_EQ(this->fixture.listContents(), this->fixture.databaseContents());

    this->filesLater("4711", "Amy");
    EXPECT_EQ(this->items()[0].getSurname(), TestFixture::kDialled ? "Ann" : "Amy")
        << "a dialled entry keeps the names that it was made with";
}

TYPED_TEST(EntryCreation, ShowsThePhonebooksNameAndPictureElseTheNameThatTheSwitchSent) {
    Contact known;
    known.setOffice("4711");
    known.setFirstname("Ann");
    known.setSurname("Adams");
    known.setPicture("ann.png");
    this->fixture.phonebook.contacts = {known};
    const auto front = [this] {
        const auto item = this->items().front();
        return item.getSurname() + ", " + item.getFirstname() + ", " + item.getPictureClip();
    };
    this->files("4712", "Bob Brown");
    EXPECT_EQ(front(), "Bob Brown, , ");
    this->files("4711", "from the switch");
    EXPECT_EQ(front(), "Adams, Ann, ann.png");
    known.setSurname("Archer");
    known.setPicture("");
    this->fixture.phonebook.contacts = {known};
    this->filesLater("4711", "from the switch");
    EXPECT_EQ(front(), "Archer, Ann, ann.png") << "a merge brings the names up to date, and keeps a picture";
}

TYPED_TEST(EntryCreation, LoadsTheListsBeforeTheFirstCallLooksForItsParty) {
    this->startWith({this->stored("77", {{"4711", "2026-11-20T00:00:00Z"}})});
    EntriesFixture& phone = this->fixture;
    journal::ListTransaction(phone.lists).template open<TypeParam>().clear();
    phone.phoneIs(softwaretypes::sip);
    int loads = 0;
    journal::ListLoader loader(phone.settings, phone.adapter, phone.lists, [&] {
        ++loads;
        phone.loader.loadCallListsFromDb();
    });
    phone.lists.setSource(loader);
    phone.template files<TypeParam>("4711");
    phone.template files<TypeParam>("4712");
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(this->items().size(), 2U);
    EXPECT_EQ(this->items().back().getUniqueId(), "77");
}

TYPED_TEST(EntryCreation, GivesEveryItemAnEntryIdOfItsOwn) {
    const auto fileAs = [this](const std::string& callId, const std::string& number) {
        auto details = this->fixture.template callFrom<TypeParam>(number);
        details.callId = callId;
        details.presentationC =
            this->items().size() == 4 ? CallLogEntryEvent::ePresented : CallLogEntryEvent::eNotPresented;
        this->fixture.template file<TypeParam>(details);
    };
    // Ids that are no numbers, ids with the same low 32 bits, all within one second.
    fileAs("abc", "1");
    fileAs("xyz", "2");
    fileAs("4294967295", "3");
    fileAs("8589934591", "4");
    EXPECT_EQ(this->fixture.entryIds(),
              "2026-11-21T05:22:05Z00000002 2026-11-21T05:22:05ZFFFFFFFF "
              "2026-11-21T05:22:05Z00000001 2026-11-21T05:22:05Z00000000");
    fileAs("xyz", "1");
    EXPECT_EQ(this->items().front().getEntryId(), "2026-11-21T05:22:05Z00000003")
        << "a merge gives a new one";

    // Entries of other lists count, loaded or not.
    using Other =
        std::conditional_t<std::is_same_v<TypeParam, MissedCallItem>, DialledCallItem, MissedCallItem>;
    EntriesFixture& phone = this->fixture;
    auto other = phone.template callFrom<Other>("5");
    other.callId = "xyz";
    phone.template file<Other>(other);
    phone.database.addRow(ListXml<Other>::kTable,
                          itemOf<Other>("2026-11-21T05:22:05Z00000004", "99", {{"6", "2020"}}));
    phone.database.addRow(ListXml<CallBackItem>::kTable,
                          callBackOf("2026-11-21T05:22:05Z00000005", "7", "2020"));
    phone.load();
    journal::ListTransaction(phone.lists).template open<Other>().clear();
    fileAs("xyz", "8");
    EXPECT_EQ(this->items().front().getEntryId(), "2026-11-21T05:22:05Z00000006");
    phone.missedCallUpdates.updateMissedCall(
        itemOf<MissedCallItem>("2026-11-21T05:22:05Z00000005", "", {{"9", "2020"}}));
    EXPECT_EQ(phone.items<MissedCallItem>().front().getEntryId(), "2026-11-21T05:22:05Z00000007");
}

TYPED_TEST(EntryCreation, KeepsTenCallsAnItemAndReportsTheOneItLosesUnlessItsNumberStays) {
    for (const std::string oldest : {"4799", "4711"}) {
        for (const int systemIdentifier : {2, 0}) {
            EntriesFixture& phone = this->fixture;
            phone.phoneIs(softwaretypes::qorvex, systemIdentifier);
            phone.deletion.deleteAllCalls();
            std::vector<Occurrence> calls(9, Occurrence{"4711", "2026-11-20T00:00:00Z"});
            calls.push_back({oldest, "2026-11-01T00:00:00Z"});
            this->startWith({this->stored("77", calls)});
            this->files("4711");
            EXPECT_EQ(occurrencesOf(this->items().front()).size(), 10U);
            EXPECT_EQ(occurrencesOf(this->items().front()).back().getTimeAndDate(), "2026-11-20T00:00:00Z");
            EXPECT_EQ(phone.listContents(), phone.databaseContents());
            const std::string target = TestFixture::kLogTarget;
            const bool due = !target.empty() && systemIdentifier == 2 && oldest == "4799";
            EXPECT_EQ(phone.sent(), due ? "one " + target + " 4799 2026-11-01T00:00:00Z" : "")
                << oldest << ", identifier " << systemIdentifier;
        }
    }
}

TYPED_TEST(EntryCreation, DropsTheOldestOfATooLongListHereInTheDatabaseAndAtTheSwitch) {
    std::vector<TypeParam> full;
    for (std::size_t index = 0; index < journal::kMaxItems; ++index) {
        const std::string time = "2025-01-01T00:00:00Z" + std::to_string(9999 - index);
        full.push_back(this->stored(std::to_string(index + 1), {{"n" + std::to_string(index), time}}));
    }
    this->startWith(full);
    this->fixture.phoneIs(softwaretypes::qorvex, 2);
    this->files("4711");

    const bool limited = !TestFixture::kDialled;  // the dialled list has no limit for one more number
    EXPECT_EQ(this->items().size(), limited ? 1000U : 1001U);
    EXPECT_EQ(this->items().back().getEntryId(), limited ? "e999" : "e1000");
    EXPECT_EQ(this->fixture.listContents(), this->fixture.databaseContents());
    const std::string target = TestFixture::kLogTarget;
    EXPECT_EQ(this->fixture.sent(),
              limited && !target.empty() ? "one " + target + " n999 2025-01-01T00:00:00Z9000" : "");

    this->fixture.forget();
    this->filesLater("4711");
    EXPECT_EQ(this->fixture.written().find(';'), std::string::npos) << "a merge makes no list longer";
    if constexpr (TestFixture::kDialled) {
        this->fixture.entries.fileDialledCall(this->fixture.template callFrom<TypeParam>("4712"));
        EXPECT_EQ(this->items().size(), 1000U);
        EXPECT_EQ(this->fixture.listContents(), this->fixture.databaseContents());
        EXPECT_EQ(this->fixture.sent(),
                  "one 4 n999 2025-01-01T00:00:00Z9000; one 4 n998 2025-01-01T00:00:00Z9001");
    }
}

}  // namespace
}  // namespace journaltest
