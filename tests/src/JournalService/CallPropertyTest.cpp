#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "journal-items/Occurrences.h"
#include "journalservice/ObserverNotifierIfc.h"
#include "platform/journal-library/ListXml.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

// Simple calls: kind, the digits that its parties begin with, the steps. "#" is the call's id, "@" its party;
// steps between two ";" happen with nothing in between.
constexpr const char* kPlans = R"(
rang      | 47 | rings # @; clears #
rang      | 47 | offers #; rings # @; rings # @; clears #
elsewhere | 47 | rings # @; clears # cause=elsewhere
failed    | 47 | offers #; fails # @ here
failed    | 47 | fails 0 @ here cause=none
answered  | 47 | rings # @; answers # @; clears #
answered  | 47 | answers # @; holds #; retrieves #; clears #
answered  | 47 | answers # @; holds # for-transfer, clears #, waits 1000
dialled   | 47 | dials # @; ringsAt # @ @; reaches # @ @; clears #
dialled   | 47 | dials # @; ringsAt # @ @; clears #
dialled   | 47 | dials # @; fails # here @
diverted  | 48 | rings # @; diverts # @ here 4899, clears #
)";

// Wild events: "#" is one of a few ids, "@" one of a few parties, each time another.
const std::vector<std::string> kWildEvents = split(
    "offers #; rings # @; rings # @ cause=redirected by=@; rings # @ cause=forwarded; queues # @ here;"
    "queues # here @; answers # @; dials # @; dials # @ cause=directed-pickup; ringsAt # @ @;"
    "ringsAt # @ @ cause=forward-busy; ringsAt # @ @ cause=forwarded; reaches # @ @;"
    "reaches # @ @ cause=group-pickup; established # @ @ @; diverts # @ here @; diverts # here @ @;"
    "fails # @ here; fails # @ here cause=none; fails # here @; holds # for-transfer;"
    "retrieves # media=yes; clears #; clears # at=@ local=connected; clears # cause=transfer; waits 1000;"
    "clears # cause=elsewhere; transfers # # # here @; transfers # - # @ here; transfers # - # @ @;"
    "conference # # @ # @; status reset",
    ';');
const std::vector<std::string> kWildIds = {"w1", "w2", "w3", "w4", "w5"};

/// A line with random settings on which several calls go on at once, one event after the other.
///
/// Most are simple calls: each follows a plan, so that it is known in which list it must end. Between them
/// come wild events, about a few call ids that nothing is foretold of, and what a user does with the lists.
/// One seed gives one course.
class RandomLine {
public:
    /// Simple calls come from so many parties of each kind.
    RandomLine(unsigned seed, std::size_t parties)
        : m_phone(seed % 2 == 0 ? softwareTypes::qorvex : softwareTypes::sip),
          m_random(seed),
          m_parties(parties) {
        m_phone.service().subscribeForJournalEvents(&m_observer);
        // Seldom other than on an ordinary phone, or every other line would keep no journal at all.
        for (const std::string& name :
             split("callLog missedLogging deleteWhenCalled serverFeatures displayLast callEvents", ' ')) {
            play("set " + name + (upTo(8) == 0 ? " off" : " on"));
        }
        for (const std::string& name : split("keptElsewhere marksMissed otherServer", ' ')) {
            play("set " + name + (upTo(8) == 0 ? " on" : " off"));
        }
    }

    /// Lets one more thing happen, and some seconds pass.
    void happens() {
        const std::size_t what = m_calls.empty() ? 0 : upTo(100);
        if (what < 20) {
            beginCall();
        } else if (what < 70) {
            continueCall(upTo(m_calls.size()));
        } else if (what < 95) {
            wildEvent();
        } else {
            userActs();
        }
        play("passes " + std::to_string(1 + upTo(9)));
    }

    /// What does not hold now, a line each; empty when all is well.
    [[nodiscard]] std::string brokenInvariants() {
        std::string broken;
        checkList<MissedCallItem>(broken);
        checkList<DialledCallItem>(broken);
        checkList<ReceivedCallItem>(broken);
        checkList<ForwardedCallItem>(broken);
        checkTracking(broken);
        const auto missed = m_phone.list<MissedCallItem>();
        const auto unviewed =
            std::count_if(missed.begin(), missed.end(), [](const auto& item) { return !item.getViewed(); });
        const auto counted = static_cast<int>(m_phone.components().lists.getUnviewedMissedCallsCount());
        if (counted != unviewed || m_lastCount != unviewed) {
            broken += "\n" + std::to_string(unviewed) + " unviewed, the observer heard " +
                      std::to_string(m_lastCount);
        }
        if (m_filed != m_expected) {
            broken +=
                "\nfiled " + testing::PrintToString(m_filed) + ", not " + testing::PrintToString(m_expected);
        }
        return broken;
    }

