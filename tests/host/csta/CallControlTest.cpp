#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "host/switch/server/SwitchSimulator.h"
#include "tests/host/csta/LinkFixture.h"

namespace {

using host::ResponseMode;
using Kind = host::CallControlOutcome::Kind;

class CallControl : public linktest::LinkTest {
protected:
    explicit CallControl(host::Callee callee = host::Callee::eRings)
        : simulator({.port = 0, .callee = callee, .calleePause = std::chrono::milliseconds(20)}) {
        simulator.start();
        startLink(configFor(simulator.port()));
        EXPECT_EQ(startMonitor(), "ok M1");
        EXPECT_TRUE(becomes("monitoring"));
    }
    ~CallControl() override { link.reset(); }

    host::SwitchSimulator simulator;
};

TEST_F(CallControl, RemembersAMissingServiceUntilTheNextConnection) {
    EXPECT_TRUE(link->status().callControl);
    simulator.setResponseMode("MakeCall", ResponseMode::eNotSupported);
    EXPECT_EQ(link->makeCall("4711").kind, Kind::eNotSupported);
    simulator.setResponseMode("MakeCall", ResponseMode::eNormal);
    EXPECT_FALSE(link->status().callControl);
    EXPECT_EQ(link->makeCall("4711").kind, Kind::eNotSupported);  // not sent
    simulator.dropClients();
    EXPECT_TRUE(becomes("away"));
    EXPECT_TRUE(becomes("monitoring"));
    EXPECT_EQ(link->makeCall("4711").kind, Kind::eDone);
    EXPECT_EQ(link->liveCalls().size(), 1U);
}

TEST_F(CallControl, TakesRequestsOfManyThreadsAndKeepsTheCallsApart) {
    std::atomic<int> listed{0};
    std::vector<std::thread> threads;
    for (int each = 0; each < 4; ++each) {
        threads.emplace_back([&, number = "47110" + std::to_string(each)] {
            for (int round = 0; round < 5; ++round) {
                const auto made = link->makeCall(number);
                ASSERT_EQ(made.kind, Kind::eDone);
                for (const host::LiveCallView& call : link->liveCalls()) {
                    if (call.id == made.callId) {
                        EXPECT_EQ(call.number, number);
                        ++listed;
                    }
                }
                EXPECT_EQ(link->answerCall(made.callId).kind, Kind::eNotPossible);
                EXPECT_EQ(link->clearCall(made.callId).kind, Kind::eDone);
            }
        });
    }
    for (std::thread& each : threads) {
        each.join();
    }
    EXPECT_EQ(listed, 20);
    EXPECT_EQ(link->clearCall("none").kind, Kind::eUnknownCall);
    // An event of the switch ends each call.
    const auto limit = std::chrono::steady_clock::now() + linktest::kPatience;
    while (!link->liveCalls().empty() && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_TRUE(link->liveCalls().empty());
    link->stop();
    EXPECT_EQ(link->makeCall("4711").kind, Kind::eNotConnected);
}

}  // namespace
