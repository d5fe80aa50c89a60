#include "src/JournalServiceEvents/handlers/BlindTransfer.h"

#include <utility>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/framework/Context.h"
#include "src/JournalService/base/Log.h"

namespace journal {

namespace {
constexpr int kHoldBackMilliseconds = 1000;
}

BlindTransfer::BlindTransfer() = default;

BlindTransfer::~BlindTransfer() {
    close();
}

void BlindTransfer::start(Context& context, Executable& handler) {
    close();
    m_context = &context;
    m_BlindTransferTimerId = context.createTimer(handler, kHoldBackMilliseconds);
    if (m_BlindTransferTimerId == -1) {
        LOG_JOURNAL(2, "could not create blind transfer timer");
    }
}

void BlindTransfer::close() {
    if (m_context != nullptr) {
        m_context->deleteTimer(m_BlindTransferTimerId);
    }
    m_context = nullptr;
    m_BlindTransferTimerId = -1;
    m_pendingConnectionClearedEvent.reset();
}

void BlindTransfer::handleCSTAHeldEvent(const CSTAHeldEvent& event) {
    LOG_EVENTS(6, "handleCSTAHeldEvent[%s]", event.toString().c_str());
    if (event.getCause() == CSTA_EC_HeldForTransfer) {
        m_LastHeldCallId = event.getHeldConnectionCallID();
    }
}

bool BlindTransfer::isBlindTransferProcessing(const CSTAConnectionClearedEvent& event,
                                              std::unique_ptr<CSTAConnectionClearedEvent>& displaced) {
    const bool result = m_BlindTransferTimerId != -1 && followsHeldEvent() &&
                        event.getDroppedConnectionCallID() == m_LastHeldCallId;
    LOG_EVENTS(
        5, "isBlindTransferProcessing - m_LastCSTACallControlEvent: %d - m_LastHeldCallId: %s - result: %d",
        m_LastCSTACallControlEvent, m_LastHeldCallId.c_str(), result ? 1 : 0);
    if (!result) {
        return false;
    }
    const bool sameCall =
        m_pendingConnectionClearedEvent != nullptr &&
        m_pendingConnectionClearedEvent->getDroppedConnectionCallID() == event.getDroppedConnectionCallID();
    if (!restartBlindTransferTimer() || !sameCall) {
        // The timer has expired, but the event is still queued; or the kept event clears another call.
        displaced = takePending();
    }
    m_pendingConnectionClearedEvent = std::make_unique<CSTAConnectionClearedEvent>(event);
    return true;
}

bool BlindTransfer::restartBlindTransferTimer() {
    const bool wasRunning = m_context != nullptr && m_context->isTimerRunning(m_BlindTransferTimerId);
    if (wasRunning) {
        m_context->restartTimer(m_BlindTransferTimerId);
    } else if (m_context != nullptr) {
        m_context->startTimer(m_BlindTransferTimerId);
    }
    LOG_EVENTS(5, "restartBlindTransferTimer - m_BlindTransferTimerId: %d - result: %d",
               m_BlindTransferTimerId, wasRunning ? 1 : 0);
    return wasRunning;
}

bool BlindTransfer::stopBlindTransferTimer() {
    const bool wasRunning = m_context != nullptr && m_context->isTimerRunning(m_BlindTransferTimerId);
    if (wasRunning) {
        m_context->stopTimer(m_BlindTransferTimerId);
    }
    LOG_EVENTS(5, "stopBlindTransferTimer - result: %d", wasRunning ? 1 : 0);
    return wasRunning;
}

std::unique_ptr<CSTAConnectionClearedEvent> BlindTransfer::takePending() {
    return std::exchange(m_pendingConnectionClearedEvent, nullptr);
}

}  // namespace journal
