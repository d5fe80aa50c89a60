#pragma once

#include "src/JournalServiceEvents/handlers/CallControlContext.h"
#include "src/JournalServiceEvents/handlers/CallControlRulesIfc.h"

namespace journal {

class BlindTransfer;
class LineDevices;

/// The call-control rules of SIP phones; see `CallControlRulesQorvex` for the others. The parties of each
/// update:
///
///     event                       remote party        diverted party
///     Originated                  called device
///     Delivered, ringing          calling device      last redirection device
///     Queued, ringing             calling device      called device
///     Delivered, ring-back        alerting device
///       ... of a forwarded call   called device       alerting device
///     Diverted                    called device       new destination
///     Established, incoming       calling device      last redirection device
///     Established, outgoing       the device reached
///       ... answered by another   called device       answering device
///     Failed                      the far end
class CallControlRulesSip final : public CallControlRulesIfc {
public:
    /// Everything is borrowed and outlives this object.
    CallControlRulesSip(const CallControlContext& callControl, const LineDevices& devices,
                        const BlindTransfer& blindTransfer)
        : m_callControl(callControl), m_devices(devices), m_blindTransfer(blindTransfer) {}

    void originated(const CSTAOriginatedEvent& event) override;
    void offered(const CSTAOfferedEvent& event) override;
    void queued(const CSTAQueuedEvent& event) override;
    void delivered(const CSTADeliveredEvent& event) override;
    void diverted(const CSTADivertedEvent& event) override;
    void established(const CSTAEstablishedEvent& event) override;
    void failed(const CSTAFailedEvent& event) override;

private:
    void ringing(const CSTADeliveredEvent& event);
    void ringBack(const CSTADeliveredEvent& event);
    void establishedIncoming(Call* call, const CSTAEstablishedEvent& event, Call::directions_t direction);
    void establishedOutgoing(Call* call, const CSTAEstablishedEvent& event);

    CallControlContext m_callControl;
    const LineDevices& m_devices;
    const BlindTransfer& m_blindTransfer;
};

}  // namespace journal
