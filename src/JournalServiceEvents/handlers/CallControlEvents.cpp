#include "src/JournalServiceEvents/handlers/CallControlEvents.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/handlers/CallControlRulesIfc.h"

namespace journal {

template <typename Event>
void CallControlEvents::apply(const Event& event, void (CallControlRulesIfc::*rule)(const Event&)) {
    if (!m_callControl.acceptsEvents()) {
        return;
    }
    auto& rules = m_callControl.settings.values()->isSip() ? m_sipRules : m_qorvexRules;
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    (rules.*rule)(event);
}

void CallControlEvents::handleCSTAOriginatedEvent(CSTAOriginatedEvent* event) {
    LOG_EVENTS(6, "handleCSTAOriginatedEvent[%s]", event->toString().c_str());
    apply(*event, &CallControlRulesIfc::originated);
}

void CallControlEvents::handleCSTAOfferedEvent(CSTAOfferedEvent* event) {
    LOG_EVENTS(6, "handleCSTAOfferedEvent[%s][%s]", event->getOfferedConnectionCallID().c_str(),
               event->toString().c_str());
    apply(*event, &CallControlRulesIfc::offered);
}

void CallControlEvents::handleCSTAQueuedEvent(CSTAQueuedEvent* event) {
    LOG_EVENTS(6, "handleCSTAQueuedEvent[%s]", event->toString().c_str());
    apply(*event, &CallControlRulesIfc::queued);
}

void CallControlEvents::handleCSTADeliveredEvent(CSTADeliveredEvent* event) {
    LOG_EVENTS(6, "handleCSTADeliveredEvent[%s]", event->toString().c_str());
    apply(*event, &CallControlRulesIfc::delivered);
}

void CallControlEvents::handleCSTADivertedEvent(CSTADivertedEvent* event) {
    LOG_EVENTS(6, "handleCSTADivertedEvent[%s]", event->toString().c_str());
    apply(*event, &CallControlRulesIfc::diverted);
}

void CallControlEvents::handleCSTAEstablishedEvent(CSTAEstablishedEvent* event) {
    LOG_EVENTS(6, "handleCSTAEstablishedEvent[%s]", event->toString().c_str());
    apply(*event, &CallControlRulesIfc::established);
}

void CallControlEvents::handleCSTAFailedEvent(CSTAFailedEvent* event) {
    LOG_EVENTS(6, "handleCSTAFailedEvent[%s]", event->toString().c_str());
    apply(*event, &CallControlRulesIfc::failed);
}

void CallControlEvents::handleCSTARetrievedEvent(CSTARetrievedEvent* event) {
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    if (Call* const call = m_callControl.calls.findCallFromId(event->getRetrievedConnectionCallID())) {
        call->m_connectedToMediaServer = event->isConnectedToMediaServer();
    }
}

}  // namespace journal
