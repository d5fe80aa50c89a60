// The phone's lists and the switch's call log, kept equal over the real link while both sides change them.

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/WireDocument.h"
#include "host/data/LiveCallWriter.h"
#include "host/database/Database.h"
#include "host/framework/AsioTimerSource.h"
#include "host/framework/WorkerPool.h"
#include "host/line/Line.h"
#include "host/lists/ListOperations.h"
#include "host/switch/scenario/ScenarioParser.h"
#include "host/switch/server/SwitchSimulator.h"
#include "journal-items/Occurrences.h"
#include "journalservice/JournalServiceQorvexTel.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/MessageTrace.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/TemporaryDirectory.h"

namespace calllogtest {
namespace {

using Texts = std::vector<std::string>;

using Journal = JournalServiceIfc;

/// One entry of a list of the phone, and its calls as "NUMBER TIME", newest first.
struct Party {
    std::string entryId;
    Texts calls;
};

/// One of the phone's lists that the switch keeps, too: its name in scenarios, its number on the wire, its
/// operations.
struct List {
    const char* name;
    int target;
    std::vector<Party> (*read)(Journal& journal);
    bool (Journal::*deleteSet)(const std::set<std::string>& entryIds);
    bool (Journal::*deleteAll)();
};

template <typename Item>
std::vector<Party> partiesOf(Journal& journal) {
    std::vector<Party> parties;
    for (const Item& item : host::readList<Item>(journal)) {
        Party& party = parties.emplace_back(Party{item.getEntryId(), {}});
        for (const auto& info : occurrencesOf(item)) {
            party.calls.push_back(info.getNumber() + " " + info.getTimeAndDate());
        }
    }
    return parties;
}

template <typename Item>
constexpr List listOf(int target) {
    constexpr host::ListOperations<Item> kOperations = host::listOperations<Item>();
    return {ListTraits<Item>::kWord, target, &partiesOf<Item>, kOperations.deleteSet, kOperations.clear};
}

constexpr std::array<List, 3> kLists{listOf<MissedCallItem>(CallLogEntryEvent::eMissed),
                                     listOf<DialledCallItem>(CallLogEntryEvent::eDialled),
                                     listOf<ReceivedCallItem>(CallLogEntryEvent::eReceived)};

/// The journal on a line of its own, over the real link at a simulated switch: a Qorvex phone, number 2001.
class CallLogFixture {
public:
    CallLogFixture(const std::string& systemIdentifier, bool switchFilesCalls, bool switchEchoes = false)
        : m_switch({.port = 0,
                    .callLog = switchFilesCalls,
                    .echoDeletions = switchEchoes,
                    .messageListener = m_trace.listener()}) {
        m_switch.start();
        host::LineSettings settings;
        settings.link.port = m_switch.port();
        settings.managementFirst = {{"software-type", softwaretypes::qorvex},
                                    {"system-identifier", systemIdentifier}};
        m_line = std::make_unique<host::Line>(settings, std::make_unique<JournalServiceQorvexTel>(nullptr),
                                              m_database, m_liveCalls, m_pool, m_timerSource);
        m_line->start();
        m_journal = dynamic_cast<Journal*>(m_line->journal());
        m_observer.setDuring([this](const journaltest::Callback& callback) { recordChange(callback); });
        m_journal->subscribeForJournalEvents(&m_observer);
    }
    ~CallLogFixture() {
        m_journal->unsubscribeForJournalEvents(&m_observer);
        m_line->stop();
    }

    /// Lets the switch begin with it as soon as the phone is monitored, and returns.
    void play(const std::string& scenario) {
        {
            const std::lock_guard lock(m_mutex);
            ++m_toFinish;
        }
        host::PlayOptions options;
        options.finished = [this] {
            const std::lock_guard lock(m_mutex);
            --m_toFinish;
            m_changed.notify_all();
        };
        m_switch.run(host::parseScenario(scenario), options);
    }
    /// Waits until observers were notified of an entry of that number; false when that takes too long.
    [[nodiscard]] bool hearsOf(const std::string& number) {
        return await([&] { return std::find(m_heard.begin(), m_heard.end(), number) != m_heard.end(); });
    }
    /// Returns when every scenario is over and the phone has applied all events of the switch.
    [[nodiscard]] bool settles() {
        const std::string last = "last" + std::to_string(++m_settled);
        if (!await([this] { return m_toFinish == 0; })) {
            return false;
        }
        play("log add received " + last);
        return hearsOf(last);
    }

