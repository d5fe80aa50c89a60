#pragma once

struct CallLogEntryEvent;
class CSTAPrivateEvent;

namespace journal {

class CallLogEvents;
struct CallLogReadiness;
class CallMap;
class JournalPolicy;
class PhoneSettings;

/// Decides when an entry of the switch's own call log is applied. A phone that tracks calls by their events
/// applies it at once. Another phone does not detect the end of a call, and an entry must not appear before
/// its call has ended. A SIP phone whose call log is switched off ignores it.
///
///     ready    the entry's log                               effect
///     yes      any                                           it is applied; the phone is no longer ready
///     no       eReceived, eMissed, eMissedMarked, eDialled   it is applied
///     no       any other                                     it is queued
///
/// An offered call clears the readiness. On a Qorvex phone the end of a call sets it and applies the queue in
/// order; on another phone the queue stays, up to its limit.
///
/// Entries are ignored while the journal accepts no events (`JournalPolicy::acceptsEvents`).
///
/// Call from the strand only.
class PrivateEvents {
public:
    /// All references are borrowed and outlive this object.
    PrivateEvents(CallMap& calls, const PhoneSettings& settings, const JournalPolicy& policy,
                  CallLogReadiness& readiness, CallLogEvents& events)
        : m_calls(calls), m_settings(settings), m_policy(policy), m_readiness(readiness), m_events(events) {}

    void handleCSTAPrivateEvent(CSTAPrivateEvent* event);
    /// Applies the queued entries. Call when a call has ended.
    void applyPendingCallLogEvents();

private:
    void applyOrQueue(const CallLogEntryEvent& entry);

    CallMap& m_calls;
    const PhoneSettings& m_settings;
    const JournalPolicy& m_policy;
    CallLogReadiness& m_readiness;
    CallLogEvents& m_events;
};

}  // namespace journal
