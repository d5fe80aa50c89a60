// The journal's monitors at the switch: filters in full, and what each kind of bad answer does.

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"

namespace journaltest {
namespace {

using Kind = FakeCstaService::Kind;

/// Groups that are suppressed, that are let through, and that are left to the service.
std::string textOf(const CSTAMonitorFilter& filter) {
    const std::pair<const char*, CSTAMonitorFilter::Setting> groups[] = {
        {"callControl", filter.callControl()},
        {"held", filter.held()},
        {"retrieved", filter.retrieved()},
        {"serviceInitiated", filter.serviceInitiated()},
        {"callAssociated", filter.callAssociated()},
        {"callInformation", filter.callInformation()},
        {"physicalDevice", filter.physicalDevice()},
        {"logicalDevice", filter.logicalDevice()},
        {"vendorSpecific", filter.vendorSpecific()},
        {"callLogEntry", filter.callLogEntry()},
        {"system", filter.system()},
        {"systemStatus", filter.systemStatus()},
        {"dnd", filter.fsDnd()},
        {"coc", filter.fsCoc()}};
    std::string suppressed = "suppressed:";
    std::string through = "; through:";
    std::string unset = "; unset:";
    for (const auto& [name, setting] : groups) {
        std::string& text = !setting ? unset : *setting ? suppressed : through;
        text += std::string(" ") + name;
    }
    return suppressed + through + unset;
}

class CstaMonitors : public testing::Test {
protected:
    [[nodiscard]] std::string lastFilter() const { return textOf(rig.exchange.requests().back().filter); }

