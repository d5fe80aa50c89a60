#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "host/csta-wire/InvokeIds.h"
#include "host/csta-wire/MessageWriter.h"
#include "host/csta/EarlyEvents.h"
#include "host/csta/FilterGroups.h"
#include "tests/support/Table.h"

namespace {

using host::EarlyEvents;
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

TEST(EarlyEvents, AreLimitedInAgeAndNumber) {
    const EarlyEvents::Clock::time_point start;
    EarlyEvents early;
    const auto take = [&](const std::string& crossRefId) {
        std::string names;
        for (const WireDocument& event :
             early.take(crossRefId, start + EarlyEvents::kMaxAge + milliseconds(1))) {
            names += event.name();
        }
        return names;
    };
    const auto later = start + milliseconds(1000);
    early.keep("1", parsed("<Old/>"), start);
    early.keep("1", parsed("<A/>"), later);
    early.keep("2", parsed("<B/>"), later);
    early.keep("1", parsed("<C/>"), later);
    EXPECT_EQ(take("1"), "AC");
    EXPECT_EQ(take("1"), "");
    EXPECT_EQ(take("2"), "B");
    for (std::size_t i = 0; i <= EarlyEvents::kMaxEvents; ++i) {
        early.keep("1", parsed(i == 0 ? "<First/>" : "<X/>"), later);
    }
    EXPECT_EQ(take("1"), std::string(EarlyEvents::kMaxEvents, 'X'));
}

TEST(FilterGroups, AreWrittenIfTrueAndInAChangeAlsoIfFalse) {
    CSTAMonitorFilter filter;
    filter.setCallControlFilter(false);
    filter.setHeldFilter(true);
    filter.setCallAssociatedFilter(true);
    filter.setCallInformationFilter(false);
    filter.setLogicalDeviceFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setCallLogEntryFilter(false);
    filter.setSystemFilter(true);
    // The values written by a start and by a change. Callbacks and the switch's call log are never
    // suppressed.
    const std::string rows = R"(
callcontrol           | held            | true | true
callcontrol           | delivered       |      | false
callAssociated        | charging        | true | true
callAssociated        | callInformation |      | false
physicalDeviceFeature | lampMode        |      |
maintenance           | outOfService    | true | true
logicalDeviceFeature  | forwarding      | true | true
logicalDeviceFeature  | callBack        |      | false
private               | private         |      | false
)";
    for (const bool change : {false, true}) {
        host::MessageWriter writer("F", "urn:x");
        host::writeFilterGroups(writer, filter, change);
        const WireDocument written = parsed(writer.finish());
        for (const std::vector<std::string>& row : journaltest::table(4, rows)) {
            EXPECT_EQ(host::childText(host::childNamed(written.root(), row[0]), row[1]), row[change ? 3 : 2])
                << row[1];
        }
    }
}

}  // namespace
