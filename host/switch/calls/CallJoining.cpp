#include "host/switch/calls/CallJoining.h"

#include <utility>

namespace host {

namespace {

using Side = SimulatedCall::Side;

/// `key=value` pairs; what would end a value is written as a percent sign and two digits.
class PrivatePairs {
public:
    void add(const std::string& key, const std::string& value) {
        if (!value.empty()) {
            m_text += (m_text.empty() ? "" : ";") + key + "=" + encoded(value);
        }
    }
    [[nodiscard]] const std::string& text() const { return m_text; }

private:
    static std::string encoded(const std::string& value) {
        std::string text;
        for (const char c : value) {
            switch (c) {
                case '%': text += "%25"; break;
                case ';': text += "%3B"; break;
                case '=': text += "%3D"; break;
                default: text += c;
            }
        }
        return text;
    }

    std::string m_text;
};

/// What the switch knows of a call's past that the new one does not show.
std::string pastOf(const SimulatedCall& call, Side transferring) {
    PrivatePairs pairs;
    if (transferring == Side::eCalled) {
        pairs.add("dialledName", call.firstCalled().name);
        pairs.add("firstForwardedNumber", call.firstForwardedTo().number);
        pairs.add("firstForwardedName", call.firstForwardedTo().name);
    }
    const Party& redirecting = call.party(transferring);
    if (!redirecting.anonymous) {
        pairs.add("redirectingNumber", redirecting.number);
        pairs.add("redirectingName", redirecting.name);
    }
    return pairs.text();
}

SimulatedEvent joining(WireEvent event, const std::string& newCallId, const SimulatedCall& primary,
                       const Party& owner) {
    SimulatedEvent heard;
    heard.event = event;
    heard.callId = primary.id();
    heard.newCallId = newCallId;
    heard.subject = owner;
    heard.device = owner;
    return heard;
}

SimulatedCall::End connected(const Party& party) {
    return {party, "connected"};
}

/// To `listener`: the call `callId` leads to `farEnd`, and to the others.
SimulatedEvent membership(const std::string& callId, const Party& listener,
                          std::vector<Party> farEndAndOthers) {
    SimulatedEvent heard;
    heard.event = WireEvent::ePrivate;
    heard.callId = callId;
    heard.subject = farEndAndOthers.front();
    heard.members = std::move(farEndAndOthers);
    heard.listeners = {{listener.number, "connected"}};
    return heard;
}

}  // namespace

const SimulatedCall::End& HeldPair::otherEnd() const {
    return other.end(isSameDevice(other.party(Side::eCaller), owner()) ? Side::eCalled : Side::eCaller);
}

TransferredCall transferCalls(const HeldPair& calls, const std::string& newCallId) {
    const Party& remaining = calls.heldEnd().party;
    const SimulatedCall::End& target = calls.otherEnd();
    SimulatedEvent heard = joining(WireEvent::eTransferred, newCallId, calls.held, calls.owner());
    heard.secondaryCallId = calls.other.id();
    heard.newDestination = target.party;
    heard.connections = {{remaining, calls.held.id()}, {target.party, calls.other.id()}};
    heard.cause = "transfer";
    heard.privateText = pastOf(calls.held, calls.holder);
    heard.listeners = {
        {calls.owner().number, "null"}, {remaining.number, "connected"}, {target.party.number, target.state}};
    return {SimulatedCall::transferred(newCallId, connected(remaining), target), {std::move(heard)}};
}

TransferredCall handOn(SimulatedCall call, Side by, const Party& to, const std::string& newCallId) {
    const Party owner = call.party(by);
    const Party remaining = call.party(SimulatedCall::other(by));
    CallOccurrences all = {call.hold(by, "singleStepTransfer")};
    all.push_back(call.leave(by));
    SimulatedEvent heard = joining(WireEvent::eTransferred, newCallId, call, owner);
    heard.newDestination = to;
    heard.connections = {{remaining, call.id()}, {to, {}}};
    heard.cause = "singleStepTransfer";
    heard.privateText = pastOf(call, by);
    heard.listeners = {{owner.number, "null"}, {remaining.number, "connected"}};
    all.push_back(std::move(heard));
    SimulatedCall next = SimulatedCall::transferred(newCallId, connected(remaining), {to, "null"});
    all.push_back(next.ring());
    return {std::move(next), std::move(all)};
}

ConferencedCalls joinCalls(const HeldPair& calls, const std::string& newCallId) {
    const Party& owner = calls.owner();
    const Party& first = calls.heldEnd().party;
    const Party& added = calls.otherEnd().party;
    SimulatedEvent heard = joining(WireEvent::eConferenced, newCallId, calls.held, owner);
    heard.secondaryCallId = calls.other.id();
    heard.newDestination = added;
    heard.connections = {{owner, calls.held.id()}, {first, calls.held.id()}, {added, calls.other.id()}};
    heard.cause = "conference";
    for (const Party& member : {owner, first, added}) {
        heard.listeners.push_back({member.number, "connected"});
    }
    return {SimulatedConference(newCallId, {owner, first, added}),
            {std::move(heard), membership(calls.held.id(), owner, {first, added}),
             membership(calls.other.id(), owner, {added, first}),
             membership(calls.held.id(), first, {owner, added}),
             membership(calls.other.id(), added, {owner, first})}};
}

}  // namespace host
