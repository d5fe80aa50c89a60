#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <asio/io_context.hpp>

#include "host/calls/PhoneCalls.h"
#include "host/csta-wire/CallControlWire.h"
#include "host/csta/call-control/CallControlIfc.h"
#include "host/csta/call-control/PlacedCalls.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

/// Carries out the requests of `CallControlIfc` at the switch:
///  1. A request that the state of the call forbids, or whose service the switch lacks, is not sent.
///  2. It is complete with the response, or with an event that shows its effect: the call is introduced
///     (`PlacedCalls`), established, has ended. Either may come first.
///  3. `serviceNotSupported`, or silence, shows that the switch lacks the service. A late response shows
///     that it has it. Either is remembered until the connection is lost.
///
/// A live call has an id that is unique for all time, from its first event or its MakeCall to its end.
///
/// Reader thread only.
class CallControl {
public:
    using Complete = PlacedCalls::Complete;

    struct Settings {
        std::string ownDevice;
        std::string edition;
        std::chrono::milliseconds requestTimeout{5000};
    };
    struct Handlers {
        /// The live calls have changed, as far as `views` shows them.
        std::function<void()> callsChanged;
        /// `isAvailable` may have changed.
        std::function<void()> statusChanged;
        /// True if the call's id was made by the link, for a switch that sends none.
        std::function<bool(const std::string& callId)> isUnnumbered;
    };

    /// The references must outlive the object. Becomes a listener of `calls`.
    CallControl(Settings settings, asio::io_context& io, RequestChannel& channel, PhoneCalls& calls,
                Handlers handlers);
    CallControl(const CallControl&) = delete;
    CallControl& operator=(const CallControl&) = delete;

    // Each calls `complete` exactly once.
    void makeCall(const std::string& number, Complete complete);
    void answerCall(const std::string& id, const Complete& complete);
    void clearCall(const std::string& id, const Complete& complete);

    [[nodiscard]] std::vector<LiveCallView> views();
    /// True if the switch is connected and is not known to lack MakeCall.
    [[nodiscard]] bool isAvailable() const;

    /// For each event, before the calls follow it.
    void onEvent(const WireDocument& event);
    /// For each response that belongs to no waiting request.
    void onLateResponse(const WireDocument& response);
    void connectionLost();
    /// The connection is lost for good.
    void close();

private:
    using Kind = CallControlOutcome::Kind;
    using Key = std::pair<std::string, std::string>;

    /// A request that is waiting for its response or for its effect on the call.
    struct Waiting {
        unsigned long serial;
        CallControlService service;
        /// Of the call.
        std::string id;
        Complete complete;
    };

    void onMade(const std::string& id, const SwitchResponse& response);
    void request(CallControlService service, const std::string& id, const WireConnection& connection,
                 const Complete& complete);
    void onResponse(unsigned long serial, CallControlService service, const SwitchResponse& response);
    void finish(unsigned long serial, CallControlOutcome outcome);
    [[nodiscard]] CallControlOutcome failure(CallControlService service, const SwitchResponse& response);
    void setLacking(CallControlService service, bool lacking);
    /// The reason for which a request cannot be sent; `Kind::eDone` if it can.
    [[nodiscard]] CallControlOutcome precheck(CallControlService service) const;

    void callChanged(const PhoneCall& call);
    void callEnded(const PhoneCall& call);
    /// Completes the requests that wait for the call to be established, or to end.
    void completeFor(const std::string& id, bool established, bool ended);

    [[nodiscard]] std::string newId();
    [[nodiscard]] const std::string& idOf(const PhoneCall& call);
    [[nodiscard]] const PhoneCall* callOf(std::string_view id) const;
    [[nodiscard]] WireConnection connectionOf(const PhoneCall& call) const;
    [[nodiscard]] std::string deviceAtSwitch(const std::string& device) const;
    [[nodiscard]] LiveCallView viewOf(const PhoneCall& call);

    const Settings m_settings;
    const std::string m_nameSpace;
    RequestChannel& m_channel;
    PhoneCalls& m_calls;
    const Handlers m_handlers;
    /// Differs between two runs of the program.
    const std::string m_idPrefix;

    PlacedCalls m_placed;
    std::map<Key, std::string> m_ids;
    std::list<Waiting> m_waiting;
    std::set<CallControlService> m_lacking;
    unsigned long m_lastId = 0;
    unsigned long m_lastSerial = 0;
};

}  // namespace host
