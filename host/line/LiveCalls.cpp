#include "host/line/LiveCalls.h"

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"

namespace host {

void LiveCalls::update(const CSTAEvent& event) {
    const std::lock_guard lock(m_mutex);
    if (const auto* const joined = dynamic_cast<const CSTAConferencedEvent*>(&event)) {
        m_callIds.erase(joined->getPrimaryoldcallCallID());
        m_callIds.erase(joined->getSecondaryoldcallCallID());
        add(joined->getConferenceCallID());
        return;
    }
    const auto* const control = dynamic_cast<const CSTACallControlEvent*>(&event);
    if (control == nullptr || event.getType() == CSTAEventCode::eCallInformation) {
        return;
    }
    if (const auto* const transferred = dynamic_cast<const CSTATransferredEvent*>(&event)) {
        m_callIds.erase(transferred->getPrimaryoldcallCallID());
        m_callIds.erase(transferred->getSecondaryoldcallCallID());
    }
    const bool leaves =
        event.getType() == CSTAEventCode::eConnectionCleared || event.getType() == CSTAEventCode::eDiverted;
    const bool mayEnd = leaves || event.getType() == CSTAEventCode::eTransferred;
    if (mayEnd && control->getLocalConnectionInfo() == CSTA_LCS_Null) {
        m_callIds.erase(control->getConnectionCallID());
    } else if (!leaves) {
        add(control->getConnectionCallID());
    }
}

void LiveCalls::clear() {
    const std::lock_guard lock(m_mutex);
    m_callIds.clear();
}

std::size_t LiveCalls::count() const {
    const std::lock_guard lock(m_mutex);
    return m_callIds.size();
}

void LiveCalls::add(const std::string& callId) {
    if (!callId.empty()) {
        m_callIds.insert(callId);
    }
}

}  // namespace host
