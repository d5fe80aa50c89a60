#include "host/services/HardwareVariant.h"

#include <atomic>

#include "platform/hardware/HardwareVersion.h"

namespace host {
namespace {
std::atomic<int> g_variant{0};
}

void HardwareVariant::set(int variant) noexcept {
    g_variant = variant;
}

}  // namespace host

__attribute__((visibility("default"))) int HardwareVersion::getHWSubPlatformVariant() noexcept {
    return host::g_variant;
}
