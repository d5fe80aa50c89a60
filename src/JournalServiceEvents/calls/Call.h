#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace journal {

/// The record of one call on the phone's own device while the call exists. Public alias:
/// `JournalService::Call`.
///
/// Owned by the call map. Requires for reading and writing: the call-map lock is held. Times are seconds
/// since 1970 from the clock service, or -1 before the event.
class Call {
public:
    enum states_t : std::int32_t {
        eUnknown = -1,
        eOriginated = 0,
        eOffered = 1,
        eDelivered = 2,
        eEstablished = 3,
        eForwarded = 4,
        /// Never stored; ends the call.
        eCleared = 5,
        /// Never stored; ends the call.
        eFailed = 6,
        eCallInformation = 7,
    };

    enum directions_t : std::int32_t {
        /// As an argument: keep the direction of the record.
        eDirectionUnknown = -1,
        eIncoming = 0,
        eOutgoing = 1,
    };

    /// `startTimeSec` is the time now.
    Call(const directions_t& direction, const std::string& callId, long startTimeSec)
        : m_Direction(direction), m_sCallId(callId), m_startTimeSec(startTimeSec) {}

    states_t m_State = eUnknown;
    directions_t m_Direction;
    /// The switch's call id: the key in the call map.
    std::string m_sCallId;
    /// The called device: the party that this device called, or the number under which it was called.
    std::string m_sCalledParty;
    std::string m_sCalledPartyName;
    /// The far end of the call.
    std::string m_sRemoteParty;
    std::string m_sRemotePartyName;
    /// The party that is connected in the end.
    std::string m_sConnectedParty;
    std::string m_sConnectedPartyName;
    /// The digits dialled on an outgoing call.
    std::string m_sDialledParty;
    std::string m_sDialledPartyName;
    /// The party that redirected the call.
    std::string m_sRedirectingParty;
    std::string m_sRedirectingPartyName;
    /// The first party that an outgoing call was forwarded to.
    std::string m_sFirstForwardedParty;
    std::string m_sFirstForwardedPartyName;
    /// The shared line at which the call rings; empty for the own line.
    std::string m_sLineKey;
    long m_startTimeSec;
    long m_establishedTimeSec = -1;
    long m_endTimeSec = -1;
    /// File an outgoing call as an incoming one (a pick-up).
    bool m_treatAsIncoming = false;
    bool m_completedElsewhere = false;
    /// The call was placed for the user by an application: its remote name arrived as "CTI Assisted".
    bool m_ctiAssisted = false;
    /// The call may become a missed entry if it alerted here.
    bool m_missedEligible = true;
    /// The forwarded call was answered automatically.
    bool mAutoAnswerForwardedCall = false;
    /// The call took part in a transfer.
    bool m_transferred = false;
    /// The call came here from another party that redirected it.
    bool m_redirected = false;
    /// The switch has marked the call as missed.
    bool m_markedMissed = false;
    bool m_connectedToMediaServer = false;

    [[nodiscard]] bool isOutgoing() const noexcept { return m_Direction == eOutgoing; }
};

}  // namespace journal
