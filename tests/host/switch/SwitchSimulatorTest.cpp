#include "host/switch/server/SwitchSimulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <system_error>
#include <vector>

#include "tests/host/switch/SwitchFixture.h"
#include "tests/support/Table.h"

namespace {

using host::SwitchSimulator;
using switchtest::Client;
using switchtest::Switch;
using testing::HasSubstr;

TEST_F(Switch, RespondsToEveryRequestAndIgnoresOtherMessages) {
    Client client(simulator.port());
    client.send(1, "<SystemStatusResponse/>");
    client.send(2, "<keepalive/>");
    client.send(3, "no XML at all");
    client.sendBytes("garbage");
    const std::string rows = R"(
<RequestSystemStatus/>           | <systemStatus>normal</systemStatus></RequestSystemStatusResponse>
<p:SystemStatus xmlns:p='urn:x'/> | <SystemStatusResponse
<SystemRegister/>                | <sysStatRegisterID>1</sysStatRegisterID>
<SystemRegisterCancel/>          | <SystemRegisterCancelResponse
<Escape><privateData/></Escape>  | <EscapeResponse
<Escape><privateData><private><callLogEntryRequest/></private></privateData></Escape> | <operation>invalidParameterValue<
<SnapshotDevice/>                | <snapshotData></snapshotData>
<SnapshotCall><snapshotObject><callID>9</callID></snapshotObject></SnapshotCall> | <operation>invalidCallID<
<MonitorStart/>                  | <operation>invalidMonitorObject<
<ChangeMonitorFilter/>           | <operation>invalidMonitorCrossRefID<
<MakeCall><callingDevice>2001</callingDevice></MakeCall> | <operation>invalidCallingDeviceID<
<AnswerCall><callToBeAnswered><callID>9</callID></callToBeAnswered></AnswerCall> | <operation>invalidCallID<
<ClearConnection/> | <operation>invalidCallID<
<HoldCall/> | <CSTAErrorCode xmlns="http://www.ecma-international.org/standards/ecma-323/csta/ed4"><operation>serviceN
<GetSwitchingFunctionDevices><requestedDeviceID>2001</requestedDeviceID></GetSwitchingFunctionDevices>
+ | <operation>serviceNotSupported<
<StartApplicationSession><requestedProtocolVersions><protocolVersion>v</protocolVersion></requestedProtocolVersions>
+ <requestedSessionDuration>60</requestedSessionDuration></StartApplicationSession>
+ | <sessionID>1</sessionID><actualProtocolVersion>v</actualProtocolVersion><actualSessionDuration>60<
<ResetApplicationSessionTimer><requestedSessionDuration>7</requestedSessionDuration></ResetApplicationSessionTimer>
+ | <actualSessionDuration>7<
<StopApplicationSession/>        | <StopApplicationSessionPosResponse
)";
    for (const std::vector<std::string>& row : journaltest::table(2, rows)) {
        EXPECT_THAT(client.request(row[0]), HasSubstr(row[1])) << row[0];
    }
}

TEST_F(Switch, StopsAMonitorOnlyForItsClient) {
    Client client(simulator.port());
    Client other(simulator.port());
    const std::string stop =
        "<MonitorStop><monitorCrossRefID>" + client.monitor("2001") + "</monitorCrossRefID></MonitorStop>";
    EXPECT_THAT(other.request(stop), HasSubstr("invalidMonitorCrossRefID"));
    EXPECT_THAT(client.request(stop), HasSubstr("<MonitorStopResponse"));
    playToEnd(simulator, "call c from 1; ring c; giveup c", {.awaitMonitor = false, .finished = {}});
    EXPECT_EQ(client.events(), "");
}

TEST_F(Switch, KeepsItsRateAndHangsUpBeforeARepetition) {
    Client client(simulator.port());
    client.monitor("2001");
    const auto begin = std::chrono::steady_clock::now();
    playToEnd(simulator, "repeat 5; call c from 1; ring c; wait 10m; giveup c; wait 10m; end",
              {.rate = 100, .finished = {}});
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(45));
    static_cast<void>(client.events());

    play("call c from 1; ring c; wait 1s", {.loop = true, .rate = 1000, .finished = {}});
    for (const char* event :
         {"<DeliveredEvent", "<ConnectionCleared", "<ConnectionCleared", "<DeliveredEvent"}) {
        EXPECT_THAT(client.next().xml, HasSubstr(event));
    }
}

TEST_F(Switch, KeepsItsPortAfterARestart) {
    const unsigned short port = simulator.port();
    EXPECT_THROW(SwitchSimulator({.port = port}).start(), std::system_error);
    Client client(port);
    client.monitor("2001");
    simulator.stop();
    EXPECT_TRUE(client.isHungUp());
    simulator.start();
    EXPECT_THAT(Client(port).request("<RequestSystemStatus/>"), HasSubstr("normal"));

    SwitchSimulator eager({.port = 0, .speaksFirst = true});
    eager.start();
    EXPECT_THAT(Client(eager.port()).next().xml, HasSubstr("<systemStatus>enabled</systemStatus>"));
}

}  // namespace
