#pragma once

#include <atomic>
#include <set>
#include <string>
#include <utility>

#include "platform/framework/Executable.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/TeamServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"

namespace journaltest {

/// Counts the saves and grants them unless the test refuses; register it as "MobilityServiceIfc". One thread.
class FakeMobility final : public Executable, public MobilityServiceIfc {
public:
    bool grants = true;
    int saves = 0;

    [[nodiscard]] bool saveVisitorCallLog() override {
        ++saves;
        return grants;
    }
};

/// The devices whose unanswered calls are logged here; register it as "TeamServiceIfc". Constant while events
/// may come.
class FakeTeam final : public Executable, public TeamServiceIfc {
public:
    explicit FakeTeam(std::set<std::string> loggedDevices = {}) : m_loggedDevices(std::move(loggedDevices)) {}

    [[nodiscard]] bool isLoggingMissedCalls(const std::string& deviceId) override {
        return m_loggedDevices.contains(deviceId);
    }

private:
    std::set<std::string> m_loggedDevices;
};

/// A client with a journal of its own, which runs when the test says so; register it as "UCServiceIfc".
/// Thread-safe.
class FakeUC final : public Executable, public UCServiceIfc {
public:
    std::atomic<bool> running{false};
    std::atomic<int> refreshes{0};

    [[nodiscard]] bool isRunning() override { return running; }
    void refreshJournal() override { ++refreshes; }
};

/// As `FakeUC`; register it as "PallaxServiceIfc".
class FakePallax final : public Executable, public PallaxServiceIfc {
public:
    std::atomic<bool> running{false};

    [[nodiscard]] bool isRunning() override { return running; }
};

/// Register it as "WSIServiceIfc". Thread-safe.
class FakeWsi final : public Executable, public WSIServiceIfc {
public:
    std::atomic<bool> currentUserUC{false};

    [[nodiscard]] bool isCurrentUserUC() override { return currentUserUC; }
};

}  // namespace journaltest
