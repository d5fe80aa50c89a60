#include "host/services/HardwareVariant.h"

#include <gtest/gtest.h>

#include "platform/hardware/HardwareVersion.h"

namespace {

TEST(HardwareVariant, IsWhatWasSetAndZeroBefore) {
    EXPECT_EQ(HardwareVersion::getHWSubPlatformVariant(), 0);
    host::HardwareVariant::set(4);
    EXPECT_EQ(HardwareVersion::getHWSubPlatformVariant(), 4);
}

}  // namespace
