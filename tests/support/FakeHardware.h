#pragma once

namespace journaltest {

/// What `HardwareVersion::getHWSubPlatformVariant` answers in this program: 0 at the beginning of each test, until
/// the test sets it. Any thread may ask.
class FakeHardware {
public:
    FakeHardware() = delete;

    static void setSubPlatformVariant(int variant) noexcept;
};

}  // namespace journaltest
