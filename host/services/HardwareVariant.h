#pragma once

namespace host {

/// The sub-platform variant that `HardwareVersion` returns in this process, which stands for a phone of that
/// variant.
///
/// Thread-safe.
class HardwareVariant {
public:
    HardwareVariant() = delete;

    /// The variant is 0 until the first call.
    static void set(int variant) noexcept;
};

}  // namespace host
