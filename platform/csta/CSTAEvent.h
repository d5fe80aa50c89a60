#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/csta/CSTAEventCode.h"
#include "platform/csta/CSTAEventObserverBase.h"

/// One event that a switch reported for a monitored device. A plain value: one thread at a time. The CSTA
/// service owns an event that it delivers; a receiver that keeps one clones it.
class CSTAEvent {
public:
    CSTAEvent() = default;
    virtual ~CSTAEvent() = default;

    /// The type code; `CSTAEventCode` lists them as numbers.
    [[nodiscard]] virtual CSTAEventCode getType() const noexcept = 0;
    /// Calls the handler of `observer` for this event's class.
    virtual void dispatch(CSTAEventObserverBase& observer) = 0;
    /// A deep copy, owned by the caller.
    [[nodiscard]] virtual std::unique_ptr<CSTAEvent> clone() const = 0;
    /// The event as one log text. Costly: check first that the text will be written.
    [[nodiscard]] virtual std::string toString() const { return {}; }

    [[nodiscard]] const std::string& getMonitorCrossRefID() const noexcept { return m_monitorCrossRefID; }
    void setMonitorCrossRefID(std::string id) { m_monitorCrossRefID = std::move(id); }
    [[nodiscard]] int getCause() const noexcept { return m_cause; }
    void setCause(int cause) noexcept { m_cause = cause; }
    /// The text of the event's private data; empty if there is none.
    [[nodiscard]] const std::string& getPrivateData() const noexcept { return m_privateData; }
    void setPrivateData(std::string data) { m_privateData = std::move(data); }

protected:
    CSTAEvent(const CSTAEvent&) = default;
    CSTAEvent& operator=(const CSTAEvent&) = default;

private:
    std::string m_monitorCrossRefID;
    int m_cause = 0;
    std::string m_privateData;
};

/// Implements code, dispatch and clone of one event class. `Base` is the class that the event shares with
/// others, `Handler` the operation of `CSTAEventObserverBase` that takes a `Derived*`.
template <typename Derived, typename Base, CSTAEventCode Code,
          void (CSTAEventObserverBase::*Handler)(Derived*)>
class CSTAEventOf : public Base {
public:
    [[nodiscard]] CSTAEventCode getType() const noexcept override { return Code; }
    void dispatch(CSTAEventObserverBase& observer) override {
        (observer.*Handler)(static_cast<Derived*>(this));
    }
    [[nodiscard]] std::unique_ptr<CSTAEvent> clone() const override {
        return std::make_unique<Derived>(static_cast<const Derived&>(*this));
    }
};
