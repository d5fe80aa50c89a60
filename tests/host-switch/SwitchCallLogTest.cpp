#include "host/switch/SwitchCallLog.h"

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/SwitchSimulator.h"

namespace {

using host::SwitchCallLog;
using Entry = CallLogEntryEvent;

std::string names(const std::vector<Entry>& entries) {
    std::string text;
    for (const Entry& entry : entries) {
        text += (text.empty() ? "" : ", ") + std::to_string(entry.logTarget) + " " + entry.subscriberNumber +
                entry.name;
    }
    return text;
}

CallLogEntryRequest deletion(Entry::_LogTarget log, const std::string& number, const std::string& time) {
    CallLogEntryRequest request;
    request.action = CallLogEntryRequest::eDeleteOne;
    request.logTarget = log;
    request.subscriberNumber = number;
    request.entryTime = time;
    return request;
}

TEST(SwitchCallLog, FilesEachCallInTheLogThatItBelongsIn) {
    // The number of the log first: 0 received, 1 missed, 4 dialled.
    const std::pair<const char*, const char*> cases[] = {
        {"call c from 1 \"Ann\"; ring c; giveup c", "1 1Ann"},
        {"call c from 1; ring c; name c \"Ann\"; answer c; hangup c", "0 1Ann"},
        {"call c from anonymous \"Ann\"; ring c; giveup c", "1 "},
        {"dial c to 1 \"Ann\"; busy c", "4 1Ann"},
        {"dial c to 1; divert c to 2; connect c; hangup c", "4 1"},
        {"call c from 1; ring c; elsewhere c; missed from 2", "1 2"},
        {"call c from 1; ring c; divert c to 2; giveup c", ""},
        {"call c from 1 to 2; ring c; pickup c; hangup c", "0 1"},
        {"call c from 1; ring c; answer c; consult d from c to 2; connect d; transfer c to d", "0 1, 4 2"},
        {"call c from 1; ring c; answer c; transfer c to 2 by caller; answer c; hangup c", "0 1"},
        {"dial c to 1; connect c; consult d from c to 2; connect d; join c d; leave c", "4 1, 4 2"},
        {"call c from 1; ring c", ""},
    };
    for (const auto& [text, expected] : cases) {
        host::SwitchOptions options{.port = 0, .callLog = true};
        host::SwitchSimulator keeper(options);
        keeper.start();
        std::promise<void> over;
        keeper.run(host::Scenario::parse(text),
                   {.awaitMonitor = false, .finished = [&over] { over.set_value(); }});
        over.get_future().wait();
        EXPECT_EQ(names(keeper.callLog()), expected) << text;
    }
}

TEST(SwitchCallLog, DeletesForAPhoneWhatThePhoneKnows) {
    SwitchCallLog log;
    const std::string first = log.file(Entry::eMissed, {"1", "", ""}).at(0).entryTime;
    const std::string second = log.file(Entry::eMissed, {"1", "", ""}).at(0).entryTime;
    EXPECT_LT(first, second);
    for (const Entry::_LogTarget other : {Entry::eDialled, Entry::eMissedGroup}) {
        static_cast<void>(log.file(other, {"1", "", other == Entry::eMissedGroup ? "Sales" : ""}));
    }
    EXPECT_EQ(log.apply(deletion(Entry::eMissed, "2", second))->size(), 0U);
    EXPECT_EQ(log.apply(deletion(Entry::eMissed, "1", first))->at(0).entryTime, first);
    EXPECT_EQ(names(log.entries()), "1 1, 4 1, 7 1");
    EXPECT_FALSE(log.apply(deletion(Entry::eMissedMarked, "1", second)));

    CallLogEntryRequest group = deletion(Entry::eMissedGroupRequest, "1", "");
    group.action = CallLogEntryRequest::eDeleteAll;
    group.further.back() = {1, "Help"};
    EXPECT_EQ(log.apply(group)->size(), 0U);
    group.further.back().text = "Sales";
    EXPECT_EQ(log.apply(group)->at(0).logTarget, Entry::eMissedGroup);

    CallLogEntryRequest all = deletion(Entry::eMissed, "", "");
    all.action = CallLogEntryRequest::eDeleteAll;
    EXPECT_EQ(log.apply(all)->at(0).action, Entry::eDeleteAll);
    EXPECT_EQ(names(log.entries()), "4 1");
    EXPECT_TRUE(log.apply(all)->empty()) << "nothing to tell of a log that was empty";
}

TEST(SwitchCallLog, KeepsTheBoundsOfThePhone) {
    SwitchCallLog log;
    for (std::size_t i = 0; i < SwitchCallLog::kMaxEntries + 1; ++i) {
        EXPECT_EQ(log.file(Entry::eMissed, {"1", "", ""}).size(), 1U);
    }
    EXPECT_EQ(log.entries().size(), SwitchCallLog::kMaxEntries);
    for (std::size_t i = 1; i < SwitchCallLog::kMaxParties; ++i) {
        static_cast<void>(log.file(Entry::eMissed, {"2" + std::to_string(i), "", ""}));
    }
    const SwitchCallLog::Events events = log.file(Entry::eMissed, {"3", "", ""});
    EXPECT_EQ(names(events), "1 3, 1 21");
    EXPECT_EQ(events.at(1).action, Entry::eDelete) << "what leaves with the oldest party is told";
    EXPECT_EQ(log.entries().size(), SwitchCallLog::kMaxEntries + SwitchCallLog::kMaxParties - 1);
}

}  // namespace
