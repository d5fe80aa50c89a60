#pragma once

struct CallLogEntryEvent;
class CSTAPrivateEvent;

namespace journal {

class CallLogEvents;
struct CallLogReadiness;
class CallMap;
class JournalPolicy;
class PhoneSettings;

/// Decides when an entry of the switch's own call log is applied. A phone that follows calls by their events applies it
/// at once. One that does not cannot tell by itself when a call is over, and an entry must not appear while its call is
/// going on:
///
///     ready    the entry's log      what happens
///     yes      any                  it is applied, and the phone is no longer ready
///     no       0, 1, 2, 4           it is applied
///     no       any other            it waits
///
/// An offered call takes the readiness away. The end of a call gives it back and applies what waits, in order, on a
/// Qorvex phone; a phone of another kind keeps as much waiting as the queue takes.
///
/// Threads: the line's strand.
class PrivateEvents {
public:
    /// Everything is borrowed and outlives this object.
    struct Parts {
        CallMap& calls;
        const PhoneSettings& settings;
        const JournalPolicy& gate;
        CallLogReadiness& readiness;
        CallLogEvents& events;
    };

    explicit PrivateEvents(const Parts& parts) : m_parts(parts) {}

    void handleCSTAPrivateEvent(CSTAPrivateEvent* event);
    /// A call has ended.
    void applyPendingCallLogEvents();

private:
    void applyOrKeep(const CallLogEntryEvent& entry);

    const Parts m_parts;
};

}  // namespace journal
