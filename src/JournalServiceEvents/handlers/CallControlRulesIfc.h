#pragma once

class CSTADeliveredEvent;
class CSTADivertedEvent;
class CSTAEstablishedEvent;
class CSTAFailedEvent;
class CSTAOfferedEvent;
class CSTAOriginatedEvent;
class CSTAQueuedEvent;

namespace journal {

/// The rules for call-control events that differ between the phone types. Each operation reads the
/// parties from its event and updates the call through `CallControlContext::track`.
///
/// Requires: the call-map lock is held, and the journal accepts events.
class CallControlRulesIfc {
public:
    CallControlRulesIfc() = default;
    CallControlRulesIfc(const CallControlRulesIfc&) = delete;
    CallControlRulesIfc& operator=(const CallControlRulesIfc&) = delete;
    virtual ~CallControlRulesIfc() = default;

    virtual void originated(const CSTAOriginatedEvent& event) = 0;
    virtual void offered(const CSTAOfferedEvent& event) = 0;
    virtual void queued(const CSTAQueuedEvent& event) = 0;
    virtual void delivered(const CSTADeliveredEvent& event) = 0;
    virtual void diverted(const CSTADivertedEvent& event) = 0;
    virtual void established(const CSTAEstablishedEvent& event) = 0;
    virtual void failed(const CSTAFailedEvent& event) = 0;
};

}  // namespace journal
