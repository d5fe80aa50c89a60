#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/calls/PhoneCall.h"
#include "host/csta-wire/CallControlWire.h"
#include "host/csta/call-control/CallControlIfc.h"

namespace host {

class WireDocument;

/// True if the number of an event is the one that was dialled: equal, or equal but for an international,
/// national or outside-line prefix, which a switch may add or remove.
[[nodiscard]] bool isSameDestination(std::string_view dialled, std::string_view inEvent);

/// The calls that were placed by MakeCall and that no event has introduced yet. An event finds its call:
///  1. by the call id, if the switch has responded with one or ServiceInitiated has named one;
///  2. otherwise by the number, if the call has begun after the request.
///
/// A request that waits for its response is complete with the response, or `grace` after an event has found
/// its call. A call that no event introduces is dropped after `kIntroduction`.
///
/// Reader thread only.
class PlacedCalls {
public:
    using Complete = std::function<void(CallControlOutcome)>;

    /// The time for the user of a phone that is alerted first.
    static constexpr std::chrono::seconds kIntroduction{60};

    /// `changed` is called when a call is added or removed by itself.
    PlacedCalls(asio::io_context& io, std::chrono::milliseconds grace, std::function<void()> changed)
        : m_io(io), m_grace(grace), m_changed(std::move(changed)) {}

    /// A request is sent.
    void begin(const std::string& id, const std::string& number, Complete complete);
    /// The switch has accepted it; `made` may be empty. Returns the call id by which the caller looks for a
    /// call that events have introduced already; empty if there is no need.
    [[nodiscard]] std::string accepted(const std::string& id, const WireConnection& made);
    /// The switch did not respond in time. Returns false if no event has shown the call either; it is then
    /// dropped without a completion.
    [[nodiscard]] bool acceptedByEvent(const std::string& id);
    /// The request has failed: drops the call. Has no effect on an unknown one.
    void failed(const std::string& id, CallControlOutcome outcome);

    /// For each event of the own device. Has no effect on calls that are introduced.
    void onEvent(const WireDocument& event, std::string_view ownDevice);
    /// The id of the call if it was placed; empty for any other call. Call for each call that is new.
    [[nodiscard]] std::string introduced(const PhoneCall& call);
    /// The same, by the call id alone.
    [[nodiscard]] std::string introduced(std::string_view callId);

    [[nodiscard]] bool empty() const noexcept { return m_calls.empty(); }
    /// The calls that are accepted.
    [[nodiscard]] std::vector<LiveCallView> views(const std::string& ownDevice) const;
    /// The connection of an accepted call; `nullptr` for an unknown id.
    [[nodiscard]] const WireConnection* find(std::string_view id) const;
    /// Drops all calls. Requires: no request waits.
    void clear() { m_calls.clear(); }

private:
    struct Call {
        std::string id;
        std::string number;
        PhoneCall::Time since;
        WireConnection connection{};
        /// Empty after the completion.
        Complete complete;
        /// An event has introduced it, and it stays only until its completion.
        bool isIntroduced = false;
        /// The phone has begun a call that may be this one.
        bool isInitiated = false;
        bool hasEnded = false;
        std::unique_ptr<asio::steady_timer> timer{};
    };
    using Calls = std::list<Call>;

    [[nodiscard]] Calls::iterator at(std::string_view id);
    [[nodiscard]] std::string introduce(Calls::iterator call);
    /// Completes the request, and drops a call that is introduced or has ended.
    void complete(Calls::iterator call);
    void after(std::chrono::milliseconds time, Call& call, void (PlacedCalls::*action)(Calls::iterator));
    void drop(Calls::iterator call);

    asio::io_context& m_io;
    const std::chrono::milliseconds m_grace;
    const std::function<void()> m_changed;
    Calls m_calls;
};

}  // namespace host
