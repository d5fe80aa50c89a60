// The call log that the switch keeps: what each of its events does in the lists, which call a deletion takes,
// and that no request follows to the switch.

#include <regex>

#include <gtest/gtest.h>

#include "journal-items/Occurrences.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/switch-log/CallLogEvents.h"
#include "src/JournalServiceEvents/switch-log/CallLogRemoval.h"
#include "tests/support/EntriesFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Entry = CallLogEntryEvent;

/// Eight o'clock on a day of November 2026.
std::string on(int day) {
    return "2026-11-" + std::to_string(day) + "T08:00:00Z";
}

Entry entry(int action, int target, const std::string& number, const std::string& when) {
    Entry event;
    event.action = action;
    event.logTarget = static_cast<Entry::_LogTarget>(target);
    event.subscriberNumber = number;
    event.entryTime = when;
    event.textE = target == Entry::eMissedGroup ? "line g" : "";
    return event;
}

/// Parties with the days of their calls: "4711:23,22 g4711:22"; "g" marks a call on a line.
template <typename Items>
std::string days(const Items& items) {
    Texts texts;
    for (const auto& item : items) {
        std::string& text = texts.emplace_back();
        for (const auto& info : occurrencesOf(item)) {
            std::string mark;
            if constexpr (requires { info.getLineKey(); }) {
                mark = info.getLineKey().empty() ? "" : "g";
            }
            text += text.empty() ? mark + info.getNumber() + ":" : ",";
            text += info.getTimeAndDate().substr(8, 2);
        }
    }
    return joined(texts, " ");
}

/// A Qorvex phone in server call-log mode, and what the switch says to it.
struct Phone : EntriesFixture {
    Phone() { phoneIs(softwaretypes::qorvex, 2); }
    void dayIs(int day) { time.set(FakeClock::kStart + (day - 21) * 86400L); }
    void hears(const Entry& event) { events.handleCallLogEntryEvent(&event); }
    std::string allDays() {
        return days(items<MissedCallItem>()) + " | " + days(items<DialledCallItem>()) + " | " +
               days(items<ReceivedCallItem>());
    }

    journal::CallMap calls;
    journal::CallLogRemoval removal{settings, clock, lists};
    journal::CallLogEvents events{calls, settings, clock, entries, removal, lists, deletion};
};

// --- what an event does ---

