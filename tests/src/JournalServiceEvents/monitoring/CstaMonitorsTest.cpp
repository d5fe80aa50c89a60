// The journal's monitors at the switch: filters in full, and what each kind of bad answer does.

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/ConfigurationFixture.h"

namespace journaltest {
namespace {

using Kind = FakeCstaService::Kind;

/// The groups that are suppressed and those that are let through; the others are left to the service.
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
    for (const auto& [name, setting] : groups) {
        if (setting) {
            (*setting ? suppressed : through) += std::string(" ") + name;
        }
    }
    return suppressed + through;
}

TEST(CstaMonitors, OfTheOwnLineHaveAFilterThatFollowsTheEventMode) {
    ConfigurationFixture rig;
    const std::string always =
        "suppressed: callAssociated physicalDevice logicalDevice vendorSpecific system"
        "; through: callControl callLogEntry systemStatus dnd coc";
    const std::string atTheStart =
        "suppressed: held retrieved serviceInitiated callAssociated physicalDevice "
        "logicalDevice vendorSpecific system"
        "; through: callControl callInformation callLogEntry systemStatus";
    EXPECT_TRUE(rig.monitors.startQorvexEvents());
    EXPECT_EQ(rig.exchange.lastReceiver(), &rig);
    EXPECT_EQ(textOf(rig.exchange.lastFilter()), atTheStart);
    for (const int systemIdentifier : {0, 1, 2, 3}) {
        rig.phoneIs(softwareTypes::qorvex, systemIdentifier);
        rig.monitors.changeMonitorFilter();
        EXPECT_EQ(textOf(rig.exchange.lastFilter()), systemIdentifier == 2 ? always : atTheStart + " dnd coc")
            << systemIdentifier;
    }
    rig.forget();
    rig.phoneIs(softwareTypes::sip);
    rig.monitors.changeMonitorFilter();
    rig.phoneIs(softwareTypes::qorvex);
    rig.platform.m_cstaService = nullptr;
    rig.monitors.changeMonitorFilter();
    EXPECT_EQ(rig.exchange.asked(), "");
}

TEST(CstaMonitors, AreStoppedByTheCrossReferenceThatTheSwitchGave) {
    ConfigurationFixture rig;
    const std::string longest(19, 'x');
    rig.exchange.answer(Kind::eMonitorStart, [&longest](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>(longest));
    });
    EXPECT_FALSE(rig.monitors.stopMonitoringBluetoothEvents()) << "nothing to stop";
    rig.monitors.startMonitoringBluetoothEvents();
    EXPECT_EQ(rig.exchange.lastFilter(), CSTAMonitorFilter());
    rig.monitors.stopMonitoringBluetoothEvents();
    rig.monitors.startQorvexEvents();
    rig.monitors.stopQorvexEvents();
    rig.monitors.stopQorvexEvents();
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2002"), longest);
    EXPECT_EQ(rig.exchange.lastFilter(), CSTAMonitorFilter());
    rig.monitors.stopCSTAMonitor("5");
    EXPECT_EQ(rig.exchange.asked(), "start bluetoothDeviceID; stop " + longest +
                                        "; start localDeviceID; stop " + longest +
                                        "; stop ; start 2002; stop 5");
    rig.platform.m_cstaService = nullptr;
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2003"), "ERROR");
    rig.monitors.stopCSTAMonitor("5");
}

template <typename Response>
void refuse(CSTARequest& request) {
    auto response = std::make_unique<Response>();
    response->setError("operation", "invalidDeviceID");
    request.setOutcome(0, std::move(response));
}

TEST(CstaMonitors, AnsweredBadlyStayAsTheyAreAndMayBeTriedAgain) {
    using Monitors = journal::CstaMonitors;
    const struct {
        const char* name;
        bool starts;
        bool (Monitors::*run)();
        bool (Monitors::*isOn)() const noexcept;
    } operations[] = {
        {"start own", true, &Monitors::startQorvexEvents, &Monitors::qorvexEventsStarted},
        {"stop own", false, &Monitors::stopQorvexEvents, &Monitors::qorvexEventsStarted},
        {"start Bluetooth", true, &Monitors::startMonitoringBluetoothEvents,
         &Monitors::bluetoothEventsStarted},
        {"stop Bluetooth", false, &Monitors::stopMonitoringBluetoothEvents,
         &Monitors::bluetoothEventsStarted},
    };
    ConfigurationFixture rig;
    Monitors& monitors = rig.monitors;
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        const Kind kind = operation.starts ? Kind::eMonitorStart : Kind::eMonitorStop;
        std::string ofOtherDevice;
        for (const FakeCstaService::Answer& bad :
             {FakeCstaService::Answer([](CSTARequest& request) { request.setOutcome(7, nullptr); }),
              FakeCstaService::Answer(refuse<CSTAEscapeResponse>),
              FakeCstaService::Answer(operation.starts ? refuse<CSTAMonitorStartResponse>
                                                       : refuse<CSTAMonitorStopResponse>)}) {
            rig.exchange.answer(kind, bad);
            EXPECT_FALSE((monitors.*operation.run)());
            EXPECT_EQ((monitors.*operation.isOn)(), !operation.starts);
            ofOtherDevice += monitors.startCSTAMonitor("2002") + " ";
            monitors.stopCSTAMonitor("5");
        }
        if (operation.starts) {
            EXPECT_EQ(ofOtherDevice, "ERROR ERROR  ") << "of another device a refusal is not asked for";
        }
        rig.exchange.answer(kind, {});
        EXPECT_TRUE((monitors.*operation.run)());
        EXPECT_EQ((monitors.*operation.isOn)(), operation.starts);
    }
}

}  // namespace
}  // namespace journaltest
