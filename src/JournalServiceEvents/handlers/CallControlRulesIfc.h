#pragma once

class CSTADeliveredEvent;
class CSTADivertedEvent;
class CSTAEstablishedEvent;
class CSTAFailedEvent;
class CSTAOfferedEvent;
class CSTAOriginatedEvent;
class CSTAQueuedEvent;

namespace journal {

/// What a flavour of the phone makes of the call-control events that differ between flavours. Each operation reads the
/// parties from its event and passes the call on to the tracker; it is called with the call-map lock held, when
/// the event has passed the gates that all flavours share.
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
