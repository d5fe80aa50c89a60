#pragma once

namespace journaltest {

/// Sets the sub-platform variant that `HardwareVersion` returns; each test begins with 0. Thread-safe.
void setHardwareVariant(int variant) noexcept;

}  // namespace journaltest