    [[nodiscard]] Journal& journal() { return *m_journal; }
    /// The numbers of the entries that observers heard of as added or changed, in order.
    [[nodiscard]] Texts heardNumbers() {
        const std::lock_guard lock(m_mutex);
        return m_heard;
    }
    /// The calls in the phone's lists and those in the switch's logs: "LOG NUMBER TIME".
    [[nodiscard]] std::multiset<std::string> listsAtPhone() {
        std::multiset<std::string> calls;
        for (const List& list : kLists) {
            for (const Party& party : list.read(*m_journal)) {
                for (const std::string& call : party.calls) {
                    calls.insert(std::to_string(list.target) + " " + call);
                }
            }
        }
        return calls;
    }
    /// The lines of the missed entries, empty for those without one.
    [[nodiscard]] std::multiset<std::string> missedLines() {
        std::multiset<std::string> lines;
        for (const MissedCallItem& item : host::readList<MissedCallItem>(*m_journal)) {
            lines.insert(item.getMissedCallInfoList().front().getLineKey());
        }
        return lines;
    }
    /// Deletes the missed entry of that number and line.
    void deleteMissed(const std::string& number, const std::string& line) {
        for (const MissedCallItem& item : host::readList<MissedCallItem>(*m_journal)) {
            const auto& newest = item.getMissedCallInfoList().front();
            if (newest.getNumber() == number && newest.getLineKey() == line) {
                EXPECT_TRUE(m_journal->deleteMissedCall(item.getEntryId(), false));
            }
        }
    }
    [[nodiscard]] std::multiset<std::string> logsAtSwitch() {
        std::multiset<std::string> calls;
        for (const CallLogEntryEvent& entry : m_switch.callLog()) {
            calls.insert(std::to_string(entry.logTarget) + " " + entry.subscriberNumber + " " +
                         entry.entryTime);
        }
        return calls;
    }
    /// The requests of the phone to the switch: "action log number time", and of a group its name.
    [[nodiscard]] Texts requests() {
        Texts texts;
        for (const host::SwitchMessage& message : m_trace.messages()) {
            std::string fault;
            if (message.name == "Escape") {
                const auto document = host::WireDocument::parse(message.xml, fault);
                const auto request = host::readCallLogEntryRequest(document->root()).value();
                texts.push_back(std::to_string(request.action) + " " + std::to_string(request.logTarget) +
                                " " + request.subscriberNumber + " " + request.entryTime +
                                request.further.back().text);
            }
        }
        return texts;
    }

private:
    void recordChange(const journaltest::Callback& callback) {
        if (callback.action > JournalServiceObserverIfc::eItemUpdated) {
            return;
        }
        std::visit(
            [this](const auto& item) {
                if constexpr (requires { occurrencesOf(item).front().getNumber(); }) {
                    const std::lock_guard lock(m_mutex);
                    m_heard.push_back(occurrencesOf(item).front().getNumber());
                    m_changed.notify_all();
                }
            },
            callback.item);
    }
    [[nodiscard]] bool await(const std::function<bool()>& condition) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(60), condition);
    }

    // Guarded by m_mutex.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_toFinish = 0;
    Texts m_heard;
    // The test's thread.
    int m_settled = 0;
    journaltest::RecordingObserver m_observer;
    TemporaryDirectory m_directory;
    host::Database m_database{m_directory.path() / "journal.db"};
    host::LiveCallWriter m_liveCalls{m_database};
    host::WorkerPool m_pool{2};
    host::AsioTimerSource m_timerSource{m_pool};
    journaltest::MessageTrace m_trace;
    host::SwitchSimulator m_switch;
    std::unique_ptr<host::Line> m_line;
    Journal* m_journal = nullptr;
};

/// Random operations on both sides, the same in every run, and the requests that the switch must get.
class BothSides {
public:
    explicit BothSides(CallLogFixture& phone) : m_phone(phone) {}
    /// With `oneByOne` the phone acts when it has applied all earlier events of the switch; else at any time.
    void act(bool oneByOne) {
        const List& list = kLists[pick(3)];
        const unsigned lot = pick(20);
        if (lot >= 9) {
            m_phone.play(call());
        } else if (lot >= 4) {
            ASSERT_TRUE(!oneByOne || m_phone.settles());
            deleteAtPhone(list);
        } else {
            m_phone.play(lot == 0 ? std::string("log clear ") + list.name
                                  : std::string("log delete ") + list.name + " " + number());
        }
    }
    [[nodiscard]] const Texts& expectedRequests() const { return m_expected; }

private:
    unsigned pick(std::size_t choices) { return static_cast<unsigned>(m_random() % choices); }
    std::string number() { return std::to_string(4711 + pick(4)); }

