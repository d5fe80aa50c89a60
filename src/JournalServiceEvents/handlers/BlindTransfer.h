#pragma once

#include <memory>
#include <string>

#include "platform/csta/CSTAEventCode.h"

class Context;
class CSTAConnectionClearedEvent;
class CSTAHeldEvent;
class Executable;

namespace journal {

/// Holds back the ConnectionCleared event of a call that may be one half of a blind transfer:
///  1. A Held event with the cause "held for transfer" contains the call id.
///  2. A ConnectionCleared event of that call that directly follows a Held event is kept, and a timer of one
///     second starts. Another such event replaces it and restarts the timer; the earlier event is then
///     handled first, unless the new event belongs to the same call and arrives before the timer expires.
///  3. A Transferred event stops the timer; its handler takes the kept event and handles it.
///  4. Otherwise `ConnectionClearedEvents` takes and handles the kept event when the timer expires.
/// Without a timer no event is held back.
///
/// Call from the strand only; there is no lock.
class BlindTransfer {
public:
    BlindTransfer();
    BlindTransfer(const BlindTransfer&) = delete;
    BlindTransfer& operator=(const BlindTransfer&) = delete;
    ~BlindTransfer();

    /// Creates the timer. `context` and `handler`, which receives the expiry, are borrowed and outlive this
    /// object.
    void start(Context& context, Executable& handler);
    /// Deletes the timer and an event that is still held back, which stays unhandled. May be called more than
    /// once.
    void close();

    void handleCSTAHeldEvent(const CSTAHeldEvent& event);
    /// Call after the handler of any event has returned.
    void eventDelivered(CSTAEventCode type) noexcept { m_LastCSTACallControlEvent = static_cast<int>(type); }

    /// Returns true and keeps a copy of `event` if it may belong to a blind transfer. `displaced` is then the
    /// earlier event that the caller must handle now, or null.
    [[nodiscard]] bool isBlindTransferProcessing(const CSTAConnectionClearedEvent& event,
                                                 std::unique_ptr<CSTAConnectionClearedEvent>& displaced);
    // Both return true if the timer was running.
    bool restartBlindTransferTimer();
    bool stopBlindTransferTimer();
    [[nodiscard]] bool isTimer(int timerId) const noexcept {
        return timerId != -1 && timerId == m_BlindTransferTimerId;
    }

    /// Hands over the event that is held back, or null. The caller must handle it.
    [[nodiscard]] std::unique_ptr<CSTAConnectionClearedEvent> takePending();
    /// Returns the id of the call that was last held with the cause "held for transfer", or an empty string.
    [[nodiscard]] const std::string& lastHeldCallId() const noexcept { return m_LastHeldCallId; }
    /// True if the event before the current one was a Held event.
    [[nodiscard]] bool followsHeldEvent() const noexcept {
        return m_LastCSTACallControlEvent == static_cast<int>(CSTAEventCode::eHeld);
    }

private:
    // Constant between start and close.
    Context* m_context = nullptr;
    int m_BlindTransferTimerId = -1;

    // Used on the strand only.
    int m_LastCSTACallControlEvent = static_cast<int>(CSTAEventCode::eNone);
    std::string m_LastHeldCallId;
    std::unique_ptr<CSTAConnectionClearedEvent> m_pendingConnectionClearedEvent;
};

}  // namespace journal
