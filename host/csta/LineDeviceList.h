#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct CstaLinkConfig;

/// A device of the phone, as its services receive it.
struct LineDevice {
    static constexpr int kOwnLine = 0;
    /// Not a device that rings for this phone: a group, a queue, a trunk.
    static constexpr int kNoLine = 1;
    /// A shared line, or a paired telephone.
    static constexpr int kOtherLine = 2;

    int type = kNoLine;
    /// The number; `CSTADevice::kLocalDevice` for the own line.
    std::string id;

    [[nodiscard]] bool operator==(const LineDevice&) const = default;
};

/// The devices of one phone, collected from the switch or the configuration. A plain value.
class LineDeviceList {
public:
    explicit LineDeviceList(std::string_view ownDevice);

    /// Adds a device in any written form, with the ECMA-323 value of its category (empty for a telephone).
    /// Ignores duplicates and devices without a number.
    void add(std::string_view device, std::string_view category = {});
    [[nodiscard]] bool isEmpty() const noexcept { return m_devices.empty(); }

    /// The devices in the order of addition. If the own line was not added, it comes first.
    [[nodiscard]] std::vector<LineDevice> devices() const;

private:
    std::string m_own;
    std::vector<LineDevice> m_devices;
};

/// The configured devices of the phone.
[[nodiscard]] std::vector<LineDevice> configuredDevices(const CstaLinkConfig& config);

}  // namespace host
