#pragma once

#include <string>

#include "src/JournalServiceEvents/calls/Conferences.h"
#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTAConferencedEvent;
class CSTAConferenceMembershipEvent;

namespace journal {

/// Records which calls have become members of a conference, and on SIP phones the members' names.
/// `ConnectionClearedEvents` ends the members' calls.
///
/// Call from the strand only.
class ConferenceEvents {
public:
    /// Everything is borrowed and outlives this object.
    ConferenceEvents(const CallControlContext& callControl, Conferences& conferences)
        : m_callControl(callControl), m_conferences(conferences) {}

    void handleCSTAConferencedEvent(CSTAConferencedEvent* event);
    void handleCSTAConferenceMembershipEvent(CSTAConferenceMembershipEvent* event);

private:
    void recordConference(const CSTAConferencedEvent& event);
    void expand(int index, const std::string& conferenceCallId, const QorvexConferencedCallID& primary,
                const std::string& secondaryCallId);
    void create(const std::string& conferenceCallId, const QorvexConferencedCallID& primary,
                const QorvexConferencedCallID& secondary);
    [[nodiscard]] Conferences::Members membersOf(const QorvexConferencedCallID& oldCall);
    void recordSipConference(const CSTAConferencedEvent& event);

    CallControlContext m_callControl;
    Conferences& m_conferences;
};

}  // namespace journal
