#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAEvent.h"
#include "platform/csta/CallLogEntryEvent.h"

/// Private data of the switch; it may carry an entry of the switch's own call log.
class CSTAPrivateEvent final : public CSTAEventOf<CSTAPrivateEvent, CSTAEvent, CSTAEventCode::ePrivate,
                                                  &CSTAEventObserverBase::handleCSTAPrivateEvent> {
public:
    /// Null if the event carries no call-log entry.
    [[nodiscard]] const CallLogEntryEvent* getCallLogEntry() const noexcept {
        return m_callLogEntry ? &*m_callLogEntry : nullptr;
    }
    void setCallLogEntry(CallLogEntryEvent entry) { m_callLogEntry = std::move(entry); }

private:
    std::optional<CallLogEntryEvent> m_callLogEntry;
};

/// A callback request was set, changed or cancelled at the switch.
class CSTACallBackEvent final : public CSTAEventOf<CSTACallBackEvent, CSTAEvent, CSTAEventCode::eCallBack,
                                                   &CSTAEventObserverBase::handleCSTACallBackEvent> {
public:
    /// The device that requested the callback, and the device to call back.
    [[nodiscard]] const CSTADevice& getOriginatingDevice() const noexcept { return m_originating; }
    void setOriginatingDevice(CSTADevice device) { m_originating = std::move(device); }
    [[nodiscard]] const CSTADevice& getTargetDevice() const noexcept { return m_target; }
    void setTargetDevice(CSTADevice device) { m_target = std::move(device); }
    /// True if the request is pending, false if it was cancelled or carried out.
    [[nodiscard]] bool isSet() const noexcept { return m_set; }
    void setSet(bool set) noexcept { m_set = set; }

private:
    CSTADevice m_originating;
    CSTADevice m_target;
    bool m_set = true;
};
