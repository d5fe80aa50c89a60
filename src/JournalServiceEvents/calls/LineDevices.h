#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace journal {

/// The devices that a SIP phone serves: its own line, shared secondary lines, a Bluetooth line. Empty until the switch
/// has reported them, and replaced as a whole by each report.
///
/// Threads: the line's strand only.
class LineDevices {
public:
    struct Device {
        /// Of the device's monitor.
        std::string monitorCrossRefId;
        /// Whether a call that rings here unanswered is a missed call of this phone.
        bool logMissedCalls = false;
        /// As the switch reports it: 0 the own line, 2 another one.
        std::int32_t deviceType = 0;
    };
    using Table = std::map<std::string, Device>;

    LineDevices() = default;
    LineDevices(const LineDevices&) = delete;
    LineDevices& operator=(const LineDevices&) = delete;
    ~LineDevices() = default;

    /// Borrowed until the table changes; null when the device is not in it.
    [[nodiscard]] const Device* find(const std::string& deviceId) const;
    /// False, and nothing changed, when the device is there already.
    bool insert(const std::string& deviceId, const Device& device);
    void clear() { m_devices.clear(); }
    [[nodiscard]] const Table& devices() const noexcept { return m_devices; }

    /// A call that rings on a shared secondary line may be nobody's missed call here. A device that is not in the table
    /// is the phone's own.
    [[nodiscard]] bool logsMissedCalls(const std::string& deviceId) const;

private:
    Table m_devices;
};

}  // namespace journal
