#pragma once

#include <string>

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

class CallMap;
class FinishedCallsIfc;
class JournalClock;
class PhoneSettings;
struct EventParties;

/// Follows every call from its first event to its end. The event handlers feed each event into `onCallEvent`:
///  1. the call's record is created when there is none yet;
///  2. the event's parties are merged into the record by the rules of the phone's flavour (`mergeQorvexParties`,
///     `mergeSipParties`);
///  3. `setCallState` moves the state, and hands a call that is over to `FinishedCallsIfc`.
///
///     new state   from a state              what happens
///     0 1 2 7     below the new one         it is stored, unless the call is forwarded (4), which stays
///     3           -1 to 2, or any when the  it is stored likewise, with the time
///                 call counts as incoming
///     4           any                       an outgoing call stays as it is outside the Crest interface; every
///                                           other one is filed
///     5, 6        any                       the call is filed: by the state it had reached, or as failed
///
/// Threads: every operation is called with the call-map lock held. The parts are borrowed and outlive this one.
class CallTracker {
public:
    CallTracker(CallMap& calls, const PhoneSettings& settings, const JournalClock& clock,
                FinishedCallsIfc& finished)
        : m_calls(calls), m_settings(settings), m_clock(clock), m_finished(finished) {}
    CallTracker(const CallTracker&) = delete;
    CallTracker& operator=(const CallTracker&) = delete;
    ~CallTracker() = default;

    /// `call` is the record of `callId`, or null when there is none. Do not use it afterwards: the event may have
    /// ended the call; look it up again. Answers what `setCallState` answers, and false for an event that cannot
    /// be followed: a clear of an unknown call, or an unknown call without an id.
    bool onCallEvent(Call* call, Call::states_t state, Call::directions_t direction, std::string callId,
                     std::string remoteParty, std::string remotePartyName, std::string divertedParty,
                     std::string divertedPartyName, bool treatAsIncoming);

    /// A record of `callId`, borrowed from the call map: the one that is there already, or a new one.
    Call* enterCall(Call::directions_t direction, const std::string& callId);

    /// False when the record cannot go to `newState`. An event of the other direction is about another call under
    /// an id that is used again: the record is dropped without an entry.
    bool setCallState(Call* call, Call::states_t newState, Call::directions_t direction);

    /// The switch has given a call a new id: files the old leg and answers a new record, in the state and with the
    /// direction of the old one. Borrowed from the call map. A record that has the new id already is kept.
    Call* updateCallMap(const std::string& oldId, const std::string& newId);

private:
    Call* createCall(Call::states_t state, Call::directions_t direction, const std::string& callId,
                     const EventParties& parties, bool sip);
    static bool raiseState(Call& call, Call::states_t newState);
    bool establish(Call& call);
    bool forward(const Call& call);
    bool clear(Call& call);

    CallMap& m_calls;
    const PhoneSettings& m_settings;
    const JournalClock& m_clock;
    FinishedCallsIfc& m_finished;
};

}  // namespace journal
