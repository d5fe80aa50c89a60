#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/switch/call-log/CallLog.h"
#include "tests/host/switch/SwitchFixture.h"
#include "tests/support/Table.h"

namespace {

using host::CallLog;
using journaltest::table;
using switchtest::Client;
using switchtest::Switch;
using testing::HasSubstr;
using Entry = CallLogEntryEvent;

TEST_F(Switch, SendsEachMonitoredPhoneItsOwnSideOfACall) {
    const std::string rows = R"(
call c from 4711 to 2001; ring c; answer c; hold c; retrieve c; hangup c by caller
+ | 2001 Delivered/alerting Established Held/hold Retrieved Cleared Cleared/null;
+ 4711 Originated Delivered Established Held Retrieved Cleared/null
call c from 1; ring c; divert c to 4712 reason noanswer; answer c; hangup c by caller
+ | 2001 Delivered/alerting Diverted/null; 4712 Delivered/alerting Established Cleared Cleared/null
dial c to 1; divert c to 4712 reason busy; noanswer c
+ | 2001 ServiceInitiated/initiated Originated Diverted Delivered Cleared/null;
+ 4712 Delivered/alerting Cleared/alerting Cleared/null
call c from 1 to 4712; ring c; pickup c; hangup c
+ | 2001 Established Cleared/null; 4712 Delivered/alerting Diverted/null
call c from 1; ring c; missed c; name c "Ann"; giveup c; missed from 2
+ | 2001 Delivered/alerting CallInformation/- CallInformation/- Cleared/alerting Cleared/null CallInformation/-
call c from 1; ring c; answer c; consult d from c to 4712 by caller; ring d; transfer c to d; answer c; hangup c
+ | 2001 Delivered/alerting Established Held Transfered Cleared/null;
+ 4712 Delivered/alerting Transfered/alerting Established Cleared Cleared/null
call c from 4711; ring c; answer c; transfer c to 4712; answer c; hangup c
+ | 2001 Delivered/alerting Established Held/hold Cleared/null Transfered/null;
+ 4711 Originated Delivered Established Held Cleared Transfered Cleared/null;
+ 4712 Delivered/alerting Established Cleared Cleared/null
dial c to 1; connect c; consult d from c to 4712; connect d; join c d; leave c by 1; leave c by 4712
+ | 2001 ServiceInitiated/initiated Originated Delivered Established Held/hold ServiceInitiated/initiated Originated
+ Delivered Established Conferenced Private/- Private/- Cleared Cleared Cleared/null;
+ 4712 Delivered/alerting Established Conferenced Private/- Cleared Cleared/null
)";
    Client client(simulator.port());
    for (const char* device : {"4711", "2001", "4712"}) {
        client.monitor(device);
    }
    for (const std::vector<std::string>& row : table(2, rows)) {
        playToEnd(simulator, row[0]);
        EXPECT_EQ(client.events(), row[1]) << row[0];
    }
}

TEST_F(Switch, WritesThePartiesAndTheCauseOfACall) {
    const std::string rows = R"(
call c from 4711 "Ann <Müller>" via 4700 because busy; ring c
+ | <callingDevice><deviceIdentifier>N&lt;4711&gt;Ann &lt;Müller&gt;</deviceIdentifier></callingDevice>
+<calledDevice><deviceIdentifier>4700</deviceIdentifier></calledDevice>
+<lastRedirectionDevice><numberDialed>4700</numberDialed></lastRedirectionDevice>
+<localConnectionInfo>alerting</localConnectionInfo><cause>callForwardBusy</cause>
call c from anonymous "Ann"; ring c | <callingDevice><restricted/></callingDevice>
dial c to 1 "Ann;=%"; ring c; divert c to 2; connect c; transfer c to anonymous by called
+ | <endpoint><restricted/></endpoint></connectionListItem></transferredConnections>
+<localConnectionInfo>connected</localConnectionInfo><cause>singleStepTransfer</cause><extensions><privateData>
+<private>dialledName=Ann%3B%3D%25;firstForwardedNumber=2;redirectingNumber=2</private>
dial c to 1; ring c; name c "Ann"
+ | <callingDevice><deviceIdentifier>N&lt;1&gt;Ann</deviceIdentifier></callingDevice></CallInformationEvent>
callback 4712 "Bob" because busy; callback 4712 cancel
+ | <callBackSetCanceled>false</callBackSetCanceled><extensions><privateData><private>onBusy requested</private>
callback 4712; callback 4712 done | <private>onRequest done</private>
)";
    Client client(simulator.port());
    client.monitor("2001");
    for (const std::vector<std::string>& row : table(2, rows)) {
        playToEnd(simulator, row[0]);
        EXPECT_THAT(client.eventsXml(), HasSubstr(row[1])) << row[0];
    }
}

