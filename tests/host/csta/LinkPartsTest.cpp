#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "host/csta-wire/InvokeIds.h"
#include "host/csta/EventsBeforeMonitorStart.h"
#include "host/csta/OtherDeviceEvents.h"

namespace {

using host::EventsBeforeMonitorStart;
using host::InvokeIds;
using host::WireDocument;
using std::chrono::milliseconds;

WireDocument parsed(const std::string& xml) {
    std::string fault;
    return WireDocument::parse(xml, fault).value();
}

TEST(InvokeIds, WrapAroundAndSkipWaitingOnes) {
    InvokeIds ids;
    for (int expected = InvokeIds::kFirst; expected <= InvokeIds::kLast; ++expected) {
        ASSERT_EQ(ids.next([](int) { return false; }), expected);
    }
    EXPECT_EQ(ids.next([](int id) { return id < 3; }), 3);
    EXPECT_FALSE(ids.next([](int) { return true; }));
}

TEST(EventsBeforeMonitorStart, AreLimitedInAgeAndNumber) {
    const EventsBeforeMonitorStart::Clock::time_point start;
    EventsBeforeMonitorStart early;
    early.keep("1", parsed("<Old/>"), start);
    const auto later = start + milliseconds(1000);
    for (std::size_t i = 0; i <= EventsBeforeMonitorStart::kMaxEvents; ++i) {
        early.keep("1", parsed(i == 0 ? "<First/>" : "<X/>"), later);
    }
    std::string names;
    for (const WireDocument& event :
         early.take("1", start + EventsBeforeMonitorStart::kMaxAge + milliseconds(1))) {
        names += event.name();
    }
    EXPECT_EQ(names, std::string(EventsBeforeMonitorStart::kMaxEvents, 'X'));
}

TEST(OtherDeviceEvents, GiveOneCallOfTheBluetoothTelephoneThePlatformsId) {
    const std::string device = "bluetoothDeviceID";
    const auto events = host::OtherDeviceEvents::of(device, "2001");
    const auto idIn = [&](auto event, const std::string& callId) {
        event.setConnection(callId, device);
        const auto adapted = events->adapt(event.clone());
        return dynamic_cast<CSTACallControlEvent&>(*adapted).getConnectionCallID();
    };
    EXPECT_EQ(idIn(CSTACallInformationEvent(), "-1"), "-1");
    EXPECT_EQ(idIn(CSTAConnectionClearedEvent(), "6"), "6");
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "7"), device);
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "8"), "8");
    CSTAEstablishedEvent established;
    established.setAnsweringDevice({device, ""});
    EXPECT_EQ(idIn(established, "7"), device);
    const auto adapted = events->adapt(established.clone());
    EXPECT_TRUE(dynamic_cast<CSTAEstablishedEvent&>(*adapted).getAnsweringDevice().isLocal());
    EXPECT_EQ(idIn(CSTAFailedEvent(), "7"), device);
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "9"), device) << "the call before has ended";
    EXPECT_EQ(idIn(CSTAConnectionClearedEvent(), "8"), "8");
    CSTATransferredEvent transferred;
    transferred.setOldCalls("9", "");
    EXPECT_EQ(idIn(transferred, "10"), device);
    EXPECT_EQ(idIn(CSTAConnectionClearedEvent(), "10"), device);
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "11"), device);
    events->forgetCalls();
    EXPECT_EQ(idIn(CSTADeliveredEvent(), "12"), device);
}

}  // namespace
