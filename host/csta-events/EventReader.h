#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/calls/PhoneCallEvents.h"
#include "host/calls/PhoneCalls.h"

namespace host {

class EventBuilder;
struct EventContext;
class WireDocument;

/// The monitor that an event belongs to.
struct EventSource {
    /// The monitor id to put into the events.
    std::string crossRefId;
    std::string device;
};

/// Converts events of the wire into events of the platform: devices, the state of the phone's own connection,
/// the cause in the phone's numbering. Follows the phone's calls and drops events of other parties
/// (EventRules.h). Adds the events that a switch may omit:
///   - ConnectionCleared after a Diverted event, for the second call of a phone that transfers, for a call
///     whose id is used again, and for a call that another phone has established;
///   - Delivered for a call that is transferred to this phone while it rings.
///
/// Reads members by local name, in any order; missing members become empty. Not thread-safe.
class EventReader {
public:
    /// `calls` is borrowed and outlives the reader.
    EventReader(std::string ownDevice, PhoneCalls& calls);

    /// The switch's id of the monitor that the event belongs to.
    [[nodiscard]] static std::string crossRefIdOf(const WireDocument& document);

    /// Returns the events to deliver, in order; none for an unknown event or one that does not concern the
    /// phone.
    [[nodiscard]] std::vector<PhoneEvent> read(const WireDocument& document, const EventSource& source);

private:
    /// `cause` is that of the switch, if the event has another one.
    void add(std::vector<PhoneEvent>& events, PhoneEvent event, const std::string& device,
             std::optional<int> cause = std::nullopt);
    void endElsewhere(std::vector<PhoneEvent>& events, const PhoneCall& call, const EventContext& context,
                      const std::string& crossRefId);
    void endKnownCall(std::vector<PhoneEvent>& events, const PhoneCall& call, const std::string& crossRefId);
    void carryOut(std::vector<PhoneEvent>& events, EventBuilder& builder, const EventSource& source);
    void ringAfterTransfer(std::vector<PhoneEvent>& events, const EventBuilder& builder,
                           const std::string& crossRefId);
    void noteOther(const EventContext& context, const std::string& device, const std::string& callId);
    void noteDropped(const PhoneCall& known, const EventContext& context);

    const std::string m_ownDevice;
    PhoneCalls& m_calls;
};

}  // namespace host
