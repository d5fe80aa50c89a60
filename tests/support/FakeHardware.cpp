#include "tests/support/FakeHardware.h"

#include <atomic>

#include "platform/hardware/HardwareVersion.h"

namespace journaltest {
namespace {
std::atomic<int> g_variant{0};
}

void setHardwareVariant(int variant) noexcept {
    g_variant = variant;
}

}  // namespace journaltest

__attribute__((visibility("default"))) int HardwareVersion::getHWSubPlatformVariant() noexcept {
    return journaltest::g_variant;
}
