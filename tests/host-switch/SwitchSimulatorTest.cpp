#include "host/switch/SwitchSimulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <system_error>
#include <vector>

#include "tests/host-switch/SwitchClientFixture.h"

namespace {

using host::PlayOptions;
using host::Scenario;
using host::SwitchOptions;
using host::SwitchSimulator;
using switchtest::RawClient;
using switchtest::Switch;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto kReceived = host::SwitchLogEntry::Direction::eReceived;
constexpr auto kSent = host::SwitchLogEntry::Direction::eSent;

struct Asked {
    const char* request;
    const char* answer;
};

TEST_F(Switch, AnswersEveryRequest) {
    RawClient client(simulator.port());
    const std::vector<Asked> requests = {
        {"<RequestSystemStatus/>", "<systemStatus>normal</systemStatus></RequestSystemStatusResponse>"},
        {"<p:SystemStatus xmlns:p='urn:x'/>", "<SystemStatusResponse"},
        {"<SystemRegister><requestTypes/></SystemRegister>", "<sysStatRegisterID>1</sysStatRegisterID>"},
        {"<SystemRegisterCancel/>", "<SystemRegisterCancelResponse"},
        {"<Escape><privateData/></Escape>", "<EscapeResponse"},
        {"<SnapshotDevice><snapshotObject>1</snapshotObject></SnapshotDevice>", "<snapshotData/>"},
        {"<MonitorStart/>",
         "<CSTAErrorCode xmlns=\"http://www.ecma-international.org/standards/ecma-323/csta/ed4\">"
         "<operation>invalidMonitorObject</operation>"},
        {"<MonitorStop><monitorCrossRefID>1</monitorCrossRefID></MonitorStop>",
         "<operation>invalidMonitorCrossRefID"},
        {"<ChangeMonitorFilter/>", "<operation>invalidMonitorCrossRefID"},
        {"<MakeCall/>", "<operation>serviceNotSupported"},
        {"<StartApplicationSession><requestedProtocolVersions><protocolVersion>v</protocolVersion>"
         "</requestedProtocolVersions><requestedSessionDuration>60</requestedSessionDuration></"
         "StartApplicationSession>",
         "<sessionID>1</sessionID><actualProtocolVersion>v</"
         "actualProtocolVersion><actualSessionDuration>60<"},
        {"<ResetApplicationSessionTimer><requestedSessionDuration>7</requestedSessionDuration>"
         "</ResetApplicationSessionTimer>",
         "<actualSessionDuration>7<"},
        {"<StopApplicationSession/>", "<StopApplicationSessionPosResponse"},
    };
    int invokeId = 100;
    for (const Asked& one : requests) {
        EXPECT_THAT(client.ask(++invokeId, one.request), HasSubstr(one.answer)) << one.request;
    }
}

TEST_F(Switch, IgnoresWhatIsNoRequest) {
    RawClient client(simulator.port());
    client.send(1, "<SystemStatusResponse/>");
    client.send(2, "<keepalive/>");
    client.send(3, "no XML at all");
    client.sendBytes("garbage");
    EXPECT_THAT(client.ask(4, "<RequestSystemStatus/>"), HasSubstr("RequestSystemStatusResponse"));
}

TEST_F(Switch, HonoursAFilterAndItsChange) {
    RawClient client(simulator.port());
    const std::string id =
        client.monitor("2001",
                       "<requestedMonitorFilter><callcontrol><delivered>true</delivered><held>false</held>"
                       "</callcontrol></requestedMonitorFilter>");
    play("call c from 1; ring c; answer c");
    EXPECT_THAT(client.nextNames(1), ElementsAre("Established connected"));
    EXPECT_THAT(
        client.ask(2, "<ChangeMonitorFilter><monitorCrossRefID>" + id +
                          "</monitorCrossRefID><requestedFilterList><callcontrol><delivered>false</delivered>"
                          "<established>true</established></callcontrol></requestedFilterList>"
                          "</ChangeMonitorFilter>"),
        HasSubstr("<actualFilterList><callcontrol><established>true</established></callcontrol>"));
    play("call c from 1; ring c; answer c; hangup c by called");
    EXPECT_THAT(client.nextNames(2), ElementsAre("Delivered alerting", "ConnectionCleared null"));
}

TEST_F(Switch, SendsNothingForAMonitorThatIsStoppedOrAnotherClients) {
    RawClient client(simulator.port());
    RawClient other(simulator.port());
    const std::string id = client.monitor("2001");
    const std::string stop = "<MonitorStop><monitorCrossRefID>" + id + "</monitorCrossRefID></MonitorStop>";
    EXPECT_THAT(other.ask(1, stop), HasSubstr("invalidMonitorCrossRefID"));
    EXPECT_THAT(client.ask(2, stop), HasSubstr("<MonitorStopResponse"));
    EXPECT_THAT(client.ask(3, stop), HasSubstr("invalidMonitorCrossRefID"));
    PlayOptions options;
    options.awaitMonitor = false;
    playToEnd("call c from 1; ring c; giveup c", options);
    EXPECT_EQ(simulator.log().count(kSent, "DeliveredEvent"), 0U);
}

TEST_F(Switch, BeginsAScenarioWhenItsPhoneIsMonitored) {
    RawClient client(simulator.port());
    play("device 2005\ncall c from 1; ring c");
    static_cast<void>(client.monitor("2001"));
    static_cast<void>(client.monitor("tel:2005;ext=1"));
    EXPECT_THAT(client.nextNames(1), ElementsAre("tel:2005;ext=1 Delivered alerting"));
}

TEST_F(Switch, TellsRegisteredClientsOfItsStatusAndEndsMonitors) {
    RawClient client(simulator.port());
    static_cast<void>(client.ask(1, "<SystemRegister/>"));
    const std::string id = client.monitor("2001");
    play("status initializing; wait 1ms; status normal");
    EXPECT_THAT(client.next().xml, HasSubstr("<systemStatus>initializing</systemStatus>"));
    EXPECT_THAT(client.next().xml, HasSubstr("<systemStatus>normal</systemStatus>"));
    simulator.stopMonitors("2001");
    EXPECT_THAT(client.next().xml, HasSubstr("<monitorCrossRefID>" + id + "<"));
}

TEST_F(Switch, KeepsItsRateOverTheScenariosOwnTime) {
    RawClient client(simulator.port());
    static_cast<void>(client.monitor("2001"));
    PlayOptions options;
    options.rate = 100;
    const auto begin = std::chrono::steady_clock::now();
    playToEnd("repeat 5; call c from 1; ring c; wait 10m; giveup c; wait 10m; end", options);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(45));
}