/// "1 4711Ann, 4 4712": the numbers of the logs (0 received, 1 missed, 4 dialled, 7 of a group) with who is
/// in them.
std::string names(const std::vector<Entry>& entries) {
    std::string text;
    for (const Entry& entry : entries) {
        text += (text.empty() ? "" : ", ") + std::to_string(entry.logTarget) + " " + entry.subscriberNumber +
                entry.name;
    }
    return text;
}

TEST_F(Switch, ReportsItsLiveCalls) {
    // The state of the phone, and the devices of the call; the row's last call is asked for.
    const std::string rows = R"(
call c from 4711 "Ann"; ring c    | simpleCallState>callReceived<   | N&lt;4711&gt;Ann connected, PHONE alerting
dial c to 4712                    | simpleCallState>callOriginated< | PHONE connected
call c from anonymous; ring c; answer c; hold c by caller | simpleCallState>callEstablishedOnHold< | - hold, PHONE connected
call b from 1; ring b; answer b; hold b; dial c to 2; connect c; join b c
+ | compoundCallState><localConnectionState>connected<              | PHONE connected, 1 connected, 2 connected
call c from 1; ring c; giveup c   | snapshotData></snapshotData     |
)";
    Client client(simulator.port());
    int phone = 3000;
    for (const std::vector<std::string>& row : table(3, rows)) {
        const std::string number = std::to_string(++phone);
        playToEnd(simulator, "device " + number + "; " + row[0], {.awaitMonitor = false, .finished = {}});
        const std::string calls = client.request("<SnapshotDevice><snapshotObject>" + number +
                                                 "</snapshotObject></SnapshotDevice>");
        EXPECT_THAT(calls, HasSubstr(row[1])) << row[0];
        const std::size_t id = calls.find("<callID>");
        const std::string call = client.request(
            "<SnapshotCall><snapshotObject>" +
            (id == std::string::npos ? "" : calls.substr(id, calls.find("</callID>") - id + 9)) +
            "</snapshotObject></SnapshotCall>");
        std::string parties;
        for (std::size_t at = 0; (at = call.find("<deviceOnCall>", at)) != std::string::npos; ++at) {
            const auto text = [&](const std::string& tag) {
                const std::size_t begin = call.find('<' + tag + '>', at) + tag.size() + 2;
                return call.substr(begin, call.find("</" + tag, begin) - begin);
            };
            const bool restricted = text("deviceOnCall") == "<restricted/>";
            const std::string device = restricted ? "-" : text("deviceIdentifier");
            parties += (parties.empty() ? "" : ", ") + (device == number ? "PHONE" : device) + ' ' +
                       text("localConnectionInfo");
        }
        EXPECT_EQ(parties, row[2]) << row[0];
    }
}

