#include "host/csta/FilterGroups.h"

#include <gtest/gtest.h>

#include <string>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"

namespace {

using host::leavesAnythingOut;
using host::memberSetting;

CSTAMonitorFilter ownLineFilter() {
    CSTAMonitorFilter filter;
    filter.setCallControlFilter(false);
    filter.setHeldFilter(true);
    filter.setRetrievedFilter(true);
    filter.setServiceInitiatedFilter(true);
    filter.setCallAssociatedFilter(true);
    filter.setCallInformationFilter(false);
    filter.setPhysicalDeviceFilter(true);
    filter.setLogicalDeviceFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setCallLogEntryFilter(false);
    filter.setSystemFilter(true);
    filter.setSystemStatusFilter(false);
    return filter;
}

/// What a member says on the wire: "true", "false" or nothing.
std::string written(const CSTAMonitorFilter& filter, bool alsoFalse, const char* group, const char* member) {
    host::MessageWriter writer("F", "urn:x");
    host::writeFilterGroups(writer, filter, alsoFalse);
    std::string fault;
    const auto document = host::WireDocument::parse(writer.finish(), fault);
    EXPECT_TRUE(document) << fault;
    return host::childText(host::childNamed(document->root(), group), member);
}

TEST(FilterGroups, LetAMemberWinOverItsGroup) {
    const CSTAMonitorFilter filter = ownLineFilter();
    EXPECT_EQ(written(filter, false, "callcontrol", "held"), "true");
    EXPECT_EQ(written(filter, false, "callcontrol", "retrieved"), "true");
    EXPECT_EQ(written(filter, false, "callcontrol", "delivered"), "");
    EXPECT_EQ(written(filter, false, "callAssociated", "charging"), "true");
    EXPECT_EQ(written(filter, false, "callAssociated", "callInformation"), "");
    EXPECT_EQ(written(filter, false, "physicalDeviceFeature", "lampMode"), "true");
    EXPECT_EQ(written(filter, false, "maintenance", "outOfService"), "true");
}

TEST(FilterGroups, KeepCallbacksAndTheCallLogOfTheSwitchComing) {
    const CSTAMonitorFilter filter = ownLineFilter();
    EXPECT_EQ(written(filter, false, "logicalDeviceFeature", "forwarding"), "true");
    EXPECT_EQ(written(filter, false, "logicalDeviceFeature", "callBack"), "");
    EXPECT_EQ(written(filter, false, "private", "private"), "");

    CSTAMonitorFilter withoutLog = filter;
    withoutLog.setCallLogEntryFilter(true);
    EXPECT_EQ(written(withoutLog, false, "private", "private"), "true");
}

TEST(FilterGroups, SayInAChangeWhatIsLetThroughAgain) {
    const CSTAMonitorFilter filter = ownLineFilter();
    EXPECT_EQ(written(filter, true, "callcontrol", "held"), "true");
    EXPECT_EQ(written(filter, true, "callcontrol", "delivered"), "false");
    EXPECT_EQ(written(filter, true, "callAssociated", "callInformation"), "false");

    CSTAMonitorFilter open;
    open.setCallControlFilter(false);
    EXPECT_EQ(written(open, true, "callcontrol", "held"), "false");
    EXPECT_EQ(written(open, true, "callAssociated", "charging"), "");
}

TEST(FilterGroups, HaveNothingToSayForAFilterThatLeavesNothingOut) {
    EXPECT_FALSE(leavesAnythingOut(CSTAMonitorFilter()));
    CSTAMonitorFilter open;
    open.setCallControlFilter(false);
    open.setSystemStatusFilter(true);
    EXPECT_FALSE(leavesAnythingOut(open));
    open.setHeldFilter(true);
    EXPECT_TRUE(leavesAnythingOut(open));
    EXPECT_FALSE(memberSetting(open, "callcontrol", "nothing").has_value());
}

}  // namespace
