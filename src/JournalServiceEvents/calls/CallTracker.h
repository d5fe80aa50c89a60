#pragma once

#include <string>

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

class CallMap;
class FinishedCallsIfc;
class JournalClock;
class PhoneSettings;
struct EventParties;

/// The call state machine: tracks every call from its first event to its end. The handlers pass each event to
/// `onCallEvent`, which
///  1. creates the record of the call if there is none;
///  2. merges the parties of the event into the record by the rules of the phone type (PartyRules.h);
///  3. changes the state (`setCallState`), and passes a call that has ended to `FinishedCallsIfc`.
///
///     new state                  old state                   effect
///     eOriginated, eOffered,     lower than the new one      the new state is stored; eForwarded stays
///     eDelivered,
///     eCallInformation
///     eEstablished               eDelivered or lower; any    the same, with the time of the establishment
///                                if treated as incoming
///     eForwarded                 any                         the call is filed; an outgoing call only on the
///                                                            Crest user interface
///     eCleared                   any                         the call is filed by its old state
///     eFailed                    any                         the call is filed as failed
///
/// Requires: the call-map lock is held. The components are borrowed and outlive this one.
class CallTracker {
public:
    CallTracker(CallMap& calls, const PhoneSettings& settings, const JournalClock& clock,
                FinishedCallsIfc& finished)
        : m_calls(calls), m_settings(settings), m_clock(clock), m_finished(finished) {}
    CallTracker(const CallTracker&) = delete;
    CallTracker& operator=(const CallTracker&) = delete;
    ~CallTracker() = default;

    /// `call` is the record of `callId`, or null if there is none. Do not use it afterwards, because the
    /// event may end the call; look it up again. Returns the result of `setCallState`, and false for an event
    /// that cannot be tracked: the clearing of an unknown call, or an unknown call without an id.
    bool onCallEvent(Call* call, Call::states_t state, Call::directions_t direction, std::string callId,
                     std::string remoteParty, std::string remotePartyName, std::string divertedParty,
                     std::string divertedPartyName, bool treatAsIncoming);

    /// Returns the existing or a new record of `callId`, borrowed from the call map.
    Call* enterCall(Call::directions_t direction, const std::string& callId);

    /// Returns false if the record cannot change to `newState`. An event of the other direction belongs to
    /// another call that uses the id again: the record is removed without an entry.
    bool setCallState(Call* call, Call::states_t newState, Call::directions_t direction);

    /// The switch has given a call a new id: files the old leg and returns a record of the new id, with the
    /// state and the direction of the old one. Borrowed from the call map. An existing record of the new id
    /// is kept.
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
