#pragma once

namespace host {

/// What `HardwareVersion` answers in this process: the sub-platform variant of the phone that the host stands for.
/// Any thread may call, at any time; 0 until it is set.
class HardwareVariant {
public:
    HardwareVariant() = delete;

    static void set(int variant) noexcept;
};

}  // namespace host
