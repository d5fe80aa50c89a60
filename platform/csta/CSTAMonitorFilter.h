#pragma once

#include <optional>

/// The events that a monitor suppresses: true suppresses, false lets through, unset leaves the choice to the
/// CSTA service (which lets them through). A plain value.
///
/// Most members are the groups of ECMA-269's monitor filter, by their names there: call control, call
/// associated, physical and logical device features, vendor specific. Single events within them have a member
/// of their own, which wins: held, retrieved and service initiated (call control), call information (call
/// associated), do not disturb (`FS_DND`, logical device). Call-log entry, system and system status are the
/// switch's reports about itself; class of control (`FS_COC`) has no event in ECMA-269. A CSTA service
/// ignores members for which it has no event.
class CSTAMonitorFilter {
public:
    using Setting = std::optional<bool>;

    void setCallControlFilter(bool suppress) noexcept { m_callControl = suppress; }
    void setHeldFilter(bool suppress) noexcept { m_held = suppress; }
    void setRetrievedFilter(bool suppress) noexcept { m_retrieved = suppress; }
    void setServiceInitiatedFilter(bool suppress) noexcept { m_serviceInitiated = suppress; }
    void setCallAssociatedFilter(bool suppress) noexcept { m_callAssociated = suppress; }
    void setCallInformationFilter(bool suppress) noexcept { m_callInformation = suppress; }
    void setPhysicalDeviceFilter(bool suppress) noexcept { m_physicalDevice = suppress; }
    void setLogicalDeviceFilter(bool suppress) noexcept { m_logicalDevice = suppress; }
    void setVendorSpecificFilter(bool suppress) noexcept { m_vendorSpecific = suppress; }
    void setCallLogEntryFilter(bool suppress) noexcept { m_callLogEntry = suppress; }
    void setSystemFilter(bool suppress) noexcept { m_system = suppress; }
    void setSystemStatusFilter(bool suppress) noexcept { m_systemStatus = suppress; }
    void setFS_DNDFilter(bool suppress) noexcept { m_fsDnd = suppress; }
    void setFS_COCFilter(bool suppress) noexcept { m_fsCoc = suppress; }

    [[nodiscard]] Setting callControl() const noexcept { return m_callControl; }
    [[nodiscard]] Setting held() const noexcept { return m_held; }
    [[nodiscard]] Setting retrieved() const noexcept { return m_retrieved; }
    [[nodiscard]] Setting serviceInitiated() const noexcept { return m_serviceInitiated; }
    [[nodiscard]] Setting callAssociated() const noexcept { return m_callAssociated; }
    [[nodiscard]] Setting callInformation() const noexcept { return m_callInformation; }
    [[nodiscard]] Setting physicalDevice() const noexcept { return m_physicalDevice; }
    [[nodiscard]] Setting logicalDevice() const noexcept { return m_logicalDevice; }
    [[nodiscard]] Setting vendorSpecific() const noexcept { return m_vendorSpecific; }
    [[nodiscard]] Setting callLogEntry() const noexcept { return m_callLogEntry; }
    [[nodiscard]] Setting system() const noexcept { return m_system; }
    [[nodiscard]] Setting systemStatus() const noexcept { return m_systemStatus; }
    [[nodiscard]] Setting fsDnd() const noexcept { return m_fsDnd; }
    [[nodiscard]] Setting fsCoc() const noexcept { return m_fsCoc; }

    [[nodiscard]] bool operator==(const CSTAMonitorFilter&) const = default;

private:
    Setting m_callControl;
    Setting m_held;
    Setting m_retrieved;
    Setting m_serviceInitiated;
    Setting m_callAssociated;
    Setting m_callInformation;
    Setting m_physicalDevice;
    Setting m_logicalDevice;
    Setting m_vendorSpecific;
    Setting m_callLogEntry;
    Setting m_system;
    Setting m_systemStatus;
    Setting m_fsDnd;
    Setting m_fsCoc;
};
