#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/switch/calls/SwitchCall.h"
#include "host/switch/traffic/TrafficPlan.h"

namespace host {

/// The end of a call for one device of the traffic.
enum class TrafficResult {
    eMissed,
    eReceived,
    eDialled,
    /// It rang here, and another device of the group took it.
    eElsewhere,
};

/// The part of a device in a call that has ended for it. A plain value.
struct TrafficPart {
    std::string device;
    TrafficResult result = TrafficResult::eMissed;
    /// The far end, as the device dialled it.
    std::string number;
};

/// A planned call that is played: one call for each device that rings, all with the same call id. Not
/// thread-safe.
class TrafficCall {
public:
    TrafficCall(std::string callId, const PlannedCall& plan);

    /// Each returns the events for the phones; none where a client has ended the call before.
    [[nodiscard]] SwitchEvents begin();
    /// The called party takes the call, or the caller gives up.
    [[nodiscard]] SwitchEvents stopRinging();
    [[nodiscard]] SwitchEvents hangUp();

    [[nodiscard]] const PlannedCall& plan() const noexcept { return m_plan; }
    [[nodiscard]] bool isOver() const;
    /// The part that ends with this event of the call, if it is one of a device of the traffic.
    [[nodiscard]] std::optional<TrafficPart> endedPart(const SwitchEvent& event) const;
    /// The part of a device, for the services of clients; null if it is not in the call.
    [[nodiscard]] SwitchCall* find(std::string_view device);
    void addLiveCalls(std::vector<LiveCall>& calls) const;

private:
    PlannedCall m_plan;
    std::vector<SwitchCall> m_legs;
};

}  // namespace host
