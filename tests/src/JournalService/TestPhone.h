#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "journalservice/JournalServiceQorvexTel.h"
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
#include "tests/support/FakeServices.h"

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
        auto event = eventOf<CSTADeliveredEvent>(callId, CSTA_LCS_Alerting, CSTA_EC_NewCall);
        event.setAlertingDevice(ownLine());
        event.setCallingDevice(caller);
        event.setCalledDevice(ownLine());
        service->deliverEvent(&event);
    }
    void holds(const std::string& callId, int cause) const {
        auto event = eventOf<CSTAHeldEvent>(callId, CSTA_LCS_Hold, cause);
        service->deliverEvent(&event);
    }
    void clears(const std::string& callId) const {
        auto event = eventOf<CSTAConnectionClearedEvent>(callId, CSTA_LCS_Null, CSTA_EC_NormalClearing);
        event.setReleasingDevice(ownLine());
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
    [[nodiscard]] std::vector<MissedCallItem> missedRows() const {
        return database.rows<MissedCallItem>(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS);
    }
    /// Hands the service one setting, as the management does; answers what the service does.
    [[nodiscard]] bool takes(const std::string& key, const std::string& value) const {
        ManageableData data;
        data.populate(key, key, value);
        return service->setData(data);
    }
    [[nodiscard]] std::string setting(const std::string& key) const {
        ManageableData data;
        data.setRootId(key, nullptr);
        return service->getData(data) ? data.interogate(key)->getValue() : "refused";
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
    FakeUC uc;
    FakePallax pallax;
    FakeWsi wsi;
    std::unique_ptr<JournalServiceQorvexTel> service;

private:
    /// An event of the line's own connection of the call.
    template <typename Event>
    static Event eventOf(const std::string& callId, int state, int cause) {
        Event event;
        event.setConnection(callId, CSTADevice::kLocalDevice);
        event.setLocalConnectionInfo(state);
        event.setCause(cause);
        return event;
    }
};

}  // namespace journaltest
