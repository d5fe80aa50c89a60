#include "host/csta/CstaLink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <string>
#include <vector>

#include "host/switch/SwitchSimulator.h"
#include "platform/csta/CSTAEvent.h"
#include "tests/host-csta/LinkFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using host::Scenario;
using host::SwitchAnswering;
using host::SwitchSimulator;
using journaltest::CapturedLog;
using linktest::LinkTest;
using linktest::Outcome;
using testing::Contains;
using testing::ElementsAre;

constexpr auto kReceived = host::SwitchLogEntry::Direction::eReceived;
constexpr auto kSent = host::SwitchLogEntry::Direction::eSent;

class CstaLinkAtSwitch : public LinkTest {
protected:
    CstaLinkAtSwitch() : simulator({"127.0.0.1", 0, "2001", "ed4", false}) { simulator.start(); }

    void play(const std::string& text) { simulator.run(Scenario::parse(text)); }

    void startConnected() {
        startLink(configFor(simulator.port()));
        ASSERT_TRUE(awaitStatus(true, false));
    }
    void startMonitored() {
        startConnected();
        ASSERT_TRUE(startMonitor().succeeded());
        ASSERT_TRUE(awaitStatus(true, true));
    }

    SwitchSimulator simulator;
};

TEST_F(CstaLinkAtSwitch, DeliversTheEventsOfACallInOrder) {
    startMonitored();
    play(
        "call c from 4711 \"Ann M\xC3\xBCller\" to 2001\nring c\nanswer c\nhold c\nretrieve c\nhangup c by "
        "caller");
    EXPECT_THAT(phone.await(5),
                ElementsAre("Delivered from 4711 Ann M\xC3\xBCller",
                            "Established from 4711 Ann M\xC3\xBCller", "Held", "Retrieved", "Cleared"));
}

TEST_F(CstaLinkAtSwitch, DeliversTheEventsOfADialledCallInOrder) {
    startMonitored();
    play("dial c to 4712 \"Bob\"; ring c; connect c; hangup c; dial d to 4713; busy d");
    EXPECT_THAT(phone.await(9), ElementsAre("ServiceInitiated", "Originated from localDeviceID",
                                            "Delivered from localDeviceID", "Established from localDeviceID",
                                            "Cleared", "ServiceInitiated", "Originated from localDeviceID",
                                            "Failed from localDeviceID", "Cleared"));
}

TEST_F(CstaLinkAtSwitch, AcceptsAMonitorForASwitchThatIsNotThereYet) {
    const unsigned short port = simulator.port();
    simulator.stop();
    startLink(configFor(port));
    const Outcome accepted = startMonitor();
    EXPECT_TRUE(accepted.succeeded());
    EXPECT_LE(accepted.crossRefId.size(), 19U);
    simulator.start();
    EXPECT_EQ(simulator.port(), port);
    EXPECT_TRUE(awaitStatus(true, true));
    play("call c from 4711 to 2001; ring c; giveup c");
    EXPECT_THAT(phone.await(2), ElementsAre("Delivered from 4711", "Cleared"));
    EXPECT_LE(CapturedLog::count("is not there"), 1) << CapturedLog::dump();
}

TEST_F(CstaLinkAtSwitch, MonitorsAgainAfterTheSwitchWasAway) {
    startMonitored();
    EXPECT_TRUE(registerForStatus().succeeded());
    simulator.stop();
    EXPECT_TRUE(awaitStatus(false, false));
    simulator.start();
    EXPECT_TRUE(awaitStatus(true, true));
    EXPECT_THAT(phone.await(1), ElementsAre("Status normal"));
    play("call c from 4711 to 2001; ring c");
    EXPECT_THAT(phone.await(2), ElementsAre("Status normal", "Delivered from 4711"));
    EXPECT_EQ(CapturedLog::count("is lost"), 1) << CapturedLog::dump();
    EXPECT_EQ(CapturedLog::count("is not there"), 0) << CapturedLog::dump();
    EXPECT_EQ(CapturedLog::count("again"), 2)
        << CapturedLog::dump();  // "trying again", "connected ... again"
}

