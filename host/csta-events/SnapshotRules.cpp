#include "host/csta-events/SnapshotRules.h"

#include <algorithm>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "platform/csta/CSTALocalConnectionState.h"

namespace host {

namespace {

bool takesPart(int state) {
    return state == CSTA_LCS_Connected || state == CSTA_LCS_Hold;
}

/// The phone's own state. The call's snapshot is the newer one.
std::optional<int> ownState(const DeviceSnapshot::Connection& connection, const CallSnapshot& snapshot) {
    for (const CallSnapshot::Party& party : snapshot.parties) {
        if (party.device.party == EventParty::eMonitored && party.state) {
            return party.state;
        }
    }
    return connection.own;
}

/// The other party that takes part; null if none does.
const CallSnapshot::Party* partnerIn(const CallSnapshot& snapshot) {
    const auto found =
        std::find_if(snapshot.parties.begin(), snapshot.parties.end(), [](const CallSnapshot::Party& party) {
            return party.device.party != EventParty::eMonitored && party.state && takesPart(*party.state);
        });
    return found == snapshot.parties.end() ? nullptr : &*found;
}

bool isSameNumber(const CSTADevice& one, const CSTADevice& other) {
    return comparableNumber(one.number) == comparableNumber(other.number);
}

bool isFarEnd(const EventDevice& device) {
    return device.party == EventParty::eOther && !device.device.number.empty();
}

/// True if the snapshot contains the number of a party at the far end.
bool hasFarEnd(const PhoneCall& call, const CallSnapshot& snapshot) {
    return isFarEnd(call.outgoing ? snapshot.called : snapshot.calling) ||
           std::any_of(snapshot.parties.begin(), snapshot.parties.end(),
                       [](const CallSnapshot::Party& party) { return isFarEnd(party.device); });
}

bool isParty(const CallSnapshot& snapshot, const CSTADevice& device) {
    return std::any_of(
        snapshot.parties.begin(), snapshot.parties.end(),
        [&device](const CallSnapshot::Party& party) { return isSameNumber(party.device.device, device); });
}

/// True if the known caller rings for another one, as another phone of the group that this one has called.
bool ringsForAnother(const CSTADevice& caller, const CallSnapshot& snapshot) {
    const bool rings = std::any_of(
        snapshot.parties.begin(), snapshot.parties.end(), [&caller](const CallSnapshot::Party& party) {
            return party.state == CSTA_LCS_Alerting && isSameNumber(party.device.device, caller);
        });
    return rings && isFarEnd(snapshot.calling) && !isSameNumber(snapshot.calling.device, caller);
}

bool names(const CallSnapshot& snapshot, const CSTADevice& device) {
    return !device.number.empty() &&
           (isSameNumber(snapshot.calling.device, device) || isSameNumber(snapshot.called.device, device) ||
            isParty(snapshot, device));
}

}  // namespace

std::optional<PhoneCall> callFrom(const DeviceSnapshot::Connection& connection, const CallSnapshot& snapshot,
                                  const std::string& device) {
    const std::optional<int> own = ownState(connection, snapshot);
    if (!own || (*own != CSTA_LCS_Alerting && !takesPart(*own))) {
        return std::nullopt;
    }
    PhoneCall call;
    call.callId = connection.callId;
    call.device = device;
    call.calling = snapshot.calling.device;
    call.called = snapshot.called.device;
    const CallSnapshot::Party* const partner = partnerIn(snapshot);
    const bool othersTakePart =
        partner != nullptr || std::any_of(connection.others.begin(), connection.others.end(), takesPart);
    // Without a caller, the phone of a call in which no other party takes part yet has placed it.
    call.outgoing =
        takesPart(*own) &&
        (snapshot.calling.party == EventParty::eMonitored ||
         (snapshot.calling.party == EventParty::eUnknown && !connection.others.empty() && !othersTakePart));
    if (takesPart(*own) && (!call.outgoing || othersTakePart)) {
        call.role = PhoneRole::eConnected;
        call.established = PhoneCall::Time();
    } else {
        call.role = call.outgoing ? PhoneRole::eCalling : PhoneRole::eRinging;
    }
    if (call.established && partner != nullptr) {
        call.partner = partner->device.device;
    }
    if (!call.outgoing && call.calling.number.empty() && call.calling.name.empty()) {
        call.calling = call.partner;
    }
    return call;
}

bool isPickedUp(const PhoneCall& known, const PhoneCall& now) {
    return known.outgoing && !known.established && !now.outgoing && !now.calling.number.empty() &&
           known.called.number.find_first_of("*#") != std::string::npos;
}

bool isOtherCall(const PhoneCall& known, const PhoneCall& now, const CallSnapshot& snapshot) {
    const bool ringsAgain = now.role == PhoneRole::eRinging && (known.outgoing || known.established);
    if (ringsAgain || (now.role == PhoneRole::eCalling && !known.outgoing)) {
        return true;
    }
    const CSTADevice& farEnd = known.outgoing ? known.called : known.calling;
    if (!known.outgoing && !known.transferred && !known.conference &&
        snapshot.calling.party == EventParty::eMonitored && !isSameNumber(farEnd, snapshot.calling.device)) {
        return true;
    }
    // A caller that withholds its number does so for the whole call.
    if (!known.outgoing && !known.transferred && !known.conference && farEnd.number.empty() &&
        farEnd.name == DeviceReader::kWithheldName && isFarEnd(snapshot.calling)) {
        return true;
    }
    if (known.transferred || known.conference || isPickedUp(known, now) || farEnd.number.empty() ||
        !hasFarEnd(now, snapshot)) {
        return false;
    }
    // The known caller is called by another one: the phone has picked that call up.
    const bool isCalledNow = !known.outgoing && isFarEnd(snapshot.calling) &&
                             isSameNumber(farEnd, snapshot.called.device) &&
                             !isSameNumber(farEnd, snapshot.calling.device) && !isParty(snapshot, farEnd);
    const bool rings = !known.outgoing && ringsForAnother(farEnd, snapshot);
    return rings || isCalledNow || (!names(snapshot, farEnd) && !names(snapshot, known.partner));
}

}  // namespace host
