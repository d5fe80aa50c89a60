#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace journal {

/// The devices that a SIP phone serves: its own line, shared secondary lines, a Bluetooth line. Empty until
/// the switch reports them; each report replaces the whole table.
///
/// Call from the strand only.
class LineDevices {
public:
    struct Device {
        /// The cross reference of the device's monitor.
        std::string monitorCrossRefId;
        /// An unanswered call at the device is a missed call of this phone.
        bool logMissedCalls = false;
        /// As the switch reports it: 0 own line, 2 other line.
        std::int32_t deviceType = 0;
    };
    using Table = std::map<std::string, Device>;

    LineDevices() = default;
    LineDevices(const LineDevices&) = delete;
    LineDevices& operator=(const LineDevices&) = delete;
    ~LineDevices() = default;

    /// Returns the device, borrowed until the table changes, or null.
    [[nodiscard]] const Device* find(const std::string& deviceId) const;
    /// Returns false and changes nothing if the table has the device.
    bool insert(const std::string& deviceId, const Device& device);
    void clear() { m_devices.clear(); }
    [[nodiscard]] const Table& devices() const noexcept { return m_devices; }

    /// True if this phone logs missed calls of the device. A device that is not in the table is the phone's
    /// own.
    [[nodiscard]] bool logsMissedCalls(const std::string& deviceId) const;
    /// True for another line than the own one. The Bluetooth telephone is none.
    [[nodiscard]] bool isSharedLine(const std::string& deviceId) const;

private:
    Table m_devices;
};

}  // namespace journal
