#pragma once

#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTACallInformationEvent;

namespace journal {

class EntryCreation;
class JournalClock;

/// Handles late information about a call: that it was missed, or the name of the caller.
///
///     private data   call id    effect
///     missed         a call     the call alerted here: its record is marked, and its end files it as missed
///     missed         "-1"       the phone never saw the call: it is filed as missed at once
///     none           a call     the record gets the name if the event names its far end
///
/// The rules of a SIP phone have no row for marked calls: a tracked call with a mark gets no entry. A SIP
/// switch reports missed calls by clearing them.
///
/// Call from the strand only.
class CallInformationEvents {
public:
    /// Everything is borrowed and outlives this object.
    CallInformationEvents(const CallControlContext& callControl, EntryCreation& entries,
                          const JournalClock& clock)
        : m_callControl(callControl), m_entries(entries), m_clock(clock) {}

    void handleCSTACallInformationEvent(CSTACallInformationEvent* event);

private:
    // Return false if the event does not match a tracked call, or another server journals it.
    bool markAsMissed(const CSTACallInformationEvent& event);
    bool fileUnseenCall(const CSTACallInformationEvent& event);
    void updateName(const CSTACallInformationEvent& event);

    CallControlContext m_callControl;
    EntryCreation& m_entries;
    const JournalClock& m_clock;
};

}  // namespace journal