TEST_F(Switch, PlaysInALoopAndHangsUpWhatIsLeftOver) {
    RawClient client(simulator.port());
    static_cast<void>(client.monitor("2001"));
    PlayOptions options;
    options.loop = true;
    options.rate = 1000;
    simulator.run(Scenario::parse("call c from 1; ring c; wait 1s"), options);
    EXPECT_THAT(client.nextNames(6),
                ElementsAre("Delivered alerting", "ConnectionCleared alerting", "ConnectionCleared null",
                            "Delivered alerting", "ConnectionCleared alerting", "ConnectionCleared null"));
}

TEST_F(Switch, SpeaksFirstWhenItIsTold) {
    SwitchOptions options = anyPort();
    options.speaksFirst = true;
    SwitchSimulator eager(options);
    eager.start();
    RawClient client(eager.port());
    const host::Frame first = client.next();
    EXPECT_EQ(first.invokeId, 0);
    EXPECT_THAT(first.xml, HasSubstr("<systemStatus>enabled</systemStatus>"));
}

TEST_F(Switch, ListensOnItsPortAgainAfterAStop) {
    const unsigned short port = simulator.port();
    RawClient client(port);
    static_cast<void>(client.monitor("2001"));
    simulator.stop();
    simulator.stop();
    EXPECT_TRUE(client.isClosed());
    simulator.start();
    EXPECT_EQ(simulator.port(), port);
    RawClient again(port);
    EXPECT_THAT(again.ask(1, "<RequestSystemStatus/>"), HasSubstr("normal"));
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStart"));
}

TEST_F(Switch, SaysThatItsPortIsTaken) {
    SwitchOptions options = anyPort();
    options.port = simulator.port();
    SwitchSimulator second(options);
    EXPECT_THROW(second.start(), std::system_error);
}

}  // namespace
