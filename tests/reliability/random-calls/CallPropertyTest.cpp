#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
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

// The steps of simple calls: "#" is the call's id, "@" its party; no other event comes at a ",".
const std::vector<std::vector<std::string>> kPlans = table(1, R"(
offers #; rings # @; rings # @; clears #
rings # @; clears # cause=elsewhere
offers #; fails # @ here
fails 0 @ here cause=none
rings # @; answers # @; holds #; retrieves #; clears #
answers # @; holds # for-transfer, clears #, waits 1000
dials # @; ringsAt # @ @; reaches # @ @; clears #
dials # @; fails # here @
rings # @; diverts # @ here 4899, clears #
)");

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
/// Most are simple calls, each of which follows a plan. Between them come wild events with a few call ids.
/// One seed gives one course.
class RandomLine {
public:
    explicit RandomLine(unsigned seed)
        : m_phone(seed % 2 == 0 ? softwaretypes::qorvex : softwaretypes::sip), m_random(seed) {
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
        } else {
            wildEvent();
        }
        play("passes " + std::to_string(1 + upTo(9)));
    }

    /// The invariants that do not hold, a line each; empty if all hold.
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
        return broken;
    }

    /// All that happened, to play it again.
    [[nodiscard]] const std::string& history() const { return m_history; }

private:
    struct SimpleCall {
        std::string id;
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

    void beginCall() {
        const std::string id = std::to_string(++m_lastId);
        const std::string party = "471" + std::to_string(upTo(6));
        std::string steps;
        for (const char letter : oneOf(kPlans).front()) {
            steps += letter == '#' ? id : letter == '@' ? party : std::string(1, letter);
        }
        m_calls.push_back({id, split(steps, ';')});
        continueCall(m_calls.size() - 1);
    }

    void continueCall(std::size_t index) {
        SimpleCall& call = m_calls[index];
        std::string step = call.steps[call.next];
        std::replace(step.begin(), step.end(), ',', ';');
        play(step);
        if (++call.next == call.steps.size()) {
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
            m_calls.clear();  // no event follows of the calls that the switch has lost
        }
    }

    // ---- what must hold

    [[nodiscard]] bool accepted() {
        const auto values = m_phone.components().settings.values();
        return !values->m_ringCentralSyncCallLog &&
               (values->isSip() ? values->m_callLogEnabled : values->m_useCSTACallControlEvents);
    }

    template <typename Item>
    void checkList(std::string& broken) {
        const std::string name = std::string("\n") + ListXml<Item>::kTable + ": ";
        const auto items = m_phone.components().lists.read<Item>();
        const std::string* before = nullptr;
        std::set<std::string> inList, inDatabase;
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

    /// Every call that goes on is tracked once under its id, and no other call but wild ones.
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
    std::vector<SimpleCall> m_calls;
    RecordingObserver m_observer{[this](const Callback& callback) {
        m_lastCount = callback.event == Callback::Event::eMissedCallsCountUpdate
                          ? static_cast<int>(callback.count)
                          : m_lastCount;
    }};
    int m_lastCount = 0;
    int m_lastId = 0;
    std::string m_history;
};

TEST(CallProperty, HoldsAfterEveryEventInAnyOrder) {
    CapturedLog::switchOff();
    for (unsigned seed = 1; seed <= 60 && !HasFailure(); ++seed) {
        RandomLine random(seed);
        for (int event = 0; event < 250 && !HasFailure(); ++event) {
            random.happens();
            EXPECT_EQ(random.brokenInvariants(), "") << "seed " << seed << ", after " << random.history();
        }
    }
}

}  // namespace
}  // namespace journaltest
