#pragma once

/// The phone's hardware. The process that loads a service provides the definition, as for the logger.
class __attribute__((visibility("default"))) HardwareVersion {
public:
    /// The sub-platform variant; 3 and 4 run the Crest user interface. Any thread.
    [[nodiscard]] static int getHWSubPlatformVariant() noexcept;
};
