#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAEvent.h"

/// Calls were joined into a conference. An old call id that is empty or "0" means that there was no such
/// call.
class CSTAConferencedEvent final
    : public CSTAEventOf<CSTAConferencedEvent, CSTAEvent, CSTAEventCode::eConferenced,
                         &CSTAEventObserverBase::handleCSTAConferencedEvent> {
public:
    [[nodiscard]] const std::string& getConferenceCallID() const noexcept { return m_conferenceCallId; }
    void setConferenceCallID(std::string callId) { m_conferenceCallId = std::move(callId); }

    [[nodiscard]] const std::string& getPrimaryoldcallCallID() const noexcept { return m_primaryCallId; }
    [[nodiscard]] const std::string& getSecondaryoldcallCallID() const noexcept { return m_secondaryCallId; }
    void getPrimaryoldcallDeviceID(std::string& number) const { number = m_primaryDeviceId; }
    void getSecondaryoldcallDeviceID(std::string& number) const { number = m_secondaryDeviceId; }
    void setPrimaryOldCall(std::string callId, std::string deviceId) {
        m_primaryCallId = std::move(callId);
        m_primaryDeviceId = std::move(deviceId);
    }
    void setSecondaryOldCall(std::string callId, std::string deviceId) {
        m_secondaryCallId = std::move(callId);
        m_secondaryDeviceId = std::move(deviceId);
    }

    /// The call id of new connection number `index`, counted from 1; empty beyond the last.
    [[nodiscard]] std::string getConferenceconnectionsNewconnectionCallID(std::size_t index) const {
        return index >= 1 && index <= m_newCallIds.size() ? m_newCallIds[index - 1] : std::string();
    }
    void addNewConnectionCallID(std::string callId) { m_newCallIds.push_back(std::move(callId)); }

    [[nodiscard]] std::string toString() const override {
        return "conference: " + m_conferenceCallId + ", primaryOldCall: " + m_primaryCallId + " " +
               m_primaryDeviceId + ", secondaryOldCall: " + m_secondaryCallId + " " + m_secondaryDeviceId;
    }

private:
    std::string m_conferenceCallId;
    std::string m_primaryCallId;
    std::string m_primaryDeviceId;
    std::string m_secondaryCallId;
    std::string m_secondaryDeviceId;
    std::vector<std::string> m_newCallIds;
};

/// The members of a conference, reported to SIP phones.
class CSTAConferenceMembershipEvent final
    : public CSTAEventOf<CSTAConferenceMembershipEvent, CSTAEvent, CSTAEventCode::eConferenceMembership,
                         &CSTAEventObserverBase::handleCSTAConferenceMembershipEvent> {
public:
    [[nodiscard]] const std::string& getCallID() const noexcept { return m_callId; }
    void setCallID(std::string callId) { m_callId = std::move(callId); }
    [[nodiscard]] const std::string& getDeviceID() const noexcept { return m_deviceId; }
    void setDeviceID(std::string deviceId) { m_deviceId = std::move(deviceId); }

    /// Member number `index`, counted from 1; false, with the outputs unchanged, beyond the last.
    bool getUserInformation(std::size_t index, std::string& name, std::string& number) const {
        if (index < 1 || index > m_members.size()) {
            return false;
        }
        name = m_members[index - 1].name;
        number = m_members[index - 1].number;
        return true;
    }
    void addUserInformation(CSTADevice member) { m_members.push_back(std::move(member)); }

    [[nodiscard]] std::string toString() const override {
        return "call: " + m_callId + ", device: " + m_deviceId +
               ", members: " + std::to_string(m_members.size());
    }

private:
    std::string m_callId;
    std::string m_deviceId;
    std::vector<CSTADevice> m_members;
};