TEST_F(Switch, AddsEachCallToItsLog) {
    const std::string rows = R"(
call c from 1; ring c; name c "Ann"; answer c; hangup c                                 | 0 1Ann
dial c to 1; divert c to 2; connect c; hangup c                                         | 4 1
call c from 1; ring c; elsewhere c; missed from 2                                       | 1 2
call c from 1 to 2; ring c; pickup c; hangup c                                          | 0 1
call c from 1; ring c; answer c; consult d from c to 2; connect d; transfer c to d      | 0 1, 4 2
call c from 1; ring c; answer c; transfer c to 2 by caller; answer c; hangup c          | 0 1
dial c to 1; connect c; consult d from c to 2; connect d; join c d; leave c             | 4 1, 4 2
call c from 1; ring c; divert c to 2; giveup c; call c from 1; ring c                   |
)";
    for (const std::vector<std::string>& row : table(2, rows)) {
        host::SwitchSimulator keeper({.port = 0, .callLog = true});
        keeper.start();
        playToEnd(keeper, row[0], {.awaitMonitor = false, .finished = {}});
        EXPECT_EQ(names(keeper.callLog()), row[1]) << row[0];
    }
}

TEST(CallLog, DeletesTheEntriesOfTheNamedGroupOnly) {
    CallLog log;
    static_cast<void>(log.add(Entry::eMissedGroup, {"2", "", "Sales"}));
    CallLogEntryRequest request;
    request.action = CallLogEntryRequest::eDeleteAll;
    request.logTarget = Entry::eMissedGroupRequest;
    request.subscriberNumber = "2";
    request.further.back() = {1, "Help"};
    EXPECT_TRUE(log.apply(request)->empty());
    EXPECT_EQ(names(log.entries()), "7 2");
    request.logTarget = Entry::eMissedMarked;
    EXPECT_FALSE(log.apply(request));
}

// The phone identifies an entry by its number and time. It assigns its own time to those of groups.
TEST(CallLog, DeletesTheEntryThatTheRequestMeans) {
    CallLog log;
    std::vector<std::string> times;
    for (const char* const group : {"", "Sales", "Help", "Sales"}) {
        times.push_back(log.add(group[0] == 0 ? Entry::eMissed : Entry::eMissedGroup, {"2", group, group})
                            .at(0)
                            .entryTime);
    }
    static_cast<void>(log.add(Entry::eMissed, {"3", "", ""}));
    CallLogEntryRequest request;
    request.action = CallLogEntryRequest::eDeleteOne;
    request.logTarget = Entry::eMissed;
    request.subscriberNumber = "2";
    // The time of the request, the entries that stay, and the times of the events for other phones.
    const struct {
        std::string time;
        const char* left;
        std::vector<std::string> events;
    } rows[] = {{times[2], "1 3, 1 2, 7 2Sales, 7 2Sales", {times[2]}},
                {times[0], "1 3, 7 2Sales, 7 2Sales", {times[0]}},
                {times[3], "1 3", {"", times[3]}}};
    for (const auto& row : rows) {
        request.entryTime = row.time;
        const CallLog::Events events = log.apply(request).value();
        EXPECT_EQ(names(log.entries()), row.left);
        ASSERT_EQ(events.size(), row.events.size());
        for (std::size_t i = 0; i < events.size(); ++i) {
            EXPECT_FALSE(CallLog::isOfWholeLog(events[i]));
            EXPECT_TRUE(row.events[i].empty() || events[i].entryTime <= row.events[i]) << events[i].entryTime;
        }
    }
}

TEST(CallLog, ReportsTheEntriesOfADroppedParty) {
    CallLog log;
    for (std::size_t i = 0; i < CallLog::kMaxParties; ++i) {
        EXPECT_EQ(log.add(Entry::eMissed, {std::to_string(1000 + i), "", ""}).size(), 1U);
    }
    const CallLog::Events events = log.add(Entry::eMissed, {"3", "", ""});
    EXPECT_EQ(names(events), "1 3, 1 1000");
    EXPECT_EQ(events.at(1).action, Entry::eDelete);
}

}  // namespace
