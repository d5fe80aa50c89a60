#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "include/JournalServiceQorvexTel.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeCstaService.h"
#include "tests/support/FakeDataAccess.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeDirectory.h"
#include "tests/support/FakeLocalMgmt.h"
#include "tests/support/FakeMobility.h"
#include "tests/support/FakePallax.h"
#include "tests/support/FakeTeam.h"
#include "tests/support/FakeUc.h"
#include "tests/support/FakeWsi.h"

namespace journaltest {

inline CSTADevice party(std::string number, std::string name = {}) {
    return {std::move(number), std::move(name)};
}
inline CSTADevice ownLine() {
    return {CSTADevice::kLocalDevice, {}};
}

/// A phone with the journal in it: the real service between faked platform services. Its operations are what happens
/// on the line.
class TestPhone {
public:
    explicit TestPhone(const std::string& softwareType = softwareTypes::qorvex) {
        management.set("software-type", softwareType);
        management.set("mac-addr", "00:1a:e8:00:00:10");
        context.addService("CSTAServiceIfc", &csta);
        context.addService("DataAccessServiceIfc", &database);
        context.addService("DirectoryServiceIfc", &phonebook);
        context.addService("LocalMgmtIfc", &management);
        context.addService("ClockServiceIfc", &clock);
        context.addService("DigitAnalysisServiceIfc", &digits);
        context.addService("MobilityServiceIfc", &mobility);
        context.addService("TeamServiceIfc", &team);
        context.addService("UCServiceIfc", &uc);
        context.addService("PallaxServiceIfc", &pallax);
        context.addService("WSIServiceIfc", &wsi);
    }

    void starts() {
        service = std::make_unique<JournalServiceQorvexTel>(nullptr);
        service->init(context);
        service->run();
    }
    void stops() {
        service->shutdown();
        service.reset();
    }

    void rings(const std::string& callId, const CSTADevice& caller) const {
        CSTADeliveredEvent event;
        event.setConnection(callId, CSTADevice::kLocalDevice);
        event.setAlertingDevice(ownLine());
        event.setCallingDevice(caller);
        event.setCalledDevice(ownLine());
        event.setLocalConnectionInfo(CSTA_LCS_Alerting);
        event.setCause(CSTA_EC_NewCall);
        service->deliverEvent(&event);
    }
    void answers(const std::string& callId, const CSTADevice& caller) const {
        CSTAEstablishedEvent event;
        event.setConnection(callId, CSTADevice::kLocalDevice);
        event.setAnsweringDevice(ownLine());
        event.setCallingDevice(caller);
        event.setCalledDevice(ownLine());
        event.setLocalConnectionInfo(CSTA_LCS_Connected);
        event.setCause(CSTA_EC_NewCall);
        service->deliverEvent(&event);
    }
    void holds(const std::string& callId, int cause = CSTA_EC_None) const {
        CSTAHeldEvent event;
        event.setConnection(callId, CSTADevice::kLocalDevice);
        event.setLocalConnectionInfo(CSTA_LCS_Hold);
        event.setCause(cause);
        service->deliverEvent(&event);
    }
    void clears(const std::string& callId, int cause = CSTA_EC_NormalClearing) const {
        CSTAConnectionClearedEvent event;
        event.setConnection(callId, CSTADevice::kLocalDevice);
        event.setReleasingDevice(ownLine());
        event.setLocalConnectionInfo(CSTA_LCS_Null);
        event.setCause(cause);
        service->deliverEvent(&event);
    }
    void misses(const std::string& callId, const CSTADevice& caller) const {
        rings(callId, caller);
        clears(callId);
    }

    [[nodiscard]] std::deque<MissedCallItem> missed() const {
        std::deque<MissedCallItem> items;
        service->getMissedCallList(items);
        return items;
    }
    [[nodiscard]] std::deque<ReceivedCallItem> received() const {
        std::deque<ReceivedCallItem> items;
        service->getReceivedCallList(items);
        return items;
    }

    FakeContext context;
    FakeCstaService csta;
    FakeDataAccess database;
    FakeDirectory phonebook;
    FakeLocalMgmt management;
    FakeClock clock;
    FakeDigits digits;
    FakeMobility mobility;
    FakeTeam team;
    FakeUc uc;
    FakePallax pallax;
    FakeWsi wsi;
    std::unique_ptr<JournalServiceQorvexTel> service;
};

}  // namespace journaltest