    std::string call() {
        const std::string caller = pick(8) == 0 ? "anonymous" : number() + " \"Ann\"";
        switch (pick(4)) {
            case 0: return "dial c to " + number() + " ; connect c ; hangup c";
            case 1: return "dial c to " + number() + " ; busy c";
            case 2: return "call c from " + caller + " ; ring c ; answer c ; hangup c by caller";
            default: return "call c from " + caller + " ; ring c ; giveup c";
        }
    }

    void deleteAtPhone(const List& list) {
        Journal& journal = m_phone.journal();
        const std::string log = std::to_string(list.target);
        const std::vector<Party> parties = list.read(journal);
        const unsigned lot = pick(8);
        if (lot == 0 || parties.empty()) {
            if (!parties.empty()) {
                m_expected.push_back("2 " + log + "  ");
            }
            (journal.*list.deleteAll)();
            return;
        }
        const bool several = lot <= 2;
        const Party& one = parties[pick(parties.size())];
        std::set<std::string> ids{"unknown"};
        for (const Party& party : parties) {
            if (several ? pick(2) == 0 : &party == &one) {
                ids.insert(party.entryId);
                m_expected.push_back("1 " + log + " " + party.calls.front());
            }
        }
        (journal.*list.deleteSet)(ids);
    }

    CallLogFixture& m_phone;
    std::mt19937 m_random{20261121};
    Texts m_expected;
};

TEST(CallLogSync, KeepsBothSidesEqualAndAsksForNothingButWhatTheUserDeletes) {
    for (const auto& [oneByOne, echoes] :
         {std::pair(true, false), {true, true}, {false, false}, {false, true}}) {
        CallLogFixture phone("2", true, echoes);
        BothSides sides(phone);
        if (!oneByOne) {
            std::string burst;
            for (int number = 10000; number < 10500; ++number) {
                burst += "log add missed " + std::to_string(number) + "\n";
            }
            phone.play(burst);
        }
        for (int i = 0; i < 200; ++i) {
            sides.act(oneByOne);
        }
        ASSERT_TRUE(phone.settles());
        EXPECT_EQ(phone.listsAtPhone(), phone.logsAtSwitch());
        if (oneByOne) {
            EXPECT_GT(sides.expectedRequests().size(), 40U);
            EXPECT_EQ(phone.requests(), sides.expectedRequests());
        }
    }
}

// Two groups and a direct call of one caller are three entries. The call of 5000 ends the wait of the
// groups'.
TEST(CallLogSync, DeletesOneEntryAndNoOtherOfTheSameNumber) {
    for (const bool echoes : {false, true}) {
        CallLogFixture phone("2", true, echoes);
        phone.play(
            "log add group 4711 \"Ann\" of \"Sales\"; log add group 4711 \"Ann\" of \"Help\";"
            "log add missed 4711 \"Ann\"; call c from 5000; ring c; giveup c");
        ASSERT_TRUE(phone.hearsOf("5000") && phone.settles());
        EXPECT_EQ(phone.missedLines(), (std::multiset<std::string>{"", "", "Help", "Sales"}));
        for (const auto& [line, left] :
             {std::pair("", Texts{"", "Help", "Sales"}), {"Sales", {"", "Help"}}}) {
            phone.deleteMissed("4711", line);
            ASSERT_TRUE(phone.settles());
            EXPECT_EQ(phone.missedLines(), std::multiset<std::string>(left.begin(), left.end())) << echoes;
        }
        EXPECT_EQ(phone.logsAtSwitch().size(), phone.listsAtPhone().size());
        EXPECT_EQ(phone.requests().size(), 2U);
    }
}

TEST(CallLogSync, LeavesTheVerdictOnMissedCallsToASwitchThatKeepsTheLogOfGroups) {
    CallLogFixture phone("1", false);
    phone.play(
        "call c from 4711 ; ring c ; giveup c\n"
        "call d from 4712 ; ring d ; missed d ; giveup d\n"
        "log add group 4713 \"Ann\" of \"Sales\"");
    ASSERT_TRUE(phone.hearsOf("4713"));
    EXPECT_EQ(phone.heardNumbers(), (Texts{"4712", "4713"}));
    EXPECT_TRUE(phone.journal().deleteAllCalls());
    EXPECT_EQ(phone.requests(), Texts{"2 3 4713 Sales"});
    EXPECT_TRUE(phone.logsAtSwitch().empty());
}

}  // namespace
}  // namespace calllogtest
