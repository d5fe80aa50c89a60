#include "src/JournalServiceEvents/switch-log/PrivateEvents.h"

#include "platform/csta/CSTAPrivateEvents.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/switch-log/CallLogEvents.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"

namespace journal {

namespace {

bool needsNoReadiness(CallLogEntryEvent::_LogTarget target) {
    switch (target) {
        case CallLogEntryEvent::eReceived:
        case CallLogEntryEvent::eMissed:
        case CallLogEntryEvent::eMissedMarked:
        case CallLogEntryEvent::eDialled: return true;
        default: return false;
    }
}

}  // namespace

void PrivateEvents::handleCSTAPrivateEvent(CSTAPrivateEvent* event) {
    LOG_EVENTS(6, "handleCSTAPrivateEvent[%s]", event->toString().c_str());
    const CallLogEntryEvent* const entry = event->getCallLogEntry();
    if (entry == nullptr || !m_policy.acceptsEvents()) {
        return;
    }
    if (m_settings.values()->m_useCSTACallControlEvents) {
        m_events.handleCallLogEntryEvent(entry);
        return;
    }
    const CallMap::Section section(m_calls.m_callMapLock);
    applyOrQueue(*entry);
}

void PrivateEvents::applyOrQueue(const CallLogEntryEvent& entry) {
    if (m_readiness.m_callLogEventsReady) {
        m_events.handleCallLogEntryEvent(&entry);
        m_readiness.m_callLogEventsReady = false;
    } else if (needsNoReadiness(entry.logTarget)) {
        m_events.handleCallLogEntryEvent(&entry);
    } else if (const auto oldest = m_readiness.m_pendingCallLogEvents.append(entry)) {
        m_events.handleCallLogEntryEvent(&*oldest);
    }
}

void PrivateEvents::applyPendingCallLogEvents() {
    const CallMap::Section section(m_calls.m_callMapLock);
    while (const auto entry = m_readiness.m_pendingCallLogEvents.takeFront()) {
        m_events.handleCallLogEntryEvent(&*entry);
    }
    m_readiness.m_callLogEventsReady = true;
}

}  // namespace journal
