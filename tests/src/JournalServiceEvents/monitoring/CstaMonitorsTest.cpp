// The journal's monitors at the switch, and the effect of each kind of failed response.

#include <memory>
#include <string>

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

template <typename Response>
void refuse(CSTARequest& request) {
    auto response = std::make_unique<Response>();
    response->setError("operation", "invalidDeviceID");
    request.setOutcome(0, std::move(response));
}

TEST(CstaMonitors, AreStoppedByTheCrossReferenceThatTheSwitchGave) {
    MonitorsFixture fixture;
    const std::string longest(19, 'x');
    fixture.exchange.respond(Kind::eMonitorStart, [&longest](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>(longest));
    });
    EXPECT_FALSE(fixture.monitors.stopMonitoringBluetoothEvents()) << "nothing to stop";
    fixture.monitors.startMonitoringBluetoothEvents();
    EXPECT_EQ(fixture.exchange.lastFilter(), CSTAMonitorFilter());
    fixture.monitors.stopMonitoringBluetoothEvents();
    fixture.monitors.startQorvexEvents();
    EXPECT_EQ(fixture.exchange.lastReceiver(), &fixture);
    fixture.monitors.stopQorvexEvents();
    fixture.monitors.stopQorvexEvents();
    EXPECT_EQ(fixture.monitors.startCSTAMonitor("2002"), longest);
    fixture.exchange.respond(Kind::eMonitorStart, refuse<CSTAEscapeResponse>);
    EXPECT_EQ(fixture.monitors.startCSTAMonitor("2002"), "ERROR");
    EXPECT_EQ(fixture.exchange.lastFilter(), CSTAMonitorFilter());
    fixture.monitors.stopCSTAMonitor("5");
    EXPECT_EQ(fixture.exchange.asked(), "start bluetoothDeviceID; stop " + longest +
                                            "; start localDeviceID; stop " + longest +
                                            "; stop ; start 2002; start 2002; stop 5");
    fixture.forget();
    fixture.phoneIs(softwaretypes::sip);
    fixture.monitors.changeMonitorFilter();
    fixture.phoneIs(softwaretypes::qorvex);
    fixture.platform.m_cstaService = nullptr;
    fixture.monitors.changeMonitorFilter();
    EXPECT_EQ(fixture.exchange.asked(), "");
    EXPECT_EQ(fixture.monitors.startCSTAMonitor("2003"), "ERROR");
    fixture.monitors.stopCSTAMonitor("5");
    fixture.monitors.CSTASystemRegister();
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
        for (const FakeCstaService::Response& bad :
             {FakeCstaService::Response([](CSTARequest& request) { request.setOutcome(7, nullptr); }),
              FakeCstaService::Response(refuse<CSTAEscapeResponse>),
              FakeCstaService::Response(operation.starts ? refuse<CSTAMonitorStartResponse>
                                                         : refuse<CSTAMonitorStopResponse>)}) {
            fixture.exchange.respond(kind, bad);
            EXPECT_FALSE((monitors.*operation.run)());
            EXPECT_EQ((monitors.*operation.isOn)(), !operation.starts);
        }
        fixture.exchange.respond(kind, {});
        EXPECT_TRUE((monitors.*operation.run)());
        EXPECT_EQ((monitors.*operation.isOn)(), operation.starts);
    }
}

}  // namespace
}  // namespace journaltest