TEST_F(CstaLinkAtSwitch, TellsARefusalFromSilenceAndFromAnotherAnswer) {
    host::CstaLinkConfig config = configFor(simulator.port());
    config.requestTimeout = std::chrono::milliseconds(100);
    startLink(config);
    ASSERT_TRUE(awaitStatus(true, false));

    simulator.setAnswering("MonitorStart", SwitchAnswering::eRefuse);
    const Outcome refused = startMonitor();
    EXPECT_EQ(refused.code, 0);
    EXPECT_TRUE(refused.isExpectedClass);
    EXPECT_TRUE(refused.isError);
    EXPECT_EQ(refused.errorValue, "generic");

    simulator.setAnswering("MonitorStart", SwitchAnswering::eWrongly);
    const Outcome wrong = startMonitor();
    EXPECT_EQ(wrong.code, 0);
    EXPECT_TRUE(wrong.hasResponse);
    EXPECT_FALSE(wrong.isExpectedClass);

    simulator.setAnswering("MonitorStart", SwitchAnswering::eNever);
    const Outcome silent = startMonitor();
    EXPECT_NE(silent.code, 0);
    EXPECT_FALSE(silent.hasResponse);

    simulator.setAnswering("MonitorStart", SwitchAnswering::eHangUp);
    EXPECT_NE(startMonitor().code, 0);

    // None of the four is wanted any more: only this one is started on the new connection.
    simulator.setAnswering("MonitorStart", SwitchAnswering::eNormally);
    EXPECT_TRUE(startMonitor().succeeded());
    EXPECT_TRUE(awaitStatus(true, true));
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStart"), 5U);
}

TEST_F(CstaLinkAtSwitch, KeepsTryingForAMonitorThatIsRefusedAfterAReconnect) {
    startMonitored();
    simulator.setAnswering("MonitorStart", SwitchAnswering::eRefuse);
    simulator.dropClients();
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStart", 4, linktest::kPatience));
    simulator.setAnswering("MonitorStart", SwitchAnswering::eNormally);
    EXPECT_TRUE(awaitStatus(true, true));
    play("call c from 4711 to 2001; ring c");
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
}

TEST_F(CstaLinkAtSwitch, EndsAWaitingRequestWhenItIsStopped) {
    startConnected();
    simulator.setAnswering("MonitorStart", SwitchAnswering::eNever);
    std::future<Outcome> waiting = std::async(std::launch::async, [this] { return startMonitor(); });
    ASSERT_TRUE(simulator.log().await(kReceived, "MonitorStart"));
    link->stop();
    EXPECT_NE(waiting.get().code, 0);
    EXPECT_NE(startMonitor().code, 0);
    EXPECT_FALSE(link->status().connected);
}

TEST_F(CstaLinkAtSwitch, EndsAWaitingRequestWhenTheConnectionIsLost) {
    startConnected();
    simulator.setAnswering("MonitorStart", SwitchAnswering::eNever);
    std::future<Outcome> waiting = std::async(std::launch::async, [this] { return startMonitor(); });
    ASSERT_TRUE(simulator.log().await(kReceived, "MonitorStart"));
    simulator.dropClients();
    EXPECT_NE(waiting.get().code, 0);
}

TEST_F(CstaLinkAtSwitch, ServesRequestsOfSeveralThreadsAtOnce) {
    startConnected();
    constexpr int kEach = 50;
    const auto startMany = [this](const std::string& prefix) {
        std::vector<std::string> ids;
        for (int i = 0; i < kEach; ++i) {
            const Outcome started = startMonitor(prefix + std::to_string(i));
            EXPECT_TRUE(started.succeeded());
            ids.push_back(started.crossRefId);
            if (i % 2 == 0) {
                EXPECT_TRUE(stopMonitor(started.crossRefId).succeeded());
            }
        }
        return ids;
    };
    std::future<std::vector<std::string>> one = std::async(std::launch::async, startMany, "30");
    std::future<std::vector<std::string>> two = std::async(std::launch::async, startMany, "40");
    std::vector<std::string> ids = one.get();
    const std::vector<std::string> others = two.get();
    ids.insert(ids.end(), others.begin(), others.end());
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStop"), static_cast<std::size_t>(kEach));
}

