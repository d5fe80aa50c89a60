#include "host/switch/calls/TransferAndConference.h"

#include <utility>

namespace host {

namespace {

using Side = SwitchCall::Side;

/// `key=value` pairs. Characters that would end a value are percent-encoded.
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

/// The history of a call that the events of the new call do not contain, as private text.
std::string historyOf(const SwitchCall& call, Side transferring) {
    PrivatePairs pairs;
    if (transferring == Side::eCalled) {
        pairs.add("dialledName", call.firstCalled().name);
        pairs.add("firstForwardedNumber", call.firstForwardedTo().number);
        pairs.add("firstForwardedName", call.firstForwardedTo().name);
    }
    const SwitchParty& redirecting = call.party(transferring);
    if (!redirecting.anonymous) {
        pairs.add("redirectingNumber", redirecting.number);
        pairs.add("redirectingName", redirecting.name);
    }
    return pairs.text();
}

SwitchEvent joining(WireEvent type, const std::string& newCallId, const SwitchCall& primary,
                    const SwitchParty& owner) {
    SwitchEvent event;
    event.type = type;
    event.callId = primary.id();
    event.newCallId = newCallId;
    event.subject = owner;
    event.device = owner;
    return event;
}

SwitchCall::End connected(const SwitchParty& party) {
    return {party, "connected"};
}

/// Sends `listener` the members of the conference. The first one is the far end of its call `callId`.
SwitchEvent membership(const std::string& callId, const SwitchParty& listener,
                       std::vector<SwitchParty> farEndAndOthers) {
    SwitchEvent event;
    event.type = WireEvent::ePrivate;
    event.callId = callId;
    event.subject = farEndAndOthers.front();
    event.members = std::move(farEndAndOthers);
    event.listeners = {{listener.number, "connected"}};
    return event;
}

}  // namespace

const SwitchCall::End& HeldPair::otherEnd() const {
    return other.end(isSameDevice(other.party(Side::eCaller), owner()) ? Side::eCalled : Side::eCaller);
}

TransferredCall transferCalls(const HeldPair& calls, const std::string& newCallId) {
    const SwitchParty& remaining = calls.heldEnd().party;
    const SwitchCall::End& target = calls.otherEnd();
    SwitchEvent event = joining(WireEvent::eTransferred, newCallId, calls.held, calls.owner());
    event.secondaryCallId = calls.other.id();
    event.newDestination = target.party;
    event.connections = {{remaining, calls.held.id()}, {target.party, calls.other.id()}};
    event.cause = "transfer";
    event.privateText = historyOf(calls.held, calls.holder);
    event.listeners = {
        {calls.owner().number, "null"}, {remaining.number, "connected"}, {target.party.number, target.state}};
    return {SwitchCall::transferred(newCallId, connected(remaining), target), {std::move(event)}};
}

TransferredCall singleStepTransfer(SwitchCall call, Side by, const SwitchParty& to,
                                   const std::string& newCallId) {
    const SwitchParty owner = call.party(by);
    const SwitchParty remaining = call.party(SwitchCall::other(by));
    SwitchEvents all = {call.hold(by, "singleStepTransfer")};
    all.push_back(call.leave(by));
    SwitchEvent event = joining(WireEvent::eTransferred, newCallId, call, owner);
    event.newDestination = to;
    event.connections = {{remaining, call.id()}, {to, {}}};
    event.cause = "singleStepTransfer";
    event.privateText = historyOf(call, by);
    event.listeners = {{owner.number, "null"}, {remaining.number, "connected"}};
    all.push_back(std::move(event));
    SwitchCall next = SwitchCall::transferred(newCallId, connected(remaining), {to, "null"});
    all.push_back(next.ring());
    return {std::move(next), std::move(all)};
}

ConferencedCalls joinCalls(const HeldPair& calls, const std::string& newCallId) {
    const SwitchParty& owner = calls.owner();
    const SwitchParty& first = calls.heldEnd().party;
    const SwitchParty& added = calls.otherEnd().party;
    SwitchEvent event = joining(WireEvent::eConferenced, newCallId, calls.held, owner);
    event.secondaryCallId = calls.other.id();
    event.newDestination = added;
    event.connections = {{owner, calls.held.id()}, {first, calls.held.id()}, {added, calls.other.id()}};
    event.cause = "conference";
    for (const SwitchParty& member : {owner, first, added}) {
        event.listeners.push_back({member.number, "connected"});
    }
    return {SwitchConference(newCallId, {owner, first, added}),
            {std::move(event), membership(calls.held.id(), owner, {first, added}),
             membership(calls.other.id(), owner, {added, first}),
             membership(calls.held.id(), first, {owner, added}),
             membership(calls.other.id(), added, {owner, first})}};
}

}  // namespace host