TEST(CallLogEvents, DoInTheListsWhatTheirActionAndLogSay) {
    const struct {
        int action;
        std::vector<int> targets;
        std::string lists;
        std::string heard;  // items without their entry ids, which are made of random numbers
        bool xsi = false;
    } rows[] = {
        {Entry::eAdd, {0}, "4711:22 g4711:22 | 4711:22 | 4711:23,22", "received(*, 1, 1)"},
        {Entry::eAdd, {1, 2}, "4711:23,22 g4711:22 | 4711:22 | 4711:22", "missedCount(2); missed(*, 4, 1)"},
        {Entry::eAdd, {4, 5, 6}, "4711:22 g4711:22 | 4711:23,22 | 4711:22", "dialled(*, 2, 1)"},
        {Entry::eAdd, {7}, "g4711:23,22 4711:22 | 4711:22 | 4711:22", "missedCount(2); missed(*, 3, 1)"},
        {Entry::eAdd, {3, 8, -1}, "4711:22 g4711:22 | 4711:22 | 4711:22", ""},
        {Entry::eAdd, {1, 2, 7}, "4711:22 g4711:22 | 4711:22 | 4711:22", "", true},
        {Entry::eDelete, {0}, "4711:22 g4711:22 | 4711:22 | ", "received(-, 1, 2)"},
        {Entry::eDelete, {1, 2, 7}, "g4711:22 | 4711:22 | 4711:22", "missedCount(1); missed(-, 4, 2)", true},
        {Entry::eDelete, {4, 5, 6}, "4711:22 g4711:22 |  | 4711:22", "dialled(-, 2, 2)"},
        {Entry::eDeleteAll, {0}, "4711:22 g4711:22 | 4711:22 | ", "received(-, -, 4)"},
        {Entry::eDeleteAll, {1, 2}, " | 4711:22 | 4711:22", "missedCount(0); missed(-, -, 4)"},
        {Entry::eDeleteAll, {4, 5, 6}, "4711:22 g4711:22 |  | 4711:22", "dialled(-, -, 4)"},
        {Entry::eDeleteAll, {7}, "4711:22 | 4711:22 | 4711:22", "missedCount(1); missed(-, 3, 2)"},
        {3, {0, 1, 4, 7}, "4711:22 g4711:22 | 4711:22 | 4711:22", ""},
    };
    for (const auto& row : rows) {
        for (const int target : row.targets) {
            SCOPED_TRACE("action " + std::to_string(row.action) + ", target " + std::to_string(target));
            Phone phone;
            phone.dayIs(22);
            for (const int log : {Entry::eReceived, Entry::eDialled, Entry::eMissedGroup, Entry::eMissed}) {
                phone.hears(entry(Entry::eAdd, log, "4711", on(22)));
            }
            phone.dayIs(23);
            phone.forget();
            phone.settings.change([&row](auto& values) { values.m_xsiConfigured = row.xsi; });
            phone.hears(entry(row.action, target, "4711", on(23)));
            EXPECT_EQ(phone.allDays(), row.lists);
            EXPECT_EQ(std::regex_replace(phone.heard(), std::regex("\\(2026[^,]*"), "(*"), row.heard);
            EXPECT_EQ(phone.listContents(), phone.databaseContents());
            EXPECT_EQ(phone.sent(), "") << "the switch knows";
            EXPECT_TRUE(phone.settings.values()->m_serverBasedCallLog);
        }
    }
}

TEST(CallLogEvents, KeepWhatTheSwitchSaysOfAnEntry) {
    Phone phone;
    Entry event = entry(Entry::eAdd, Entry::eMissedGroup, "4712", "whenever");
    event.name = "Ann";
    event.textF = "sales";
    event.entryTimeFormat = Entry::eTimeLocal;
    phone.hears(event);
    const auto call = phone.items<MissedCallItem>().front().getMissedCallInfoList().front();
    EXPECT_EQ(call.getGroupText() + ", " + call.getLineKey(), "sales, line g");
    EXPECT_EQ(call.getTimeAndDate(), phone.clock.getCurrentTime()) << "a group's call is dated by the phone";
    event.logTarget = Entry::eDialledUnanswered;
    phone.hears(event);
    phone.hears(event);
    const DialledCallItem item = phone.items<DialledCallItem>().front();
    const auto& dialled = item.getDialledCallInfoList().front();
    EXPECT_EQ(item.getSurname() + " " + item.getJournalSeviceGroupBy() + " " + dialled.getNumber(),
              "Ann 4712 4712");
    EXPECT_EQ(dialled.getTimeAndDate(), "whenever") << "the switch knows its entry by it";
    EXPECT_EQ(dialled.getLogTarget() * 10 + dialled.getTimeFormat(), 61);
    EXPECT_EQ(item.getDialledCallInfoList().size(), 1U) << "reported twice, it is the same entry";
}

TEST(CallLogEvents, LeaveTheLastWordOnTheModeToTheManagement) {
    Phone phone;
    phone.database.setResponse([&phone](const std::string& document) {
        phone.phoneIs(softwaretypes::qorvex, 0);
        return phone.database.carryOut(document);
    });
    phone.hears(entry(Entry::eDeleteAll, Entry::eMissed, "", ""));
    EXPECT_FALSE(phone.settings.values()->m_serverBasedCallLog);
}

// --- which call a deletion takes ---

