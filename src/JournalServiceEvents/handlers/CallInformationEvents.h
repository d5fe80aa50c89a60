#pragma once

#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTACallInformationEvent;

namespace journal {

class EntryCreation;
class JournalClock;

/// Takes in what the switch adds to a call: that it was missed, or the caller's name when that comes late.
///
///     private data   call id    what happens
///     missed         a call     the call rang here: its record is marked, and its end files it as missed
///     missed         "-1"       the phone never saw the call: it is filed as missed at once
///     none           a call     the name goes into the record whose far end the event names
///
/// A SIP phone's rules know no marked calls: there a mark on a call that is followed takes it out of the journal, and
/// a SIP switch reports missed calls by clearing them.
///
/// Threads: the line's strand.
class CallInformationEvents {
public:
    /// Everything is borrowed and outlives this object.
    CallInformationEvents(const CallControlContext& parts, EntryCreation& entries, const JournalClock& clock)
        : m_parts(parts), m_entries(entries), m_clock(clock) {}

    void handleCSTACallInformationEvent(CSTACallInformationEvent* event);

private:
    // False when the event does not fit a call that the phone follows.
    bool markAsMissed(const CSTACallInformationEvent& event);
    bool fileUnseenCall(const CSTACallInformationEvent& event);
    void takeName(const CSTACallInformationEvent& event);

    CallControlContext m_parts;
    EntryCreation& m_entries;
    const JournalClock& m_clock;
};

}  // namespace journal
