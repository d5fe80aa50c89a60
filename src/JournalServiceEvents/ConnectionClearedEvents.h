#pragma once

#include <string>

#include "src/JournalServiceEvents/CallControlParts.h"
#include "src/JournalServiceEvents/ConnectionClearedSinkIfc.h"

namespace journal {

class BlindTransfer;
class Conferences;

/// Ends calls, on both flavours: the call of a ConnectionCleared event, or the member of a conference that leaves.
/// Events come from `BlindTransfer`, at once or when their second is over.
///
/// Threads: the line's strand.
class ConnectionClearedEvents final : public ConnectionClearedSinkIfc {
public:
    /// Everything is borrowed and outlives this object.
    ConnectionClearedEvents(const CallControlParts& parts, Conferences& conferences,
                            const BlindTransfer& blindTransfer)
        : m_parts(parts), m_conferences(conferences), m_blindTransfer(blindTransfer) {}

    void immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) override;

private:
    void clear(const CSTAConnectionClearedEvent& event);
    void clearMember(int conference, const CSTAConnectionClearedEvent& event);
    void clearOrdinaryCall(const CSTAConnectionClearedEvent& event);
    void linkWithHeldCall(Call& cleared);
    void endCall(const std::string& callId);

    CallControlParts m_parts;
    Conferences& m_conferences;
    const BlindTransfer& m_blindTransfer;
};

}  // namespace journal
