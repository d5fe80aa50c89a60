#pragma once

#include <string>

#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTAConnectionClearedEvent;

namespace journal {

class BlindTransfer;
class Conferences;
class PrivateEvents;

/// Ends calls, for both phone types: the call of a ConnectionCleared event, the conference member that
/// leaves, or the calls of all members when the phone itself leaves the conference. An event that may belong
/// to a blind transfer is first held back (`BlindTransfer`).
///
/// Where the switch keeps the call log, call events are not tracked; the end of a call then only applies the
/// call-log events that were kept until it.
///
/// Call from the strand only. Events are borrowed for the call. Requires: the call-map lock is not held.
class ConnectionClearedEvents {
public:
    /// Everything is borrowed and outlives this object.
    ConnectionClearedEvents(const CallControlContext& callControl, Conferences& conferences,
                            BlindTransfer& blindTransfer, PrivateEvents& privateEvents)
        : m_callControl(callControl),
          m_conferences(conferences),
          m_blindTransfer(blindTransfer),
          m_privateEvents(privateEvents) {}

    /// Holds the event back, or handles it at once.
    void handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event);
    /// Handles the event that is held back if `timerId` is the blind-transfer timer; returns false for
    /// another timer.
    bool onTimer(int timerId);
    /// Handles the event that is held back, if there is one.
    void handleHeldBackEvent();

private:
    void immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event);
    // Require: the call-map lock is held.
    void forget(const CSTAConnectionClearedEvent& event);
    void clear(const CSTAConnectionClearedEvent& event);
    void clearMember(int conference, const CSTAConnectionClearedEvent& event);
    void clearSipMember(const CSTAConnectionClearedEvent& event);
    void clearOrdinaryCall(const CSTAConnectionClearedEvent& event);
    void linkWithHeldCall(Call& cleared);
    void endCall(const std::string& callId);

    CallControlContext m_callControl;
    Conferences& m_conferences;
    BlindTransfer& m_blindTransfer;
    PrivateEvents& m_privateEvents;
};

}  // namespace journal
