#include "host/csta/CstaLink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <set>
#include <string>
#include <vector>

#include "host/switch/scenario/ScenarioParser.h"
#include "host/switch/server/SwitchSimulator.h"
#include "tests/host/csta/LinkFixture.h"
#include "tests/support/MessageTrace.h"

namespace {

using host::ResponseMode;
using linktest::LinkTest;
using testing::ElementsAre;

constexpr auto kReceived = journaltest::MessageTrace::Direction::eReceived;

class CstaLinkAtSwitch : public LinkTest {
protected:
    CstaLinkAtSwitch() { simulator.start(); }

    void play(const std::string& text) { simulator.run(host::parseScenario(text)); }

    void startConnected(const host::CstaLinkConfig& config) {
        startLink(config);
        ASSERT_TRUE(becomes("connected"));
    }
    void startMonitored() {
        startConnected(configFor(simulator.port()));
        ASSERT_EQ(startMonitor(), "ok M1");
        ASSERT_TRUE(becomes("monitoring"));
    }
    bool switchGets(const std::string& message, std::size_t number = 1) {
        return trace.await(kReceived, message, number);
    }

    journaltest::MessageTrace trace;
    host::SwitchSimulator simulator{{.port = 0, .messageListener = trace.listener()}};
};

TEST_F(CstaLinkAtSwitch, ReportsTheStatusAndRestartsMonitorsAfterEachStopAndRefusal) {
    startMonitored();
    EXPECT_EQ(startMonitor(), "ok M1");  // monitored once
    EXPECT_EQ(registerForStatus(phone), "ok");
    EXPECT_EQ(registerForStatus(phone), "ok");  // registered once
    play(
        "status initializing; status enabled; status enabled; status overloadReached;"
        "status partiallyDisabled; status normal");
    EXPECT_TRUE(switchGets("MonitorStart", 2));
    simulator.stopMonitors("2001");
    EXPECT_TRUE(switchGets("MonitorStart", 3));
    simulator.setResponseMode("MonitorStart", ResponseMode::eRefusal);
    simulator.dropClients();
    EXPECT_TRUE(becomes("away"));
    EXPECT_TRUE(switchGets("MonitorStart", 6));
    simulator.setResponseMode("MonitorStart", ResponseMode::eNormal);
    EXPECT_TRUE(becomes("monitoring"));
    EXPECT_EQ(phone.events.await(7).size(), 7U);
    phone.onEvent([](const CSTAEvent& event) { EXPECT_EQ(event.getMonitorCrossRefID(), "M1"); });
    play("call c from 4711 to 2001; ring c");
    EXPECT_THAT(
        phone.events.await(8),
        ElementsAre("Devices 0 localDeviceID", "Status reset", "Status enabled", "Status overloadReached",
                    "Status partiallyDisabled", "Status normal", "Status normal", "Delivered from 4711"));
}

TEST_F(CstaLinkAtSwitch, SendsEveryRequestAboutTheCallLogAndWaitsOnceForASwitchThatDoesNotRespond) {
    host::CstaLinkConfig config = configFor(simulator.port());
    config.requestTimeout = std::chrono::seconds(1);
    startConnected(config);
    EXPECT_EQ(requestDeletion("4710"), "ok");
    simulator.setResponseMode("Escape", ResponseMode::eNoResponse);
    const auto start = std::chrono::steady_clock::now();
    for (int number = 4711; number < 4741; ++number) {
        EXPECT_EQ(requestDeletion(std::to_string(number)), "no response");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_TRUE(switchGets("Escape", 31));
    simulator.setResponseMode("Escape", ResponseMode::eRefusal);
    std::string response;
    while (response != "refused generic" && std::chrono::steady_clock::now() - start < linktest::kPatience) {
        response = requestDeletion("4741");
    }
    EXPECT_EQ(response, "refused generic");
}

TEST_F(CstaLinkAtSwitch, FailsAWaitingRequestWhenItStops) {
    startConnected(configFor(simulator.port()));
    simulator.setResponseMode("MonitorStart", ResponseMode::eNoResponse);
    std::future<std::string> waiting = std::async(std::launch::async, [this] { return startMonitor(); });
    EXPECT_TRUE(switchGets("MonitorStart"));
    link->stop();
    EXPECT_EQ(waiting.get(), "no response");
    EXPECT_EQ(startMonitor(), "no response");
    link->releaseService(phone);
}

TEST_F(CstaLinkAtSwitch, AcceptsRequestsOfSeveralThreads) {
    startConnected(configFor(simulator.port()));
    const auto startMany = [this](const std::string& prefix) {
        std::set<std::string> ids;
        for (int i = 0; i < 50; ++i) {
            const std::string id = startMonitor(prefix + std::to_string(i)).substr(3);
            ids.insert(id);
            EXPECT_EQ(stopMonitor(id), "ok");
        }
        return ids;
    };
    std::future<std::set<std::string>> others = std::async(std::launch::async, startMany, "30");
    std::set<std::string> ids = startMany("40");
    ids.merge(others.get());
    EXPECT_EQ(ids.size(), 100U);
}

TEST_F(CstaLinkAtSwitch, DeliversNoEventAfterAMonitorIsStopped) {
    startMonitored();
    // Stopped in the handler of the first event, while the others are already queued on the strand.
    phone.onEvent([&](const CSTAEvent&) { EXPECT_EQ(stopMonitor("M1"), "ok"); });
    play("call c from 4711 to 2001; ring c; answer c; hangup c");
    EXPECT_TRUE(becomes("connected"));
    strand.drain();
    EXPECT_EQ(phone.events.await(1).size(), 1U);
    EXPECT_EQ(stopMonitor("M1"), "refused invalidMonitorCrossRefID");
}

TEST_F(CstaLinkAtSwitch, RemovesTheMonitorsOfAReleasedService) {
    startMonitored();
    EXPECT_EQ(registerForStatus(phone), "ok");
    ASSERT_EQ(phone.events.await(1).size(), 1U);
    phone.onEvent([&](const CSTAEvent&) { link->releaseService(phone); });
    play("call c from 4711 to 2001; ring c; answer c; hangup c");
    EXPECT_TRUE(switchGets("MonitorStop"));
    simulator.sendSystemStatus("disabled");
    EXPECT_TRUE(switchGets("SystemStatusResponse"));
    strand.drain();
    EXPECT_EQ(phone.events.await(2).size(), 2U);
}

TEST_F(CstaLinkAtSwitch, AppliesTheFilterAtTheSwitchOrItself) {
    for (const bool sent : {true, false}) {
        host::CstaLinkConfig config = configFor(simulator.port());
        config.sendFilters = sent;
        startConnected(config);
        CSTAMonitorFilter filter;
        filter.setHeldFilter(true);
        ASSERT_EQ(startMonitor("localDeviceID", filter), "ok M1");
        const std::string call = "call c from 4711; ring c; answer c; hold c; retrieve c; hangup c";
        const std::vector<std::string> before = phone.events.await(0);
        play(call);
        EXPECT_EQ(phone.events.await(before.size() + 4).at(before.size() + 2), "Retrieved");
        filter.setHeldFilter(false);
        EXPECT_EQ(changeFilter("localDeviceID", filter), "ok");
        play(call);
        EXPECT_EQ(phone.events.await(before.size() + 9).at(before.size() + 6), "Held");
        EXPECT_EQ(changeFilter("9999", filter), "refused invalidMonitorObject");
    }
    // One event was suppressed by the switch, the other by the link.
    EXPECT_EQ(trace.count(journaltest::MessageTrace::Direction::eSent, "HeldEvent"), 3U);
    EXPECT_EQ(trace.count(kReceived, "ChangeMonitorFilter"), 1U);
}

TEST_F(CstaLinkAtSwitch, OpensAnApplicationSessionFirst) {
    simulator.setResponseMode("StartApplicationSession", ResponseMode::eRefusal);
    host::CstaLinkConfig config = configFor(simulator.port());
    config.session = "application-session";
    startLink(config);
    EXPECT_EQ(startMonitor(), "ok M1");
    EXPECT_TRUE(switchGets("StartApplicationSession", 3));
    EXPECT_EQ(trace.count(kReceived, "MonitorStart"), 0U);
    simulator.setResponseMode("StartApplicationSession", ResponseMode::eNormal);
    EXPECT_TRUE(becomes("monitoring"));
}

}  // namespace