TEST_F(CstaLinkAtSwitch, AnswersARequestThatAHandlerMakesOnTheStrand) {
    startMonitored();
    std::promise<Outcome> fromHandler;
    phone.onEvent([&](const CSTAEvent& event) {
        if (event.getType() == CSTAEventCode::eDelivered) {
            fromHandler.set_value(startMonitor("2005"));
        }
    });
    play("call c from 4711 to 2001; ring c; giveup c");
    EXPECT_TRUE(fromHandler.get_future().get().succeeded());
    EXPECT_THAT(phone.await(2), ElementsAre("Delivered from 4711", "Cleared"));
}

TEST_F(CstaLinkAtSwitch, DeliversNothingOnceAMonitorIsStopped) {
    startMonitored();
    // Stopped from inside the first event, while the others are already on their way to the strand.
    phone.onEvent(
        [&](const CSTAEvent& event) { EXPECT_TRUE(stopMonitor(event.getMonitorCrossRefID()).succeeded()); });
    play("call c from 4711 to 2001; ring c; answer c; hangup c");
    EXPECT_EQ(phone.await(1).size(), 1U);
    EXPECT_TRUE(awaitStatus(true, false));
    strand.run([] {});
    EXPECT_EQ(phone.events().size(), 1U);
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStop"), 1U);
    const Outcome again = stopMonitor("M1");
    EXPECT_TRUE(again.isError);
    EXPECT_EQ(again.errorValue, "invalidMonitorCrossRefID");
}

TEST_F(CstaLinkAtSwitch, KeepsAMonitorThatTheSwitchDoesNotStop) {
    startMonitored();
    simulator.setAnswering("MonitorStop", SwitchAnswering::eRefuse);
    EXPECT_TRUE(stopMonitor("M1").isError);
    play("call c from 4711 to 2001; ring c");
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
}

TEST_F(CstaLinkAtSwitch, ForgetsTheMonitorsOfAServiceThatGoes) {
    startMonitored();
    EXPECT_TRUE(registerForStatus().succeeded());
    phone.onEvent([&](const CSTAEvent&) { link->releaseService(phone); });
    play("call c from 4711 to 2001; ring c; answer c; hangup c");
    EXPECT_EQ(phone.await(1).size(), 1U);
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStop"));
    simulator.sendSystemStatus("disabled");
    EXPECT_TRUE(simulator.log().await(kReceived, "SystemStatusResponse"));
    strand.run([] {});
    EXPECT_EQ(phone.events().size(), 1U);
}

TEST_F(CstaLinkAtSwitch, LetsAServiceGoAfterItWasStopped) {
    startMonitored();
    link->stop();
    link->releaseService(phone);
    EXPECT_EQ(phone.events().size(), 0U);
}

TEST_F(CstaLinkAtSwitch, HasTheFilterHonoured) {
    startConnected();
    CSTAMonitorFilter filter;
    filter.setHeldFilter(true);
    filter.setRetrievedFilter(true);
    ASSERT_TRUE(startMonitor("localDeviceID", filter).succeeded());
    play("call c from 4711 to 2001; ring c; answer c; hold c; retrieve c; hangup c");
    EXPECT_THAT(phone.await(3), ElementsAre("Delivered from 4711", "Established from 4711", "Cleared"));
    EXPECT_EQ(simulator.log().count(kSent, "HeldEvent"), 0U);

    filter.setHeldFilter(false);
    EXPECT_TRUE(changeFilter("localDeviceID", filter).succeeded());
    EXPECT_EQ(simulator.log().count(kReceived, "ChangeMonitorFilter"), 1U);
    play("call c from 4712 to 2001; ring c; answer c; hold c; retrieve c; hangup c");
    EXPECT_EQ(phone.await(7).size(), 7U);
    EXPECT_THAT(phone.events(), Contains("Held"));
    EXPECT_EQ(changeFilter("9999", filter).errorValue, "invalidMonitorObject");
}

