// The journal's monitors at the switch: their filters, and the effect of each kind of failed response.

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"
#include "tests/support/ListsFixture.h"

namespace journaltest {
namespace {

using Kind = FakeCstaService::Kind;

struct MonitorsFixture : ListsFixture, CSTAEventIfc {
    void deliverEvent(CSTAEvent* /*event*/) override {}

    journal::CstaMonitors monitors{platform, settings, nullptr, *this};
};

/// Returns the suppressed groups and those that pass; the service decides on the others.
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
    MonitorsFixture fixture;
    const std::string always =
        "suppressed: callAssociated physicalDevice logicalDevice vendorSpecific system"
        "; through: callControl callLogEntry systemStatus dnd coc";
    const std::string atTheStart =
        "suppressed: held retrieved serviceInitiated callAssociated physicalDevice "
        "logicalDevice vendorSpecific system"
        "; through: callControl callInformation callLogEntry systemStatus";
    EXPECT_TRUE(fixture.monitors.startQorvexEvents());
    EXPECT_EQ(fixture.exchange.lastReceiver(), &fixture);
    EXPECT_EQ(textOf(fixture.exchange.lastFilter()), atTheStart);
    for (const int systemIdentifier : {0, 1, 2, 3}) {
        fixture.phoneIs(softwareTypes::qorvex, systemIdentifier);
        fixture.monitors.changeMonitorFilter();
        EXPECT_EQ(textOf(fixture.exchange.lastFilter()),
                  systemIdentifier == 2 ? always : atTheStart + " dnd coc")
            << systemIdentifier;
    }
    fixture.forget();
    fixture.phoneIs(softwareTypes::sip);
    fixture.monitors.changeMonitorFilter();
    fixture.phoneIs(softwareTypes::qorvex);
    fixture.platform.m_cstaService = nullptr;
    fixture.monitors.changeMonitorFilter();
    EXPECT_EQ(fixture.exchange.asked(), "");
}

TEST(CstaMonitors, AreStoppedByTheCrossReferenceThatTheSwitchGave) {
    MonitorsFixture fixture;
    const std::string longest(19, 'x');
    fixture.exchange.answer(Kind::eMonitorStart, [&longest](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>(longest));
    });
    EXPECT_FALSE(fixture.monitors.stopMonitoringBluetoothEvents()) << "nothing to stop";
    fixture.monitors.startMonitoringBluetoothEvents();
    EXPECT_EQ(fixture.exchange.lastFilter(), CSTAMonitorFilter());
    fixture.monitors.stopMonitoringBluetoothEvents();
    fixture.monitors.startQorvexEvents();
    fixture.monitors.stopQorvexEvents();
    fixture.monitors.stopQorvexEvents();
    EXPECT_EQ(fixture.monitors.startCSTAMonitor("2002"), longest);
    EXPECT_EQ(fixture.exchange.lastFilter(), CSTAMonitorFilter());
    fixture.monitors.stopCSTAMonitor("5");
    EXPECT_EQ(fixture.exchange.asked(), "start bluetoothDeviceID; stop " + longest +
                                            "; start localDeviceID; stop " + longest +
                                            "; stop ; start 2002; stop 5");
    fixture.platform.m_cstaService = nullptr;
    EXPECT_EQ(fixture.monitors.startCSTAMonitor("2003"), "ERROR");
    fixture.monitors.stopCSTAMonitor("5");
}

template <typename Response>
void refuse(CSTARequest& request) {
    auto response = std::make_unique<Response>();
    response->setError("operation", "invalidDeviceID");
    request.setOutcome(0, std::move(response));
}

TEST(CstaMonitors, KeepTheirStateAfterAFailedResponseAndCanBeRetried) {
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
    MonitorsFixture fixture;
    Monitors& monitors = fixture.monitors;
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        const Kind kind = operation.starts ? Kind::eMonitorStart : Kind::eMonitorStop;
        std::string ofOtherDevice;
        for (const FakeCstaService::Answer& bad :
             {FakeCstaService::Answer([](CSTARequest& request) { request.setOutcome(7, nullptr); }),
              FakeCstaService::Answer(refuse<CSTAEscapeResponse>),
              FakeCstaService::Answer(operation.starts ? refuse<CSTAMonitorStartResponse>
                                                       : refuse<CSTAMonitorStopResponse>)}) {
            fixture.exchange.answer(kind, bad);
            EXPECT_FALSE((monitors.*operation.run)());
            EXPECT_EQ((monitors.*operation.isOn)(), !operation.starts);
            ofOtherDevice += monitors.startCSTAMonitor("2002") + " ";
            monitors.stopCSTAMonitor("5");
        }
        if (operation.starts) {
            EXPECT_EQ(ofOtherDevice, "ERROR ERROR  ") << "of another device a refusal is not asked for";
        }
        fixture.exchange.answer(kind, {});
        EXPECT_TRUE((monitors.*operation.run)());
        EXPECT_EQ((monitors.*operation.isOn)(), operation.starts);
    }
}

}  // namespace
}  // namespace journaltest