    /// All that happened, to play it again.
    [[nodiscard]] const std::string& history() const { return m_history; }
    [[nodiscard]] std::size_t missedItems() { return m_phone.list<MissedCallItem>().size(); }

private:
    struct SimpleCall {
        std::string id;
        std::string kind;
        std::vector<std::string> steps;
        std::size_t next = 0;
    };

    [[nodiscard]] std::size_t upTo(std::size_t end) { return m_random() % end; }
    template <typename Values>
    [[nodiscard]] const auto& oneOf(const Values& values) {
        return values[upTo(values.size())];
    }
    void play(const std::string& script) {
        m_history += script + "; ";
        m_phone.plays(script);
    }

    /// Counts the filings of the parties whose numbers are foretold; what a user does announces items, too.
    void hear(const Callback& callback) {
        if (callback.event == Callback::Event::eMissedCallsCountUpdate) {
            m_lastCount = static_cast<int>(callback.count);
        }
        const bool filing = !m_userActs && callback.action <= JournalServiceObserverIfc::eItemUpdated;
        std::visit(
            [&](const auto& item) {
                if constexpr (requires { occurrencesOf(item).front(); }) {
                    const std::string number = filing ? occurrencesOf(item).front().getNumber() : "";
                    if (number.rfind("47", 0) == 0 || number.rfind("48", 0) == 0) {
                        ++m_filed[callback.text().substr(0, callback.text().find('('))];
                    }
                }
            },
            callback.item);
    }

    void beginCall() {
        static const auto kTable = table(3, kPlans);
        const auto& plan = oneOf(kTable);
        const std::string id = std::to_string(++m_lastId);
        const std::string party = plan[1] + std::to_string(upTo(m_parties));
        std::string steps;
        for (const char letter : plan[2]) {
            steps += letter == '#' ? id : letter == '@' ? party : std::string(1, letter);
        }
        m_calls.push_back({id, plan[0], split(steps, ';')});
        continueCall(m_calls.size() - 1);
    }

