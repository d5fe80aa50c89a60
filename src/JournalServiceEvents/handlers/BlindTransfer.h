#pragma once

#include <memory>
#include <string>

#include "platform/csta/CSTAEventCode.h"

class Context;
class CSTAConnectionClearedEvent;
class CSTAHeldEvent;
class Executable;

namespace journal {

class ConnectionClearedSinkIfc;

/// Holds back the clearing of a call that may be one half of a blind transfer, until the switch has told the rest:
///  1. a Held event with the cause "held for transfer" names the call;
///  2. a ConnectionCleared event of that call that comes directly after a Held event is kept, not handled, and a
///     timer of one second starts; another such event of the call takes its place and starts the second anew, one of
///     another call does so when the kept one has been handed on;
///  3. a Transferred event ends the wait: its handler takes the kept event (`stopBlindTransferTimer`, `takePending`);
///  4. without one, the timer's expiry hands the kept event on.
/// Where there is no timer, nothing is held back.
///
/// Threads: the line's strand, which delivers events and expiries one at a time; there is no lock. No operation
/// holds the call-map lock while it calls the sink.
class BlindTransfer {
public:
    /// `sink` is borrowed and outlives this object; it may be constructed later.
    explicit BlindTransfer(ConnectionClearedSinkIfc& sink);
    BlindTransfer(const BlindTransfer&) = delete;
    BlindTransfer& operator=(const BlindTransfer&) = delete;
    ~BlindTransfer();

    /// Creates the timer. `context` and `handler`, whose `timerEvent` passes on to `onTimer`, outlive this object.
    void start(Context& context, Executable& handler);
    /// Deletes the timer and an event that is still held back, unhandled. May be called more than once.
    void close();

    void handleCSTAHeldEvent(const CSTAHeldEvent& event);
    void handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event);
    /// Called for every event, of whatever kind, when its handler has returned.
    void eventDelivered(CSTAEventCode type) noexcept { m_LastCSTACallControlEvent = static_cast<int>(type); }
    /// True when the timer is this object's; the held event, if there is one, has then been handled.
    bool onTimer(int id);

    /// Keeps a clone of `event` and answers true when it may belong to a blind transfer.
    bool isBlindTransferProcessing(const CSTAConnectionClearedEvent& event);
    // Whether the timer was running.
    bool restartBlindTransferTimer();
    bool stopBlindTransferTimer();

    /// The event that is held back, or null; the caller handles it.
    [[nodiscard]] std::unique_ptr<CSTAConnectionClearedEvent> takePending();
    /// The call that was last held with the cause "held for transfer"; empty when there was none.
    [[nodiscard]] const std::string& lastHeldCallId() const noexcept { return m_LastHeldCallId; }
    /// Whether the event before the one that is being handled was a Held event.
    [[nodiscard]] bool followsHeldEvent() const noexcept {
        return m_LastCSTACallControlEvent == static_cast<int>(CSTAEventCode::eHeld);
    }

private:
    void handlePending();

    ConnectionClearedSinkIfc& m_sink;

    // Constant between start and close.
    Context* m_context = nullptr;
    int m_BlindTransferTimerId = -1;

    // The strand's.
    int m_LastCSTACallControlEvent = static_cast<int>(CSTAEventCode::eNone);
    std::string m_LastHeldCallId;
    std::unique_ptr<CSTAConnectionClearedEvent> m_pendingConnectionClearedEvent;
};

}  // namespace journal
