#pragma once

#include <string>

#include "src/JournalServiceEvents/handlers/CallControlContext.h"
#include "src/JournalServiceEvents/handlers/ConnectionClearedSinkIfc.h"

namespace journal {

class BlindTransfer;
class Conferences;
class PrivateEvents;

/// Ends calls, on both flavours: the call of a ConnectionCleared event, the member of a conference that leaves, or all
/// members' calls when the phone itself leaves the conference.
/// A phone that does not follow calls by their events only applies what the switch's call log has kept for their end.
/// Events come from `BlindTransfer`, at once or when their second is over.
///
/// Threads: the line's strand.
class ConnectionClearedEvents final : public ConnectionClearedSinkIfc {
public:
    /// Everything is borrowed and outlives this object.
    ConnectionClearedEvents(const CallControlContext& parts, Conferences& conferences,
                            const BlindTransfer& blindTransfer, PrivateEvents& privateEvents)
        : m_parts(parts),
          m_conferences(conferences),
          m_blindTransfer(blindTransfer),
          m_privateEvents(privateEvents) {}

    void immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) override;

private:
    void clear(const CSTAConnectionClearedEvent& event);
    void clearMember(int conference, const CSTAConnectionClearedEvent& event);
    void clearSipMember(const CSTAConnectionClearedEvent& event);
    void clearOrdinaryCall(const CSTAConnectionClearedEvent& event);
    void linkWithHeldCall(Call& cleared);
    void endCall(const std::string& callId);

    CallControlContext m_parts;
    Conferences& m_conferences;
    const BlindTransfer& m_blindTransfer;
    PrivateEvents& m_privateEvents;
};

}  // namespace journal
