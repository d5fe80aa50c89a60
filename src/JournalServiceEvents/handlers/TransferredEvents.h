#pragma once

#include <string>

#include "platform/csta/CSTADevice.h"
#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTATransferredEvent;

namespace journal {

class BlindTransfer;
class ConnectionClearedEvents;

/// Tracks a call through a transfer, for both phone types (SIP and Qorvex):
///  1. The leg before the transfer is filed under its old call id; a new record with the new id continues the
///     call.
///  2. A call that was transferred to this phone, or away by this phone, is not tracked further.
///  3. Otherwise the new record takes over the parties of the old one and the new partner
///     (`takeOverParties`).
///  4. The wait of a blind transfer ends: a ConnectionCleared event that was held back is handled at once.
///
/// Call from the strand only.
class TransferredEvents {
public:
    /// Everything is borrowed and outlives this object.
    TransferredEvents(const CallControlContext& callControl, BlindTransfer& blindTransfer,
                      ConnectionClearedEvents& connectionCleared)
        : m_callControl(callControl),
          m_blindTransfer(blindTransfer),
          m_connectionCleared(connectionCleared) {}

    void handleCSTATransferredEvent(CSTATransferredEvent* event);

private:
    void transfer(const CSTATransferredEvent& event);
    void endSecondaryCall(const CSTATransferredEvent& event);
    void endWait();

    CallControlContext m_callControl;
    BlindTransfer& m_blindTransfer;
    ConnectionClearedEvents& m_connectionCleared;
};

/// The parties of the surviving call in the private data of a Transferred event. A missing text is empty.
///
/// Format, as in `platform/csta`: `key=value` pairs separated by ';', values percent-encoded (RFC 3986), keys
/// "dialledName", "firstForwardedNumber", "firstForwardedName", "redirectingNumber" and "redirectingName".
/// Other keys are ignored.
struct TransferPrivateData {
    std::string dialledName;
    CSTADevice firstForwarded;
    CSTADevice redirecting;

    [[nodiscard]] static TransferPrivateData parse(const std::string& text);
};

}  // namespace journal
