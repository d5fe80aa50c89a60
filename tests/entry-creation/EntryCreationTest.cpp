// The road that every call goes into its list, for all four lists: a new item, a merge, names, limits, the database and
// the observers.

#include <list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "journal-items/Occurrences.h"
#include "src/JournalService/ListTable.h"
#include "src/JournalServiceEvents/EntryRoad.h"
#include "tests/entry-creation/EntryRig.h"

namespace journaltest {
namespace {

/// Where a list differs in what it says: to observers, to the database, to the switch, which keeps no log of forwarded calls.
struct Words {
    const char* update;
    const char* table;
    const char* logTarget;
};
template <typename Item>
Words wordsOf() {
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        return {"missed", "MissedCalls", "1"};
    } else if constexpr (std::is_same_v<Item, DialledCallItem>) {
        return {"dialled", "DialledCalls", "4"};
    } else if constexpr (std::is_same_v<Item, ReceivedCallItem>) {
        return {"received", "ReceivedCalls", "0"};
    } else {
        return {"forwarded", "ForwardedCalls", ""};
    }
}

template <typename Item>
class EntryCreation : public testing::Test {
protected:
    static constexpr bool kMissed = std::is_same_v<Item, MissedCallItem>;
    static constexpr bool kDialled = std::is_same_v<Item, DialledCallItem>;

    bool files(const Party& party) { return rig.template files<Item>(party); }
    [[nodiscard]] std::vector<Item> items() { return rig.template items<Item>(); }

    /// What an observer hears; a missed call says the number of unviewed ones first.
    [[nodiscard]] static std::string announced(const std::string& entryId, const std::string& uniqueId,
                                               int action, int unviewed) {
        return (kMissed ? "missedCount(" + std::to_string(unviewed) + "); " : "") + wordsOf<Item>().update +
               "(" + entryId + ", " + uniqueId + ", " + std::to_string(action) + ")";
    }
    static std::string wrote(const std::string& uniqueId) {
        return "write " + std::string(wordsOf<Item>().table) + " " + uniqueId;
    }

    void startWith(const std::vector<Item>& list) {
        if constexpr (kMissed) {
            rig.startWith(list);
        } else if constexpr (kDialled) {
            rig.startWith({}, list);
        } else if constexpr (std::is_same_v<Item, ReceivedCallItem>) {
            rig.startWith({}, {}, list);
        } else {
            rig.startWith({}, {}, {}, list);
        }
    }
    static Item stored(const std::string& uniqueId, const std::vector<Occurrence>& calls) {
        auto item = itemOf<Item>("e" + uniqueId, uniqueId, calls);
        if constexpr (kDialled) {
            item.setJournalSeviceGroupBy(calls.front().number);
        }
        return item;
    }

    EntryRig rig;
};

using Lists = testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem>;
TYPED_TEST_SUITE(EntryCreation, Lists);

TYPED_TEST(EntryCreation, PutsANewPartyInFrontAndTellsOfIt) {
    ASSERT_TRUE(this->files({"4711", "Ann"}));
    ASSERT_TRUE(this->files({"4712", "Bob"}));
    const auto items = this->items();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].getEntryId(), "2026-11-21T05:22:05Z00000002");
    EXPECT_EQ(items[0].getSurname(), "Bob");
    EXPECT_EQ(occurrencesOf(items[0]).front().getNumber(), "4712");
    EXPECT_EQ(occurrencesOf(items[0]).front().getTimeAndDate(), "2026-11-21T05:22:05Z");
    EXPECT_EQ(items[1].getSurname(), "Ann");

    EXPECT_EQ(this->rig.heard(), this->announced(items[1].getEntryId(), "-", 0, 1) + "; " +
                                     this->announced(items[0].getEntryId(), "-", 0, 2));
    EXPECT_EQ(this->rig.listContents(), this->rig.databaseContents());
}

