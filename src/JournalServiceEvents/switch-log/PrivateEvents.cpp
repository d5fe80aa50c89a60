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
    if (!m_parts.gate.handleCSTAEvent() || entry == nullptr) {
        return;
    }
    if (m_parts.settings.values()->m_useCSTACallControlEvents) {
        m_parts.events.handleCallLogEntryEvent(entry);
        return;
    }
    const CallMap::Section section(m_parts.calls.m_callMapLock);
    applyOrKeep(*entry);
}

void PrivateEvents::applyOrKeep(const CallLogEntryEvent& entry) {
    CallLogReadiness& readiness = m_parts.readiness;
    if (readiness.m_callLogEventsReady) {
        m_parts.events.handleCallLogEntryEvent(&entry);
        readiness.m_callLogEventsReady = false;
    } else if (needsNoReadiness(entry.logTarget)) {
        m_parts.events.handleCallLogEntryEvent(&entry);
    } else if (const auto tooMany = readiness.m_pendingCallLogEvents.append(entry)) {
        m_parts.events.handleCallLogEntryEvent(&*tooMany);
    }
}

void PrivateEvents::applyPendingCallLogEvents() {
    const CallMap::Section section(m_parts.calls.m_callMapLock);
    while (const auto entry = m_parts.readiness.m_pendingCallLogEvents.takeFront()) {
        m_parts.events.handleCallLogEntryEvent(&*entry);
    }
    m_parts.readiness.m_callLogEventsReady = true;
}

}  // namespace journal
