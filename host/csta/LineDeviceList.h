#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct CstaLinkConfig;

/// A device that the phone serves, as its services know it.
struct LineDevice {
    static constexpr int kOwnLine = 0;
    /// Nothing that a call could ring at for this phone (a group, a queue, a trunk).
    static constexpr int kNoLine = 1;
    /// A line that the phone shares with others, or a telephone paired with it.
    static constexpr int kOtherLine = 2;

    int type = kNoLine;
    /// The number; of the own line, `CSTADevice::kLocalDevice`.
    std::string id;

    [[nodiscard]] bool operator==(const LineDevice&) const = default;
};

/// The devices of one phone, put together from what a switch or the configuration names. A plain value.
class LineDeviceList {
public:
    explicit LineDeviceList(std::string_view ownDevice);

    /// A device in any written form, with the standard's word for its category (none for a telephone). One that is
    /// there already, or has no number, is not added.
    void add(std::string_view device, std::string_view category = {});
    [[nodiscard]] bool isEmpty() const noexcept { return m_devices.empty(); }

    /// The list in the order of the additions. Every phone serves its own line: where nobody named it, it comes first.
    [[nodiscard]] std::vector<LineDevice> devices() const;

private:
    std::string m_own;
    std::vector<LineDevice> m_devices;
};

/// The devices that the configuration gives the phone.
[[nodiscard]] std::vector<LineDevice> configuredDevices(const CstaLinkConfig& config);

}  // namespace host
