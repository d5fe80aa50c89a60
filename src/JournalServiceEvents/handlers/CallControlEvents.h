#pragma once

#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTADeliveredEvent;
class CSTADivertedEvent;
class CSTAEstablishedEvent;
class CSTAFailedEvent;
class CSTAOfferedEvent;
class CSTAOriginatedEvent;
class CSTAQueuedEvent;
class CSTARetrievedEvent;

namespace journal {

class CallControlRulesIfc;

/// Handles the call-control events except Held (`BlindTransfer`) and ConnectionCleared
/// (`ConnectionClearedEvents`). Every handler but Retrieved has the same steps:
///  1. log the event;
///  2. ignore it if the journal does not accept events now (`CallControlContext::acceptsEvents`);
///  3. take the call-map lock and apply the rule of the configured phone type (SIP or Qorvex).
///
/// Call from the strand only.
class CallControlEvents {
public:
    /// Everything is borrowed and outlives this object.
    CallControlEvents(const CallControlContext& callControl, CallControlRulesIfc& qorvexRules,
                      CallControlRulesIfc& sipRules)
        : m_callControl(callControl), m_qorvexRules(qorvexRules), m_sipRules(sipRules) {}

    // Events are borrowed for the call.
    void handleCSTAOriginatedEvent(CSTAOriginatedEvent* event);
    void handleCSTAOfferedEvent(CSTAOfferedEvent* event);
    void handleCSTAQueuedEvent(CSTAQueuedEvent* event);
    void handleCSTADeliveredEvent(CSTADeliveredEvent* event);
    void handleCSTADivertedEvent(CSTADivertedEvent* event);
    void handleCSTAEstablishedEvent(CSTAEstablishedEvent* event);
    void handleCSTAFailedEvent(CSTAFailedEvent* event);
    void handleCSTARetrievedEvent(CSTARetrievedEvent* event);

private:
    template <typename Event>
    void apply(const Event& event, void (CallControlRulesIfc::*rule)(const Event&));

    CallControlContext m_callControl;
    CallControlRulesIfc& m_qorvexRules;
    CallControlRulesIfc& m_sipRules;
};

}  // namespace journal
