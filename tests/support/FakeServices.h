#pragma once

#include <set>
#include <string>

#include "platform/framework/Executable.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/TeamServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"

namespace journaltest {

// Platform services that return what a test sets. One thread at a time.

class FakeMobility final : public Executable, public MobilityServiceIfc {
public:
    [[nodiscard]] bool saveVisitorCallLog() override { return true; }
};

class FakeTeam final : public Executable, public TeamServiceIfc {
public:
    [[nodiscard]] bool isLoggingMissedCalls(const std::string& deviceId) override {
        return loggedDevices.contains(deviceId);
    }

    std::set<std::string> loggedDevices;
};

class FakeUC final : public Executable, public UCServiceIfc {
public:
    [[nodiscard]] bool isRunning() override { return running; }
    void refreshJournal() override {}

    bool running = false;
};

class FakePallax final : public Executable, public PallaxServiceIfc {
public:
    [[nodiscard]] bool isRunning() override { return running; }

    bool running = false;
};

class FakeWsi final : public Executable, public WSIServiceIfc {
public:
    [[nodiscard]] bool isCurrentUserUC() override { return currentUserUC; }

    bool currentUserUC = false;
};

}  // namespace journaltest