struct PhoneWithCalls : Phone {
    PhoneWithCalls() {
        auto viewed = itemOf<MissedCallItem>("m2", "12", {{"4712", on(24)}, {"4711", "0000-00-00T00:00"}});
        viewed.setViewed(true);
        startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", on(25)}, {"4713", on(23)}, {"4711", on(21)}}),
                   viewed, itemOf<MissedCallItem>("m3", "13", {{"4711", on(22), "line"}, {"4711", on(20)}})},
                  {itemOf<DialledCallItem>("d1", "21", {{"4711", on(25)}, {"4711", on(22)}}),
                   itemOf<DialledCallItem>("d2", "22", {{"4712", on(24)}})},
                  {itemOf<ReceivedCallItem>("r1", "31", {{"4711", on(25)}, {"4711", on(22)}})});
        settings.change([](auto& values) { values.m_tzOffset = 60, values.m_daylightSaveMinutes = 30; });
    }
};

// Times of an entry without a zone are in the phone's, which is an hour and a half ahead, unless they are in
// ISO 8601.
TEST(CallLogRemoval, TakesTheFirstCallOfTheNumberThatIsNotLater) {
    for (const auto& row : table(4, R"(
4711 | iso   | 2026-11-25T07:59:59Z      | 4711:25,23 4712:24,00 g4711:22,20
4711 | iso   | 2026-11-20T23:00:00Z      | 4711:25,23,21 4712:24,00 g4711:22
4713 | iso   | 2026-11-23T09:00:00+01:00 | 4711:25,21 4712:24,00 g4711:22,20
4713 | local | 2026-11-23 09:30:00       | 4711:25,21 4712:24,00 g4711:22,20
4713 | local | 2026-11-23 09:29:59       | 4711:25,23,21 4712:24,00 g4711:22,20
4713 | local | 2026-11-23T08:00:00Z      | 4711:25,21 4712:24,00 g4711:22,20
4711 | iso   | 2026-11-19T08:00:00Z      | 4711:25,23,21 4712:24,00 g4711:22,20
471  | iso   | 2026-11-30T08:00:00Z      | 4711:25,23,21 4712:24,00 g4711:22,20
4711 | iso   | yesterday                 | 4711:25,23,21 4712:24,00 g4711:22,20
)")) {
        SCOPED_TRACE(row[0] + " " + row[2]);
        PhoneWithCalls phone;
        Entry event = entry(Entry::eDelete, Entry::eMissed, row[0], row[2]);
        event.entryTimeFormat = row[1] == "local" ? Entry::eTimeLocal : Entry::eTimeIso8601;
        phone.hears(event);
        EXPECT_EQ(days(phone.items<MissedCallItem>()), row[3]);
        EXPECT_EQ(phone.lists.getUnviewedMissedCallsCount(), 2U);
        EXPECT_EQ(phone.listContents(), phone.databaseContents());
    }
}

TEST(CallLogRemoval, TellsObserversAndDatabaseOfEachList) {
    PhoneWithCalls phone;
    phone.removal.removeMissedCallEntry("4711", on(25));
    phone.removal.removeMissedGroupCallEntry("4711", on(25));
    phone.removal.removeDialledCallEntry("4711", on(25));
    phone.removal.removeDialledCallEntry("4712", on(25));
    phone.removal.removeReceivedCallEntry("4711", on(24));
    phone.removal.removeReceivedCallEntry("4711", on(25));
    EXPECT_EQ(phone.allDays(), "4712:24,00 4713:23,21 4711:20 | 4711:22 | ") << "of a group the group's call";
    EXPECT_EQ(phone.heard(),
              "missedCount(2); missed(-, -, 3); missedCount(2); missed(-, -, 3); dialled(d2, -, 3); "
              "dialled(d1, 22, 2); received(-, -, 3); received(-, 31, 2)");
    EXPECT_EQ(phone.written(),
              "write MissedCalls 11; delete MissedCalls 13; write MissedCalls m3; write DialledCalls 21; "
              "delete DialledCalls 22; write ReceivedCalls 31; delete ReceivedCalls 31");
    EXPECT_EQ(phone.listContents(), phone.databaseContents());
}

}  // namespace
}  // namespace journaltest