TEST_F(CstaLinkAtSwitch, FiltersByItselfWhereTheSwitchIsNotTold) {
    host::CstaLinkConfig config = configFor(simulator.port());
    config.sendFilters = false;
    startLink(config);
    ASSERT_TRUE(awaitStatus(true, false));
    CSTAMonitorFilter filter;
    filter.setHeldFilter(true);
    ASSERT_TRUE(startMonitor("localDeviceID", filter).succeeded());
    play("call c from 4711 to 2001; ring c; answer c; hold c; retrieve c");
    EXPECT_THAT(phone.await(3), ElementsAre("Delivered from 4711", "Established from 4711", "Retrieved"));
    EXPECT_EQ(simulator.log().count(kSent, "HeldEvent"), 1U);
    EXPECT_TRUE(changeFilter("localDeviceID", CSTAMonitorFilter()).succeeded());
    EXPECT_EQ(simulator.log().count(kReceived, "ChangeMonitorFilter"), 0U);
}

TEST_F(CstaLinkAtSwitch, TellsOfTheSystemStatusAndMonitorsAgainAfterARestart) {
    startMonitored();
    EXPECT_TRUE(registerForStatus().succeeded());
    EXPECT_TRUE(registerForStatus().succeeded());  // twice, but told once
    for (const char* word : {"initializing", "enabled", "enabled", "overloadReached", "partiallyDisabled"}) {
        simulator.sendSystemStatus(word);
    }
    EXPECT_THAT(phone.await(4), ElementsAre("Status reset", "Status enabled", "Status overloadReached",
                                            "Status partiallyDisabled"));
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStart", 2));
}

TEST_F(CstaLinkAtSwitch, SaysWhenTheSwitchDoesNotRegisterIt) {
    simulator.setAnswering("SystemRegister", SwitchAnswering::eRefuse);
    startMonitored();  // the refusal came ahead of the answer to the monitor
    EXPECT_TRUE(registerForStatus().isError);
}

TEST_F(CstaLinkAtSwitch, OpensAnApplicationSessionFirst) {
    host::CstaLinkConfig config = configFor(simulator.port());
    config.session = "application-session";
    startLink(config);
    EXPECT_TRUE(startMonitor().succeeded());
    EXPECT_TRUE(awaitStatus(true, true));
    EXPECT_EQ(simulator.log().entries().front().name, "StartApplicationSession");
    play("call c from 4711 to 2001; ring c");
    EXPECT_THAT(phone.await(1), ElementsAre("Delivered from 4711"));
}

TEST_F(CstaLinkAtSwitch, TriesAgainWhenTheSessionIsRefused) {
    simulator.setAnswering("StartApplicationSession", SwitchAnswering::eRefuse);
    host::CstaLinkConfig config = configFor(simulator.port());
    config.session = "application-session";
    startLink(config);
    EXPECT_TRUE(simulator.log().await(kReceived, "StartApplicationSession", 3, linktest::kPatience));
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStart"), 0U);
    simulator.setAnswering("StartApplicationSession", SwitchAnswering::eNormally);
    EXPECT_TRUE(startMonitor().succeeded());
    EXPECT_TRUE(awaitStatus(true, true));
}

TEST_F(CstaLinkAtSwitch, SaysThatItDoesNotCarryARequest) {
    startMonitored();
    CSTAEscapeRequest escape;
    link->request(escape);
    EXPECT_NE(escape.getResponseCode(), 0);
    EXPECT_EQ(escape.getResponse(), nullptr);
    EXPECT_TRUE(CapturedLog::contains("a request of a kind that the link does not carry"));
}

TEST(CstaLink, CanBeDestroyedAtAnyMoment) {
    linktest::Strand strand;
    const auto post = [&strand](std::function<void()> work) { strand.post(std::move(work)); };
    { const host::CstaLink neverStarted({}, post); }
    host::CstaLinkConfig nobody;
    nobody.port = 1;
    for (int i = 0; i < 20; ++i) {
        host::CstaLink link(nobody, post);
        link.start();
    }
}

}  // namespace