TYPED_TEST(EntryCreation, MergesACallOfTheSamePartyIntoItsItemAndItsRow) {
    this->files({"4711"});
    this->files({"4712"});
    const std::string uniqueId = this->items()[1].getUniqueId();
    ASSERT_FALSE(uniqueId.empty());
    this->rig.forget();
    this->rig.time.advance(60);
    ASSERT_TRUE(this->files({"4711"}));

    const auto items = this->items();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].getEntryId(), "2026-11-21T05:23:05Z00000003");
    EXPECT_EQ(items[0].getUniqueId(), uniqueId);
    ASSERT_EQ(occurrencesOf(items[0]).size(), 2U);
    EXPECT_EQ(occurrencesOf(items[0]).front().getTimeAndDate(), "2026-11-21T05:23:05Z");
    EXPECT_EQ(occurrencesOf(items[0]).back().getTimeAndDate(), "2026-11-21T05:22:05Z");

    EXPECT_EQ(this->rig.heard(), this->announced(items[0].getEntryId(), uniqueId, 1, 2));
    EXPECT_EQ(this->rig.written(), this->wrote(uniqueId));
    EXPECT_EQ(this->rig.listContents(), this->rig.databaseContents());
}

TYPED_TEST(EntryCreation, KeepsOneRowWhenTheFirstWriteFailed) {
    this->rig.database.setFailing(true);
    EXPECT_TRUE(this->files({"4711"}));
    EXPECT_EQ(this->items().size(), 1U);
    EXPECT_FALSE(this->rig.heard().empty());
    this->rig.database.setFailing(false);
    for (int call = 0; call < 2; ++call) {
        this->rig.time.advance(60);
        this->files({"4711"});
    }
    EXPECT_EQ(this->rig.databaseContents().size(), 1U);
    EXPECT_EQ(this->rig.listContents(), this->rig.databaseContents());
}

TYPED_TEST(EntryCreation, ShowsThePhonebooksNameAndPictureElseTheNameThatTheSwitchSent) {
    Contact known;
    known.setOffice("4711");
    known.setFirstname("Ann");
    known.setSurname("Adams");
    known.setPicture("ann.png");
    this->rig.phonebook.add(known);
    this->files({"4711", "from the switch"});
    this->files({"4712", "Bob Brown"});

    const auto items = this->items();
    EXPECT_EQ(items[1].getSurname() + ", " + items[1].getFirstname(), "Adams, Ann");
    EXPECT_EQ(items[1].getPictureClip(), "ann.png");
    EXPECT_EQ(items[0].getSurname() + ", " + items[0].getFirstname(), "Bob Brown, ");
    EXPECT_EQ(items[0].getPictureClip(), "");

    known.setSurname("Archer");
    this->rig.phonebook.clear();
    this->rig.phonebook.add(known);
    this->rig.time.advance(60);
    this->files({"4711", "from the switch"});
    EXPECT_EQ(this->items().front().getSurname(), "Archer") << "a merge brings the names up to date";
}

TYPED_TEST(EntryCreation, KeepsANameThatALaterCallDoesNotBring) {
    for (const char* name : {"Ann", "", "Amy"}) {
        this->rig.time.advance(60);
        this->files({"4711", name});
        // A dialled entry keeps the names that it was made with.
        const bool renames = *name != '\0' && !TestFixture::kDialled;
        EXPECT_EQ(this->items().front().getSurname(), renames ? name : "Ann");
    }
}

TYPED_TEST(EntryCreation, LoadsTheListsBeforeTheFirstCallLooksForItsParty) {
    this->startWith({this->stored("77", {{"4711", "2026-11-20T00:00:00Z"}})});
    this->rig.lists.template list<TypeParam>().access()->clear();
    int loads = 0;
    EntryRig& phone = this->rig;
    phone.phoneIs(softwareTypes::sip);
    journal::EntryCreation entries({phone.settings, phone.clock, phone.names, phone.lists, phone.mirror,
                                    phone.requests, phone.notifier, phone.rule, [&] {
                                        ++loads;
                                        phone.loader.loadCallListsFromDb();
                                    }});
    phone.file(entries, phone.template callWith<typename DetailsFor<TypeParam>::Type>({"4711"}));
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(this->items().size(), 1U);
    EXPECT_EQ(this->items().front().getUniqueId(), "77");
}

