#include "host/management/AgentGate.h"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

#include "tests/host-management/RecordingAgent.h"

namespace {

using host::AgentGate;
using journaltest::RecordingAgent;

TEST(AgentGate, LetsNothingThroughOnceItIsClosed) {
    RecordingAgent agent;
    AgentGate gate(agent);
    EXPECT_TRUE(gate.call([](MgmtAgentIfc& called) { called.resetUserData(); }));
    gate.close();
    EXPECT_FALSE(gate.call([](MgmtAgentIfc& called) { called.resetUserData(); }));
    EXPECT_EQ(agent.calls.size(), 1U);
}

TEST(AgentGate, WaitsForACallOfAnotherThreadBeforeItIsClosed) {
    RecordingAgent agent;
    AgentGate gate(agent);
    std::promise<void> entered;
    std::promise<void> mayLeave;
    std::atomic<bool> left{false};
    std::thread caller([&] {
        gate.call([&](MgmtAgentIfc&) {
            entered.set_value();
            mayLeave.get_future().wait();
            left = true;
        });
    });
    entered.get_future().wait();
    auto closed = std::async(std::launch::async, [&] {
        gate.close();
        return left.load();
    });
    // Closed for newcomers at once, while the call is still inside.
    while (gate.call([](MgmtAgentIfc&) {})) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(left);
    mayLeave.set_value();
    EXPECT_TRUE(closed.get());
    caller.join();
}

TEST(AgentGate, DoesNotWaitForTheCallThatClosesIt) {
    RecordingAgent agent;
    AgentGate gate(agent);
    EXPECT_TRUE(gate.call([&](MgmtAgentIfc&) {
        gate.call([&](MgmtAgentIfc&) { gate.close(); });
        EXPECT_FALSE(gate.call([](MgmtAgentIfc&) {}));
    }));
}

TEST(AgentGate, IsLeftByACallThatThrows) {
    RecordingAgent agent;
    AgentGate gate(agent);
    EXPECT_THROW(gate.call([](MgmtAgentIfc&) { throw std::runtime_error("test"); }), std::runtime_error);
    gate.close();
}

}  // namespace
