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

/// Takes the call-control events in. Every handler but Retrieved goes the same way:
///  1. log the event;
///  2. leave an event alone that the journal does not want (`CallControlContext::acceptsEvents`);
///  3. take the call-map lock and give the event to the rules of the phone's flavour, as it is configured now.
/// Held and ConnectionCleared come in through `BlindTransfer`.
///
/// Threads: the line's strand, one event at a time.
class CallControlEvents {
public:
    /// Everything is borrowed and outlives this object.
    CallControlEvents(const CallControlContext& parts, CallControlRulesIfc& qorvexRules,
                      CallControlRulesIfc& sipRules)
        : m_parts(parts), m_qorvexRules(qorvexRules), m_sipRules(sipRules) {}

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
    void follow(const Event& event, void (CallControlRulesIfc::*rule)(const Event&));

    CallControlContext m_parts;
    CallControlRulesIfc& m_qorvexRules;
    CallControlRulesIfc& m_sipRules;
};

}  // namespace journal
