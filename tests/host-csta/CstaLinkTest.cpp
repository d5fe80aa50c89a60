#include "host/csta/CstaLink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <set>
#include <string>
#include <vector>

#include "host/switch/SwitchSimulator.h"
#include "platform/csta/CSTAEvent.h"
#include "tests/host-csta/LinkFixture.h"

namespace {

using host::SwitchAnswering;
using linktest::LinkTest;
using testing::ElementsAre;

constexpr auto kReceived = host::SwitchLogEntry::Direction::eReceived;

class CstaLinkAtSwitch : public LinkTest {
protected:
    CstaLinkAtSwitch() : simulator({"127.0.0.1", 0, "2001", "ed4", false}) { simulator.start(); }

    void play(const std::string& text) { simulator.run(host::Scenario::parse(text)); }

    void startConnected(const host::CstaLinkConfig& config) {
        startLink(config);
        ASSERT_TRUE(awaitStatus(true, false));
    }
    void startMonitored() {
        startConnected(configFor(simulator.port()));
        ASSERT_EQ(startMonitor(), "ok M1");
        ASSERT_TRUE(awaitStatus(true, true));
    }

    host::SwitchSimulator simulator;
};

TEST_F(CstaLinkAtSwitch, MonitorsAgainAfterTheSwitchWasAwayHoweverOftenItRefuses) {
    startMonitored();
    EXPECT_EQ(registerForStatus(phone), "ok");
    ASSERT_EQ(phone.await(1).size(), 1U);
    simulator.setAnswering("MonitorStart", SwitchAnswering::eRefuse);
    simulator.dropClients();
    EXPECT_TRUE(awaitStatus(false, false));
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStart", 4, linktest::kPatience));
    simulator.setAnswering("MonitorStart", SwitchAnswering::eNormally);
    EXPECT_TRUE(awaitStatus(true, true));
    ASSERT_EQ(phone.await(2).size(), 2U);
    play("call c from 4711 to 2001; ring c");
    EXPECT_THAT(phone.await(3),
                ElementsAre("Devices 0 localDeviceID", "Status normal", "Delivered from 4711"));
}

TEST_F(CstaLinkAtSwitch, TellsARefusalFromSilenceAndFromAnotherAnswer) {
    host::CstaLinkConfig config = configFor(simulator.port());
    config.requestTimeout = std::chrono::milliseconds(100);
    startConnected(config);
    const std::pair<SwitchAnswering, const char*> escapes[] = {
        {SwitchAnswering::eRefuse, "refused generic"},
        {SwitchAnswering::eWrongly, "another answer"},
        {SwitchAnswering::eNever, "no answer"},
        {SwitchAnswering::eNormally, "ok"},
    };
    for (const auto& [answering, outcome] : escapes) {
        simulator.setAnswering("Escape", answering);
        EXPECT_EQ(escape(CallLogEntryRequest::eDeleteAll), outcome);
    }
    EXPECT_EQ(escape(7), "refused invalidParameterValue");
    const std::pair<SwitchAnswering, const char*> cases[] = {
        {SwitchAnswering::eRefuse, "refused generic"},
        {SwitchAnswering::eWrongly, "another answer"},
        {SwitchAnswering::eNever, "no answer"},
        {SwitchAnswering::eHangUp, "no answer"},
        // None of the four is wanted any more: only this one is started on the new connection.
        {SwitchAnswering::eNormally, "ok M5"},
    };
    for (const auto& [answering, outcome] : cases) {
        simulator.setAnswering("MonitorStart", answering);
        EXPECT_EQ(startMonitor(), outcome);
    }
    EXPECT_TRUE(awaitStatus(true, true));
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStart"), 5U);
}

TEST_F(CstaLinkAtSwitch, EndsAWaitingRequestWithItsConnectionAndWithItself) {
    startConnected(configFor(simulator.port()));
    simulator.setAnswering("MonitorStart", SwitchAnswering::eNever);
    const auto wait = [this](std::size_t nth) {
        std::future<std::string> waiting = std::async(std::launch::async, [this] { return startMonitor(); });
        EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStart", nth, linktest::kPatience));
        return waiting;
    };
    std::future<std::string> first = wait(1);
    simulator.dropClients();
    EXPECT_EQ(first.get(), "no answer");
    ASSERT_TRUE(awaitStatus(true, false));
    std::future<std::string> second = wait(2);
    link->stop();
    EXPECT_EQ(second.get(), "no answer");
    EXPECT_EQ(startMonitor(), "no answer");
    link->releaseService(phone);
}

TEST_F(CstaLinkAtSwitch, ServesRequestsOfSeveralThreadsAtOnce) {
    startConnected(configFor(simulator.port()));
    const auto startMany = [this](const std::string& prefix) {
        std::set<std::string> ids;
        for (int i = 0; i < 50; ++i) {
            const std::string id = startMonitor(prefix + std::to_string(i)).substr(3);
            ids.insert(id);
            EXPECT_EQ(i % 2 == 0 ? stopMonitor(id) : "ok", "ok");
        }
        return ids;
    };
    std::future<std::set<std::string>> others = std::async(std::launch::async, startMany, "30");
    std::set<std::string> ids = startMany("40");
    ids.merge(others.get());
    EXPECT_EQ(ids.size(), 100U);
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStop"), 50U);
}

TEST_F(CstaLinkAtSwitch, DeliversNothingOnceAMonitorIsStopped) {
    startMonitored();
    simulator.setAnswering("MonitorStop", SwitchAnswering::eRefuse);
    EXPECT_EQ(stopMonitor("M1"), "refused generic");
    simulator.setAnswering("MonitorStop", SwitchAnswering::eNormally);
    // Stopped from inside the first event, while the others are already on their way to the strand.
    phone.onEvent(
        [&](const CSTAEvent& event) { EXPECT_EQ(stopMonitor(event.getMonitorCrossRefID()), "ok"); });
    play("call c from 4711 to 2001; ring c; answer c; hangup c");
    EXPECT_EQ(phone.await(1).size(), 1U);
    EXPECT_TRUE(awaitStatus(true, false));
    strand.drain();
    EXPECT_EQ(phone.events().size(), 1U);
    EXPECT_EQ(stopMonitor("M1"), "refused invalidMonitorCrossRefID");
}

TEST_F(CstaLinkAtSwitch, ForgetsTheMonitorsOfAServiceThatGoes) {
    startMonitored();
    EXPECT_EQ(registerForStatus(phone), "ok");
    ASSERT_EQ(phone.await(1).size(), 1U);
    phone.onEvent([&](const CSTAEvent&) { link->releaseService(phone); });
    play("call c from 4711 to 2001; ring c; answer c; hangup c");
    EXPECT_EQ(phone.await(2).size(), 2U);
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStop"));
    simulator.sendSystemStatus("disabled");
    EXPECT_TRUE(simulator.log().await(kReceived, "SystemStatusResponse"));
    strand.drain();
    EXPECT_EQ(phone.events().size(), 2U);
}

TEST_F(CstaLinkAtSwitch, HasTheFilterHonouredByTheSwitchOrByItself) {
    for (const bool told : {true, false}) {
        host::CstaLinkConfig config = configFor(simulator.port());
        config.sendFilters = told;
        startConnected(config);
        CSTAMonitorFilter filter;
        filter.setHeldFilter(true);
        ASSERT_EQ(startMonitor("localDeviceID", filter), "ok M1");
        const auto eventsOfACall = [&](std::size_t number) {
            const std::size_t before = phone.events().size();
            play("call c from 4711 to 2001; ring c; answer c; hold c; retrieve c; hangup c");
            const std::vector<std::string> all = phone.await(before + number);
            return std::vector<std::string>(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
        };
        EXPECT_THAT(eventsOfACall(4),
                    ElementsAre("Delivered from 4711", "Established from 4711", "Retrieved", "Cleared"));
        filter.setHeldFilter(false);
        EXPECT_EQ(changeFilter("localDeviceID", filter), "ok");
        EXPECT_EQ(eventsOfACall(5).at(2), "Held");
        EXPECT_EQ(changeFilter("9999", filter), "refused invalidMonitorObject");
    }
    // One event was held back by the switch, the other by the link.
    EXPECT_EQ(simulator.log().count(host::SwitchLogEntry::Direction::eSent, "HeldEvent"), 3U);
    EXPECT_EQ(simulator.log().count(kReceived, "ChangeMonitorFilter"), 1U);
}

TEST_F(CstaLinkAtSwitch, TellsOfTheSystemStatusAndMonitorsAgainAfterARestart) {
    startMonitored();
    EXPECT_EQ(registerForStatus(phone), "ok");
    EXPECT_EQ(registerForStatus(phone), "ok");  // twice, but told once
    for (const char* word : {"initializing", "enabled", "enabled", "overloadReached", "partiallyDisabled"}) {
        simulator.sendSystemStatus(word);
    }
    EXPECT_THAT(phone.await(5), ElementsAre("Devices 0 localDeviceID", "Status reset", "Status enabled",
                                            "Status overloadReached", "Status partiallyDisabled"));
    EXPECT_TRUE(simulator.log().await(kReceived, "MonitorStart", 2));
}

TEST_F(CstaLinkAtSwitch, OpensAnApplicationSessionFirst) {
    simulator.setAnswering("StartApplicationSession", SwitchAnswering::eRefuse);
    host::CstaLinkConfig config = configFor(simulator.port());
    config.session = "application-session";
    startLink(config);
    EXPECT_EQ(startMonitor(), "ok M1");
    EXPECT_TRUE(simulator.log().await(kReceived, "StartApplicationSession", 3, linktest::kPatience));
    EXPECT_EQ(simulator.log().count(kReceived, "MonitorStart"), 0U);
    simulator.setAnswering("StartApplicationSession", SwitchAnswering::eNormally);
    EXPECT_TRUE(awaitStatus(true, true));
}

TEST(CstaLink, CanBeDestroyedAtAnyMoment) {
    const auto drop = [](const std::function<void()>&) {};
    { const host::CstaLink neverStarted({}, drop); }
    host::CstaLinkConfig nobody;
    nobody.port = 1;
    for (int i = 0; i < 20; ++i) {
        host::CstaLink link(nobody, drop);
        link.start();
    }
}

}  // namespace
