#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "host/csta/SnapshotRequests.h"
#include "tests/host/csta/SilentChannel.h"
#include "tests/support/Table.h"

namespace {

using host::CallSnapshot;
using host::DeviceSnapshot;
using host::SnapshotRequests;
using linktest::parsed;

std::string textOf(const std::optional<int>& state) {
    return state ? std::to_string(*state) : "-";
}

/// "871 own 4 others 3 2", one text for each connection.
std::string textOf(const std::optional<DeviceSnapshot>& snapshot) {
    std::string text;
    for (const DeviceSnapshot::Connection& one :
         snapshot ? snapshot->connections : decltype(snapshot->connections)()) {
        text += (text.empty() ? "" : ", ") + one.callId + ' ' + textOf(one.own);
        for (const int other : one.others) {
            text += '/' + std::to_string(other);
        }
    }
    return snapshot ? (text.empty() ? "none" : text) : "failed";
}

std::string textOf(const std::optional<CallSnapshot>& snapshot) {
    if (!snapshot) {
        return "failed";
    }
    std::string text = snapshot->calling.device.number + '>' + snapshot->called.device.number;
    for (const CallSnapshot::Party& party : snapshot->parties) {
        const bool own = party.device.party == host::EventParty::eMonitored;
        text += ' ' + (own ? "own" : party.device.device.number) + '=' + textOf(party.state);
    }
    return text;
}

class Snapshots : public testing::Test {
protected:
    void askForDevice() {
        requests.ofDevice("2001", [this](const auto& snapshot) { results.push_back(textOf(snapshot)); });
    }
    void askForCall() {
        requests.ofCall("25", "2001", host::DeviceReader("2001", "2001"),
                        [this](const auto& snapshot) { results.push_back(textOf(snapshot)); });
    }

    asio::io_context io;
    linktest::SilentChannel channel;
    const host::LinkMessages messages{"ed4"};
    SnapshotRequests requests{io, std::chrono::milliseconds(20), channel, messages};
    std::vector<std::string> results;
};

TEST_F(Snapshots, ReadTheCallsOfADevice) {
    const auto info = [](const std::string& state) {
        return "<snapshotDeviceResponseInfo><connectionIdentifier><deviceID>2001</deviceID><callID>7</callID>"
               "</connectionIdentifier><localCallState>" +
               state + "</localCallState></snapshotDeviceResponseInfo>";
    };
    const std::vector<std::vector<std::string>> rows = journaltest::table(2, R"(
<simpleCallState>callReceived</simpleCallState>         | 7 2/3
<simpleCallState>callDelivered</simpleCallState>        | 7 3/2
<simpleCallState>callEstablishedHeld</simpleCallState>  | 7 4/3
<compoundCallState><localConnectionState>connected</localConnectionState><localConnectionState>hold</localConnectionState>
+<localConnectionState>alerting</localConnectionState></compoundCallState> | 7 3/4/2
<unknown/>                                              | 7 -
<simpleCallState>callMade</simpleCallState>             | 7 -
)");
    for (const std::vector<std::string>& row : rows) {
        askForDevice();
        channel.respond(channel.handlers.size() - 1,
                        "<SnapshotDeviceResponse><crossRefIDorSnapshotData><snapshotData>" + info(row[0]) +
                            "</snapshotData></crossRefIDorSnapshotData></SnapshotDeviceResponse>");
        EXPECT_EQ(results.back(), row[1]) << row[0];
    }
    EXPECT_NE(channel.lastXml.find("<snapshotObject>2001</snapshotObject>"), std::string::npos);

    askForDevice();
    channel.respond(channel.handlers.size() - 1,
                    "<a:SnapshotDeviceResponse xmlns:a='x'><a:crossRefIDorSnapshotData><a:snapshotData/>"
                    "</a:crossRefIDorSnapshotData></a:SnapshotDeviceResponse>");
    EXPECT_EQ(results.back(), "none");
    askForDevice();
    channel.respond(channel.handlers.size() - 1, "<SnapshotDeviceResponse/>");
    EXPECT_EQ(results.back(), "failed");
    askForDevice();
    channel.handlers.back()({});
    EXPECT_EQ(results.back(), "failed");
}

TEST_F(Snapshots, ReadTheSegmentsOfACall) {
    const auto party = [](const std::string& device, const std::string& state) {
        return "<snapshotCallResponseInfo><deviceOnCall>" + device +
               "</deviceOnCall><callIdentifier><callID>25</callID><deviceID>2001</deviceID></callIdentifier>"
               "<localConnectionInfo>" +
               state + "</localConnectionInfo></snapshotCallResponseInfo>";
    };
    const std::string data = "<SnapshotCallData><serviceCrossRefID>s1</serviceCrossRefID>";
    askForCall();
    EXPECT_NE(
        channel.lastXml.find("<snapshotObject><callID>25</callID><deviceID>2001</deviceID></snapshotObject>"),
        std::string::npos);
    askForCall();
    // The first segment arrives before the response and is the bare list.
    channel.early["s1"].push_back(parsed(data + "<lastSegment>false</lastSegment>" +
                                         party("<notKnown/>", "connected") + "</SnapshotCallData>"));
    channel.respond(1,
                    "<SnapshotCallResponse><serviceCrossRefID>s2</serviceCrossRefID></SnapshotCallResponse>");
    channel.respond(
        0,
        "<SnapshotCallResponse><crossRefIDorSnapshotData><serviceCrossRefID>s1</serviceCrossRefID>"
        "</crossRefIDorSnapshotData><callingDevice><deviceIdentifier>4711</deviceIdentifier>"
        "</callingDevice><calledDevice>2001</calledDevice></SnapshotCallResponse>");
    EXPECT_TRUE(results.empty());
    requests.addSegment(parsed(data + "<lastSegment>true</lastSegment><snapshotData>" +
                               party("<deviceIdentifier>4711</deviceIdentifier>", "hold") +
                               "</snapshotData></SnapshotCallData>"));
    EXPECT_EQ(results, (std::vector<std::string>{"4711>localDeviceID own=3 4711=4"}));
    // The segments of the other call never come.
    io.run();
    EXPECT_EQ(results.back(), "failed");
}

}  // namespace