TYPED_TEST(EntryCreation, GivesEveryItemAnEntryIdOfItsOwn) {
    const auto fileAs = [this](const std::string& callId, const std::string& number) {
        auto details = this->rig.template callWith<typename DetailsFor<TypeParam>::Type>({number});
        details.callId = callId;
        details.presentationC =
            this->items().size() == 4 ? CallLogEntryEvent::ePresented : CallLogEntryEvent::eNotPresented;
        this->rig.file(details);
    };
    // Ids that are no numbers, ids with the same low 32 bits, all within one second.
    fileAs("abc", "1");
    fileAs("xyz", "2");
    fileAs("4294967295", "3");
    fileAs("8589934591", "4");
    EXPECT_EQ(this->rig.entryIds(),
              "2026-11-21T05:22:05Z00000002 2026-11-21T05:22:05ZFFFFFFFF "
              "2026-11-21T05:22:05Z00000001 2026-11-21T05:22:05Z00000000");
    fileAs("xyz", "1");
    EXPECT_EQ(this->items().front().getEntryId(), "2026-11-21T05:22:05Z00000003")
        << "a merge gives a new one";
}

TYPED_TEST(EntryCreation, KeepsTenCallsAnItem) {
    for (int call = 1; call <= 11; ++call) {
        this->rig.time.advance(60);
        this->files({"4711"});
    }
    const auto items = this->items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(occurrencesOf(items.front()).size(), 10U);
    EXPECT_EQ(occurrencesOf(items.front()).back().getTimeAndDate(), "2026-11-21T05:24:05Z");
    EXPECT_EQ(this->rig.listContents(), this->rig.databaseContents());
}

TYPED_TEST(EntryCreation, ReportsTheCallThatAFullItemLosesUnlessItsNumberStays) {
    const bool reports = *wordsOf<TypeParam>().logTarget != '\0';
    for (const std::string oldest : {"4799", "4711"}) {
        for (const int systemIdentifier : {2, 0}) {
            EntryRig& phone = this->rig;
            phone.phoneIs(softwareTypes::qorvex, systemIdentifier);
            phone.lists.deleteAllCalls();
            std::vector<Occurrence> calls(9, Occurrence{"4711", "2026-11-20T00:00:00Z"});
            calls.push_back({oldest, "2026-11-01T00:00:00Z"});
            this->startWith({this->stored("77", calls)});
            this->files({"4711"});
            const bool due = reports && systemIdentifier == 2 && oldest == "4799";
            EXPECT_EQ(phone.sent(), due ? "one " + std::string(wordsOf<TypeParam>().logTarget) +
                                              " 4799 2026-11-01T00:00:00Z"
                                        : "")
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
    this->rig.phoneIs(softwareTypes::qorvex, 2);
    this->files({"4711"});

    const bool limited = !TestFixture::kDialled;  // dialling one number more cuts nothing short
    EXPECT_EQ(this->items().size(), limited ? 1000U : 1001U);
    EXPECT_EQ(this->items().back().getEntryId(), limited ? "e999" : "e1000");
    EXPECT_EQ(this->rig.listContents(), this->rig.databaseContents());
    const std::string target = wordsOf<TypeParam>().logTarget;
    EXPECT_EQ(this->rig.sent(),
              limited && !target.empty() ? "one " + target + " n999 2025-01-01T00:00:00Z9000" : "");

    this->rig.forget();
    this->rig.time.advance(60);
    this->files({"4711"});
    EXPECT_EQ(this->rig.written().find(';'), std::string::npos) << "a merge makes no list longer";
}

/// The lists that gather calls by the party; dialled calls are gathered by the number that was looked up.
template <typename Item>
class AnonymousCalls : public EntryCreation<Item> {};
using PartyLists = testing::Types<MissedCallItem, ReceivedCallItem, ForwardedCallItem>;
TYPED_TEST_SUITE(AnonymousCalls, PartyLists);

TYPED_TEST(AnonymousCalls, AreOneItemAndNamedOnesWithoutNumberAnotherEach) {
    for (const char* name : {"", "Ann", "", "Bob", "Ann"}) {
        this->rig.time.advance(60);
        this->files({"", name});
    }
    const auto items = this->items();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].getSurname(), "Ann");
    EXPECT_EQ(occurrencesOf(items[0]).size(), 2U);
    EXPECT_EQ(items[1].getSurname(), "Bob");
    EXPECT_EQ(items[2].getSurname(), "");
    EXPECT_EQ(occurrencesOf(items[2]).size(), 2U);
}

}  // namespace
}  // namespace journaltest
