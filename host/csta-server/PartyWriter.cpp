#include "host/csta-server/PartyWriter.h"

#include "host/csta-wire/DeviceText.h"

namespace host {

void writeDevice(MessageWriter& writer, std::string_view member, std::string_view identifier,
                 const SwitchParty& party) {
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

void writeParty(MessageWriter& writer, std::string_view member, const SwitchParty& party) {
    writeDevice(writer, member, "deviceIdentifier", party);
}

std::string connectionDevice(const SwitchParty& party, const std::string& callId) {
    return party.anonymous ? "trunk-" + callId : party.number;
}

void writeConnection(MessageWriter& writer, std::string_view member, const std::string& callId,
                     const SwitchParty& party) {
    writer.open(member).text("callID", callId).text("deviceID", connectionDevice(party, callId)).close();
}

}  // namespace host
