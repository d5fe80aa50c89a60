#pragma once

#include <string>
#include <utility>

#include "platform/csta/CSTACallControlEvent.h"

// The call-control events of one device, each with the members that only it has. Where an operation has two
// names (`getConnectionCallID`, `getHeldConnectionCallID`), both name the connection that the event is about.

class CSTAOriginatedEvent final
    : public CSTAEventOf<CSTAOriginatedEvent, CSTACallControlEvent, CSTAEventCode::eOriginated,
                         &CSTAEventObserverBase::handleCSTAOriginatedEvent> {};

class CSTAOfferedEvent final
    : public CSTAEventOf<CSTAOfferedEvent, CSTACallControlEvent, CSTAEventCode::eOffered,
                         &CSTAEventObserverBase::handleCSTAOfferedEvent> {
public:
    [[nodiscard]] const std::string& getOfferedConnectionCallID() const noexcept {
        return getConnectionCallID();
    }
};

class CSTAQueuedEvent final
    : public CSTAEventOf<CSTAQueuedEvent, CSTACallControlEvent, CSTAEventCode::eQueued,
                         &CSTAEventObserverBase::handleCSTAQueuedEvent> {};

class CSTADeliveredEvent final
    : public CSTAEventOf<CSTADeliveredEvent, CSTACallControlEvent, CSTAEventCode::eDelivered,
                         &CSTAEventObserverBase::handleCSTADeliveredEvent> {
public:
    [[nodiscard]] const CSTADevice& getAlertingDevice() const noexcept { return m_alerting; }
    void setAlertingDevice(CSTADevice device) { m_alerting = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return deviceToString("alerting", m_alerting);
    }

private:
    CSTADevice m_alerting;
};

class CSTADivertedEvent final
    : public CSTAEventOf<CSTADivertedEvent, CSTACallControlEvent, CSTAEventCode::eDiverted,
                         &CSTAEventObserverBase::handleCSTADivertedEvent> {
public:
    [[nodiscard]] const CSTADevice& getDivertingDevice() const noexcept { return m_diverting; }
    void setDivertingDevice(CSTADevice device) { m_diverting = std::move(device); }
    [[nodiscard]] const CSTADevice& getNewDestination() const noexcept { return m_newDestination; }
    void setNewDestination(CSTADevice device) { m_newDestination = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return deviceToString("diverting", m_diverting) + deviceToString("newDestination", m_newDestination);
    }

private:
    CSTADevice m_diverting;
    CSTADevice m_newDestination;
};

class CSTAEstablishedEvent final
    : public CSTAEventOf<CSTAEstablishedEvent, CSTACallControlEvent, CSTAEventCode::eEstablished,
                         &CSTAEventObserverBase::handleCSTAEstablishedEvent> {
public:
    [[nodiscard]] const CSTADevice& getAnsweringDevice() const noexcept { return m_answeringDevice; }
    void setAnsweringDevice(CSTADevice device) { m_answeringDevice = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return deviceToString("answering", m_answeringDevice);
    }

private:
    CSTADevice m_answeringDevice;
};

class CSTAHeldEvent final : public CSTAEventOf<CSTAHeldEvent, CSTACallControlEvent, CSTAEventCode::eHeld,
                                               &CSTAEventObserverBase::handleCSTAHeldEvent> {
public:
    [[nodiscard]] const std::string& getHeldConnectionCallID() const noexcept {
        return getConnectionCallID();
    }
};

class CSTARetrievedEvent final
    : public CSTAEventOf<CSTARetrievedEvent, CSTACallControlEvent, CSTAEventCode::eRetrieved,
                         &CSTAEventObserverBase::handleCSTARetrievedEvent> {
public:
    [[nodiscard]] const std::string& getRetrievedConnectionCallID() const noexcept {
        return getConnectionCallID();
    }
    [[nodiscard]] bool isConnectedToMediaServer() const noexcept { return m_connectedToMediaServer; }
    void setConnectedToMediaServer(bool connected) noexcept { m_connectedToMediaServer = connected; }

private:
    bool m_connectedToMediaServer = false;
};

class CSTAFailedEvent final
    : public CSTAEventOf<CSTAFailedEvent, CSTACallControlEvent, CSTAEventCode::eFailed,
                         &CSTAEventObserverBase::handleCSTAFailedEvent> {
public:
    [[nodiscard]] const CSTADevice& getFailingDevice() const noexcept { return m_failing; }
    void setFailingDevice(CSTADevice device) { m_failing = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return deviceToString("failing", m_failing);
    }

private:
    CSTADevice m_failing;
};

class CSTAConnectionClearedEvent final
    : public CSTAEventOf<CSTAConnectionClearedEvent, CSTACallControlEvent, CSTAEventCode::eConnectionCleared,
                         &CSTAEventObserverBase::handleCSTAConnectionClearedEvent> {
public:
    [[nodiscard]] const std::string& getDroppedConnectionCallID() const noexcept {
        return getConnectionCallID();
    }
    [[nodiscard]] const CSTADevice& getReleasingDevice() const noexcept { return m_releasing; }
    void setReleasingDevice(CSTADevice device) { m_releasing = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return deviceToString("releasing", m_releasing);
    }

private:
    CSTADevice m_releasing;
};

class CSTATransferredEvent final
    : public CSTAEventOf<CSTATransferredEvent, CSTACallControlEvent, CSTAEventCode::eTransferred,
                         &CSTAEventObserverBase::handleCSTATransferredEvent> {
public:
    /// The call ids before the transfer; the secondary one is empty for a single-step transfer. The event's
    /// connection is the surviving call.
    [[nodiscard]] const std::string& getPrimaryoldcallCallID() const noexcept { return m_primaryOldCallId; }
    [[nodiscard]] const std::string& getSecondaryoldcallCallID() const noexcept {
        return m_secondaryOldCallId;
    }
    void setOldCalls(std::string primaryCallId, std::string secondaryCallId) {
        m_primaryOldCallId = std::move(primaryCallId);
        m_secondaryOldCallId = std::move(secondaryCallId);
    }
    [[nodiscard]] const CSTADevice& getTransferringDevice() const noexcept { return m_transferring; }
    void setTransferringDevice(CSTADevice device) { m_transferring = std::move(device); }
    [[nodiscard]] const CSTADevice& getTransferredToDevice() const noexcept { return m_transferredTo; }
    void setTransferredToDevice(CSTADevice device) { m_transferredTo = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return ", primaryOldCall: " + m_primaryOldCallId + ", secondaryOldCall: " + m_secondaryOldCallId +
               deviceToString("transferring", m_transferring) +
               deviceToString("transferredTo", m_transferredTo);
    }

private:
    std::string m_primaryOldCallId;
    std::string m_secondaryOldCallId;
    CSTADevice m_transferring;
    CSTADevice m_transferredTo;
};

class CSTACallInformationEvent final
    : public CSTAEventOf<CSTACallInformationEvent, CSTACallControlEvent, CSTAEventCode::eCallInformation,
                         &CSTAEventObserverBase::handleCSTACallInformationEvent> {
public:
    /// The device of the connection with its name; the private data has the call status.
    [[nodiscard]] const CSTADevice& getDevice() const noexcept { return m_device; }
    void setDevice(CSTADevice device) { m_device = std::move(device); }

protected:
    [[nodiscard]] std::string ownDevicesToString() const override {
        return deviceToString("device", m_device);
    }

private:
    CSTADevice m_device;
};