    void continueCall(std::size_t index) {
        SimpleCall& call = m_calls[index];
        std::string step = call.steps[call.next];
        std::replace(step.begin(), step.end(), ',', ';');
        play(step);
        if (++call.next == call.steps.size()) {
            const std::string list = listFor(call.kind);
            if (!list.empty()) {
                ++m_expected[list];
            }
            m_calls.erase(m_calls.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }

    void wildEvent() {
        std::string event;
        for (const char letter : oneOf(kWildEvents)) {
            const std::string party = "49" + std::to_string(upTo(4));
            event += letter == '#' ? oneOf(kWildIds) : letter == '@' ? party : std::string(1, letter);
        }
        play(event);
        if (event == "status reset" && accepted()) {
            m_calls.clear();  // of what the switch has lost nobody hears again
        }
    }

    void userActs() {
        auto& components = m_phone.components();
        const auto missed = m_phone.list<MissedCallItem>();
        const std::set<std::string> some = {missed.empty() ? "nobody" : oneOf(missed).getEntryId()};
        const std::size_t act = upTo(12);
        m_history += "(user " + std::to_string(act) + "); ";
        m_userActs = true;
        if (act == 0 && m_parties < 100) {
            components.deletion.deleteAllCalls();
            components.notifier.updateMissedCallCount(0);  // the client that clears the list notifies
        } else if (act < 3) {
            components.deletion.deleteCalls(some, false);
        } else if (act < 8) {
            components.missedCallUpdates.setMissedCallListAsViewed(some);
        } else {
            components.missedCallUpdates.ageMissedCall(*some.begin());
        }
        m_userActs = false;
    }

    // ---- what must hold

    [[nodiscard]] bool accepted() {
        const auto values = m_phone.components().settings.values();
        return !values->m_ringCentralSyncCallLog &&
               (values->isSip() ? values->m_callLogEnabled : values->m_useCSTACallControlEvents);
    }

    /// The list that a simple call of that kind must end in; empty for none.
    [[nodiscard]] std::string listFor(const std::string& kind) {
        const auto values = m_phone.components().settings.values();
        const bool sip = values->isSip();
        if (!accepted() || (kind == "diverted" && sip) || (kind == "elsewhere" && !values->m_missedLogging)) {
            return {};
        }
        if (kind == "answered" || kind == "dialled") {
            return kind == "answered" ? "received" : kind;
        }
        if (kind == "diverted" && values->m_serverBasedFeatures) {
            return "forwarded";
        }
        const bool waits =
            sip ? values->m_xsiConfigured : kind != "failed" && values->m_enterMarkedMissedCall;
        return waits ? "" : "missed";
    }

    template <typename Item>
    void checkList(std::string& broken) {
        const std::string name = std::string("\n") + ListXml<Item>::kTable + ": ";
        const auto items = m_phone.components().lists.read<Item>();
        const std::string* before = nullptr;
        std::set<std::string> inList, inDatabase;
        if (items->size() > 1000 && !std::is_same_v<Item, DialledCallItem>) {
            broken += name + std::to_string(items->size()) + " items";
        }
        for (const Item& item : *items) {
            const std::size_t calls = occurrencesOf(item).size();
            if (calls == 0 || calls > 10) {
                broken += name + "an item of " + std::to_string(calls) + " calls";
            }
            // An entry id begins with the time of the filing; the newest stands in front. The members of a
            // conference end in one second.
            constexpr std::size_t kTime = sizeof("2026-11-21T05:22:05Z") - 1;
            if (before != nullptr && before->compare(0, kTime, item.getEntryId(), 0, kTime) < 0) {
                broken += name + item.getEntryId() + " stands behind " + *before;
            }
            before = &item.getEntryId();
            inList.insert(item.getUniqueId());
        }
        for (const Item& row : m_phone.database.rows<Item>(ListXml<Item>::kTable)) {
            inDatabase.insert(row.getUniqueId());
        }
        broken += inList == inDatabase ? "" : name + "the database holds others";
    }

    /// Every call that goes on is tracked once under its id, and nothing else is but wild ones.
    void checkTracking(std::string& broken) {
        const auto isTracked = [&calls = m_phone.components().calls](const std::string& id) {
            const journal::Call* const call = calls.findCallFromId(id);
            return call != nullptr && call->m_sCallId == id;
        };
        auto known = std::count_if(kWildIds.begin(), kWildIds.end(), isTracked);
        for (const SimpleCall& call : m_calls) {
            known += isTracked(call.id) ? 1 : 0;
            if (isTracked(call.id) != accepted()) {
                broken += "\n" + call.id + (accepted() ? " is not tracked" : " is tracked");
            }
        }
        const auto tracked = static_cast<std::ptrdiff_t>(m_phone.components().calls.getNumberOfCalls());
        broken += tracked == known ? "" : "\n" + std::to_string(tracked - known) + " stray records";
    }

    SimulatedPhone m_phone;
    std::mt19937 m_random;
    std::size_t m_parties;
    std::vector<SimpleCall> m_calls;
    RecordingObserver m_observer{[this](const Callback& callback) { hear(callback); }};
    bool m_userActs = false;
    int m_lastCount = 0;
    std::map<std::string, int> m_filed;
    std::map<std::string, int> m_expected;
    int m_lastId = 0;
    std::string m_history;
};

/// Answers with the number of missed items in the end.
std::size_t checkCourse(unsigned seed, std::size_t parties, int events, int checkEvery) {
    RandomLine random(seed, parties);
    for (int event = 1; event <= events; ++event) {
        random.happens();
        if (event % checkEvery == 0) {
            const std::string broken = random.brokenInvariants();
            EXPECT_EQ(broken, "") << "seed " << seed << ", after " << random.history();
            event = broken.empty() ? event : events;
        }
    }
    return random.missedItems();
}

TEST(CallProperty, HoldsAfterEveryEventWhateverTheSwitchTells) {
    CapturedLog::switchOff();
    for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
        checkCourse(seed, 6, 250, 1);
    }
}

TEST(CallProperty, HoldsWhereTheListsAreFull) {
    CapturedLog::switchOff();
    EXPECT_EQ(checkCourse(1001, 100'000, 12'000, 500), 1000U);
    EXPECT_EQ(checkCourse(1004, 100'000, 12'000, 500), 1000U);
}

}  // namespace
}  // namespace journaltest
