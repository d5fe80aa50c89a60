#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "host/csta-wire/InvokeIds.h"
#include "host/csta/EventsBeforeMonitorStart.h"

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

}  // namespace
