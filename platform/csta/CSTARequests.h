#pragma once

#include <string>
#include <utility>

#include "platform/csta/CSTAMonitorFilter.h"
#include "platform/csta/CSTARequest.h"
#include "platform/csta/CallLogEntryRequest.h"

/// Subscribes to the switch's system status.
class CSTASystemStatusRequest final : public CSTARequest {};

/// Starts a monitor of a device; the response is a `CSTAMonitorStartResponse`. `CSTADevice::kLocalDevice`
/// names the phone's own device. Without a filter every event of the device is reported.
class CSTAMonitorStartRequest final : public CSTARequest {
public:
    [[nodiscard]] const std::string& getDeviceObject() const noexcept { return m_device; }
    void setDeviceObject(std::string device) { m_device = std::move(device); }
    [[nodiscard]] const CSTAMonitorFilter& getRequestedMonitorFilter() const noexcept { return m_filter; }
    void setRequestedMonitorFilter(const CSTAMonitorFilter& filter) { m_filter = filter; }

private:
    std::string m_device;
    CSTAMonitorFilter m_filter;
};

/// Stops a monitor; the response is a `CSTAMonitorStopResponse`.
class CSTAMonitorStopRequest final : public CSTARequest {
public:
    [[nodiscard]] const std::string& getMonitorCrossRefID() const noexcept { return m_crossRefId; }
    void setMonitorCrossRefID(std::string id) { m_crossRefId = std::move(id); }

private:
    std::string m_crossRefId;
};

/// Changes the filter of a device's monitor; the response is a `CSTAChangeMonitorFilterResponse`.
class CSTAChangeMonitorFilterRequest final : public CSTARequest {
public:
    [[nodiscard]] const std::string& getDeviceObject() const noexcept { return m_device; }
    void setDeviceObject(std::string device) { m_device = std::move(device); }
    [[nodiscard]] const CSTAMonitorFilter& getRequestedFilterList() const noexcept { return m_filter; }
    void setRequestedFilterList(const CSTAMonitorFilter& filter) { m_filter = filter; }

private:
    std::string m_device;
    CSTAMonitorFilter m_filter;
};

/// A private request; event type 0 carries a call-log entry request. The response is a `CSTAEscapeResponse`.
class CSTAEscapeRequest final : public CSTARequest {
public:
    [[nodiscard]] int getEventType() const noexcept { return m_eventType; }
    void setEventType(int type) noexcept { m_eventType = type; }
    /// Borrowed for the length of the request.
    [[nodiscard]] const CallLogEntryRequest* getCallLogEntry() const noexcept { return m_callLogEntry; }
    void setCallLogEntry(const CallLogEntryRequest* entry) noexcept { m_callLogEntry = entry; }

private:
    int m_eventType = 0;
    const CallLogEntryRequest* m_callLogEntry = nullptr;
};
