#include "host/switch/server/PartyWriter.h"

#include "host/csta-wire/DeviceText.h"

namespace host {

void writeDevice(MessageWriter& writer, std::string_view member, std::string_view identifier,
                 const SimulatedParty& party) {
    writer.open(member);
    if (party.anonymous) {
        writer.empty("restricted");
    } else if (party.number.empty()) {
        writer.empty("notKnown");
    } else {
        writer.text(identifier, deviceText(party.number, party.name));
    }
    writer.close();
}

void writeParty(MessageWriter& writer, std::string_view member, const SimulatedParty& party) {
    writeDevice(writer, member, "deviceIdentifier", party);
}

std::string connectionDevice(const SimulatedParty& party, const std::string& callId) {
    return party.anonymous ? "trunk-" + callId : party.number;
}

void writeConnection(MessageWriter& writer, std::string_view member, const std::string& callId,
                     const SimulatedParty& party) {
    writer.open(member).text("callID", callId).text("deviceID", connectionDevice(party, callId)).close();
}

}  // namespace host
