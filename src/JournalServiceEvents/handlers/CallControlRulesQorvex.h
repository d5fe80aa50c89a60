#pragma once

#include <string>

#include "src/JournalServiceEvents/handlers/CallControlContext.h"
#include "src/JournalServiceEvents/handlers/CallControlRulesIfc.h"

class CSTACallControlEvent;

namespace journal {

struct CallLogReadiness;
class EntryCreation;

/// The call-control rules of every phone that is not a SIP phone; see `CallControlRulesSip` for the others.
///
/// Calls are tracked only if the switch does not keep the call log itself. The parties of each update:
///
///     event                       remote party        diverted party
///     Originated                  called device
///     Delivered, ring-back        called device
///     Delivered, forwarded on     alerting device     called device
///     Delivered, Queued, ringing  calling device
///     Diverted                    new destination     calling device, or the party of the record
///     Established, incoming       calling device
///     Established, outgoing       called device
///       ... answered by another   answering device    called device
///     Failed                      the far end
class CallControlRulesQorvex final : public CallControlRulesIfc {
public:
    /// Everything is borrowed and outlives this object.
    CallControlRulesQorvex(const CallControlContext& callControl, CallLogReadiness& readiness,
                           EntryCreation& entries)
        : m_callControl(callControl), m_readiness(readiness), m_entries(entries) {}

    void originated(const CSTAOriginatedEvent& event) override;
    void offered(const CSTAOfferedEvent& event) override;
    void queued(const CSTAQueuedEvent& event) override;
    void delivered(const CSTADeliveredEvent& event) override;
    void diverted(const CSTADivertedEvent& event) override;
    void established(const CSTAEstablishedEvent& event) override;
    void failed(const CSTAFailedEvent& event) override;

    /// True for the causes of a pick-up and of parking: the phone did not dial such a call.
    [[nodiscard]] static bool ignoreEventByCause(int cause) noexcept;

private:
    [[nodiscard]] bool tracksCalls() const;

    void deliveredByLocalConnection(const CSTADeliveredEvent& event);
    bool forwardedOn(Call& call, const CSTADeliveredEvent& event);
    void divertedAway(Call* call, const CSTADivertedEvent& event);
    void divertedByCalledParty(Call* call, const CSTADivertedEvent& event);
    void establishedIncoming(Call* call, const CSTAEstablishedEvent& event, Call::directions_t direction);
    void establishedOutgoing(Call* call, const CSTAEstablishedEvent& event, Call::directions_t direction);
    void fileCalledBack(const Call& call, const CSTAEstablishedEvent& event);
    void failedOnItsOwn(Call* call, const CSTAFailedEvent& event);

    void recordDialled(const CSTACallControlEvent& event) const;
    void recordRedirecting(const CSTACallControlEvent& event, const char* operation) const;

    CallControlContext m_callControl;
    CallLogReadiness& m_readiness;
    EntryCreation& m_entries;
};

}  // namespace journal