    ManagementRig rig;
};

TEST_F(CstaMonitors, OfTheOwnLineHaveAFilter) {
    EXPECT_TRUE(rig.monitors.startQorvexEvents());
    EXPECT_TRUE(rig.monitors.qorvexEventsStarted());
    EXPECT_EQ(rig.exchange.requests().back().device, "localDeviceID");
    EXPECT_EQ(rig.exchange.requests().back().receiver, &rig);
    EXPECT_EQ(lastFilter(),
              "suppressed: held retrieved serviceInitiated callAssociated physicalDevice logicalDevice "
              "vendorSpecific system; through: callControl callInformation callLogEntry systemStatus; "
              "unset: dnd coc");

    EXPECT_TRUE(rig.monitors.stopQorvexEvents());
    EXPECT_FALSE(rig.monitors.qorvexEventsStarted());
    EXPECT_EQ(rig.asked(), "start localDeviceID; stop 1");
    rig.monitors.stopQorvexEvents();
    EXPECT_EQ(rig.asked(), "start localDeviceID; stop 1; stop ") << "the cross reference is forgotten";
}

TEST_F(CstaMonitors, ChangeTheFilterByTheEventMode) {
    const std::string always =
        "suppressed: callAssociated physicalDevice logicalDevice vendorSpecific system; through: callControl "
        "callLogEntry systemStatus dnd coc; unset: held retrieved serviceInitiated callInformation";
    const std::string withCallControl =
        "suppressed: held retrieved serviceInitiated callAssociated physicalDevice logicalDevice "
        "vendorSpecific "
        "system; through: callControl callInformation callLogEntry systemStatus dnd coc; unset:";
    for (const int systemIdentifier : {0, 1, 2, 3}) {
        rig.phoneIs(softwareTypes::qorvex, systemIdentifier);
        rig.monitors.changeMonitorFilter();
        EXPECT_EQ(lastFilter(), systemIdentifier == 2 ? always : withCallControl) << systemIdentifier;
    }
    rig.forget();
    rig.phoneIs(softwareTypes::sip);
    rig.monitors.changeMonitorFilter();
    rig.phoneIs(softwareTypes::qorvex);
    rig.collaborators.m_cstaService = nullptr;
    rig.monitors.changeMonitorFilter();
    EXPECT_EQ(rig.asked(), "");
}

TEST_F(CstaMonitors, OfTheBluetoothTelephoneHaveNone) {
    EXPECT_FALSE(rig.monitors.stopMonitoringBluetoothEvents());
    EXPECT_EQ(rig.asked(), "") << "nothing to stop";

    EXPECT_TRUE(rig.monitors.startMonitoringBluetoothEvents());
    EXPECT_EQ(rig.exchange.requests().back().filter, CSTAMonitorFilter());
    EXPECT_TRUE(rig.monitors.stopMonitoringBluetoothEvents());
    EXPECT_FALSE(rig.monitors.bluetoothEventsStarted());
    EXPECT_EQ(rig.asked(), "start bluetoothDeviceID; stop 1");
}

TEST_F(CstaMonitors, AnsweredBadlyStayAsTheyAreAndMayBeTriedAgain) {
    journal::CstaMonitors& monitors = rig.monitors;
    rig.phoneIs(softwareTypes::qorvex);
    const struct {
        const char* name;
        Kind kind;
        std::function<bool()> run;
        std::function<bool()> isOn;
    } operations[] = {
        {"start own", Kind::eMonitorStart, [&] { return monitors.startQorvexEvents(); },
         [&] { return monitors.qorvexEventsStarted(); }},
        {"stop own", Kind::eMonitorStop, [&] { return monitors.stopQorvexEvents(); },
         [&] { return monitors.qorvexEventsStarted(); }},
        {"start Bluetooth", Kind::eMonitorStart, [&] { return monitors.startMonitoringBluetoothEvents(); },
         [&] { return monitors.bluetoothEventsStarted(); }},
        {"stop Bluetooth", Kind::eMonitorStop, [&] { return monitors.stopMonitoringBluetoothEvents(); },
         [&] { return monitors.bluetoothEventsStarted(); }},
    };
    const std::function<void(Kind)> answers[] = {
        [&](Kind kind) { rig.exchange.fail(kind, 7); },
        [&](Kind kind) {
            rig.exchange.answer(kind, [](CSTARequest& request) { request.setOutcome(0, nullptr); });
        },
        [&](Kind kind) {
            rig.exchange.answer(kind, [](CSTARequest& request) {
                request.setOutcome(0, std::make_unique<CSTAEscapeResponse>());
            });
        },
        [&](Kind kind) { rig.exchange.refuse(kind, "operation", "invalidDeviceID"); },
    };
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        const bool before = operation.kind == Kind::eMonitorStop;
        ASSERT_EQ(operation.isOn(), before);
        for (const auto& answer : answers) {
            answer(operation.kind);
            EXPECT_FALSE(operation.run());
            EXPECT_EQ(operation.isOn(), before);
        }
        rig.exchange.grantAll();
        EXPECT_TRUE(operation.run());
        EXPECT_NE(operation.isOn(), before);
    }
}

TEST_F(CstaMonitors, OfOtherDevicesAnswerTheirCrossReferenceOrError) {
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2002"), "1");
    EXPECT_EQ(rig.exchange.requests().back().filter, CSTAMonitorFilter());

    rig.exchange.fail(Kind::eMonitorStart);
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2003"), "ERROR");

    rig.exchange.answer(Kind::eMonitorStart, [](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAEscapeResponse>());
    });
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2004"), "ERROR");

    rig.exchange.answer(Kind::eMonitorStart, [](CSTARequest& request) {
        auto response = std::make_unique<CSTAMonitorStartResponse>("5");
        response->setError("operation", "invalidDeviceID");
        request.setOutcome(0, std::move(response));
    });
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2005"), "5") << "a refusal is not asked for here";

    rig.forget();
    rig.monitors.stopCSTAMonitor("5");
    EXPECT_EQ(rig.asked(), "stop 5");
    rig.exchange.fail(Kind::eMonitorStop);
    rig.monitors.stopCSTAMonitor("6");
    rig.collaborators.m_cstaService = nullptr;
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2006"), "ERROR");
    rig.monitors.stopCSTAMonitor("7");
}

TEST_F(CstaMonitors, KeepACrossReferenceOfNineteenCharacters) {
    const std::string longest(19, 'x');
    rig.exchange.answer(Kind::eMonitorStart, [&longest](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>(longest));
    });
    rig.monitors.startQorvexEvents();
    rig.monitors.stopQorvexEvents();
    EXPECT_EQ(rig.asked(), "start localDeviceID; stop " + longest);
}

}  // namespace
}  // namespace journaltest
