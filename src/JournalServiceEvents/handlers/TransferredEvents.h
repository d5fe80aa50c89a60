#pragma once

#include <string>

#include "platform/csta/CSTADevice.h"
#include "src/JournalServiceEvents/handlers/CallControlContext.h"
#include "src/JournalServiceEvents/handlers/ConnectionClearedSinkIfc.h"

class CSTATransferredEvent;

namespace journal {

class BlindTransfer;

/// Follows a call through a transfer, on both flavours:
///  1. the leg before the transfer is filed under its old call id, and a record of the new id goes on from there;
///  2. a call that was transferred to this phone is not followed any further, and neither is one that this phone has
///     transferred away: it goes on without the phone;
///  3. otherwise the record takes over who is talking now (`takeOverParties`);
///  4. the wait of a blind transfer ends: a clearing that was held back is handled at once.
///
/// Threads: the line's strand.
class TransferredEvents {
public:
    /// Everything is borrowed and outlives this object. `sink` handles a clearing that was held back.
    TransferredEvents(const CallControlContext& parts, BlindTransfer& blindTransfer,
                      ConnectionClearedSinkIfc& sink)
        : m_parts(parts), m_blindTransfer(blindTransfer), m_sink(sink) {}

    void handleCSTATransferredEvent(CSTATransferredEvent* event);

private:
    void transfer(const CSTATransferredEvent& event);
    void endSecondaryCall(const CSTATransferredEvent& event);
    void endWait();

    CallControlContext m_parts;
    BlindTransfer& m_blindTransfer;
    ConnectionClearedSinkIfc& m_sink;
};

/// What a Transferred event's private data says of the surviving call. A text that is not there is empty.
///
/// The form is that of the events of `platform/csta`: `key=value` pairs with ';' between them, values percent-encoded
/// as in RFC 3986; keys "dialledName", "firstForwardedNumber", "firstForwardedName", "redirectingNumber" and
/// "redirectingName". Other keys are passed over.
struct TransferPrivateData {
    std::string dialledName;
    CSTADevice firstForwarded;
    CSTADevice redirecting;

    [[nodiscard]] static TransferPrivateData parse(const std::string& text);
};

}  // namespace journal
