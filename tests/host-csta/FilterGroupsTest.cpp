#include "host/csta/FilterGroups.h"

#include <gtest/gtest.h>

#include <string>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"

namespace {

CSTAMonitorFilter ownLineFilter() {
    CSTAMonitorFilter filter;
    filter.setCallControlFilter(false);
    filter.setHeldFilter(true);
    filter.setCallAssociatedFilter(true);
    filter.setCallInformationFilter(false);
    filter.setLogicalDeviceFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setCallLogEntryFilter(false);
    filter.setSystemFilter(true);
    return filter;
}

TEST(FilterGroups, SayOnTheWireWhatIsLeftOutAndInAChangeAlsoWhatIsNot) {
    const struct {
        const char* group;
        const char* member;
        /// What a start and a change write: "true", "false" or nothing.
        const char* started;
        const char* changed;
    } cases[] = {
        {"callcontrol", "held", "true", "true"},
        {"callcontrol", "delivered", "", "false"},
        {"callAssociated", "charging", "true", "true"},
        {"callAssociated", "callInformation", "", "false"},
        {"physicalDeviceFeature", "lampMode", "", ""},
        {"maintenance", "outOfService", "true", "true"},
        {"logicalDeviceFeature", "forwarding", "true", "true"},
        // Callbacks and the call log of the switch keep coming.
        {"logicalDeviceFeature", "callBack", "", "false"},
        {"private", "private", "", "false"},
    };
    for (const auto& one : cases) {
        for (const bool change : {false, true}) {
            host::MessageWriter writer("F", "urn:x");
            host::writeFilterGroups(writer, ownLineFilter(), change);
            std::string fault;
            const auto document = host::WireDocument::parse(writer.finish(), fault);
            ASSERT_TRUE(document) << fault;
            EXPECT_EQ(host::childText(host::childNamed(document->root(), one.group), one.member),
                      change ? one.changed : one.started)
                << one.member;
        }
    }
}

}  // namespace
