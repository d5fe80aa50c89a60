#include "host/csta-wire/CallControlWire.h"

#include <algorithm>
#include <array>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/XmlText.h"
#include "host/limits/TextLimits.h"

namespace host {

namespace {

struct Row {
    CallControlService service;
    std::string_view name;
    std::string_view response;
    /// The ConnectionID of the request, or of the response to MakeCall.
    std::string_view connection;
};

constexpr std::array kRows = {
    Row{CallControlService::eMakeCall, "MakeCall", "MakeCallResponse", "callingDevice"},
    Row{CallControlService::eAnswerCall, "AnswerCall", "AnswerCallResponse", "callToBeAnswered"},
    Row{CallControlService::eClearConnection, "ClearConnection", "ClearConnectionResponse",
        "connectionToBeCleared"},
};

const Row& rowOf(CallControlService service) noexcept {
    return kRows[static_cast<std::size_t>(service)];
}

std::string limited(std::string_view text) {
    return std::string(limits::cut(text, limits::kNameBytes));
}

std::string textOf(pugi::xml_node member) {
    return limited(firstText(member));
}

void writeConnection(MessageWriter& writer, std::string_view member, const WireConnection& connection) {
    writer.open(member);
    if (!connection.callId.empty()) {
        writer.text("callID", connection.callId);
    }
    if (!connection.deviceId.empty()) {
        writer.text("deviceID", connection.deviceId);
    }
    writer.close();
}

}  // namespace

std::string_view nameOf(CallControlService service) noexcept {
    return rowOf(service).name;
}

std::string writeCallControlRequest(const CallControlRequest& request, std::string_view nameSpace) {
    const Row& row = rowOf(request.service);
    MessageWriter writer(row.name, nameSpace);
    if (request.service == CallControlService::eMakeCall) {
        writer.text("callingDevice", request.callingDevice);
        writer.text("calledDirectoryNumber", request.calledNumber);
        writer.text("autoOriginate", request.prompt ? "prompt" : "doNotPrompt");
    } else {
        writeConnection(writer, row.connection, request.connection);
    }
    return writer.finish();
}

std::optional<CallControlRequest> readCallControlRequest(const WireDocument& message) {
    const auto* const row = std::find_if(
        kRows.begin(), kRows.end(), [name = message.name()](const Row& each) { return each.name == name; });
    if (row == kRows.end()) {
        return std::nullopt;
    }
    CallControlRequest request{.service = row->service};
    const pugi::xml_node root = message.root();
    if (request.service == CallControlService::eMakeCall) {
        request.callingDevice = textOf(childNamed(root, "callingDevice"));
        request.calledNumber = textOf(childNamed(root, "calledDirectoryNumber"));
        // The default of the schema is to prompt.
        request.prompt = childText(root, "autoOriginate") != "doNotPrompt";
    } else {
        request.connection = readConnection(childNamed(root, row->connection));
    }
    return request;
}

std::string writeCallControlResponse(CallControlService service, const WireConnection& made,
                                     std::string_view nameSpace) {
    const Row& row = rowOf(service);
    MessageWriter writer(row.response, nameSpace);
    if (service == CallControlService::eMakeCall) {
        writeConnection(writer, row.connection, made);
    }
    return writer.finish();
}

std::optional<WireConnection> readCallControlResponse(CallControlService service,
                                                      const WireDocument& message) {
    const Row& row = rowOf(service);
    if (message.name() != row.response) {
        return std::nullopt;
    }
    return service == CallControlService::eMakeCall
               ? readConnection(childNamed(message.root(), row.connection))
               : WireConnection{};
}

bool CstaRefusal::isNotSupported() const noexcept {
    static constexpr std::array<std::string_view, 3> kValues{"serviceNotSupported", "invalidFeature",
                                                             "requestIncompatibleWithCallingDevice"};
    return std::find(kValues.begin(), kValues.end(), value) != kValues.end();
}

std::string writeCstaRefusal(std::string_view category, std::string_view value, std::string_view nameSpace) {
    MessageWriter writer("CSTAErrorCode", nameSpace);
    if (value.empty()) {
        writer.empty(category);
    } else {
        writer.text(category, value);
    }
    return writer.finish();
}

std::optional<CstaRefusal> readCstaRefusal(const WireDocument& message) {
    if (message.name() == "errorResponse") {
        return CstaRefusal{.category = "operation",
                           .value = limited(message.root().attribute("Error").value())};
    }
    if (message.kind() != MessageKind::eError) {
        return std::nullopt;
    }
    const pugi::xml_node reason =
        message.root().find_child([](pugi::xml_node node) { return node.type() == pugi::node_element; });
    return CstaRefusal{.category = std::string(localName(reason)),
                       .value = limited(trimmed(reason.text().get()))};
}

WireConnection readConnection(pugi::xml_node member) {
    const pugi::xml_node device = childNamed(member, "deviceID");
    const pugi::xml_node identifier = childNamed(member, "deviceIdentifier");
    return {.callId = childText(member, "callID"), .deviceId = textOf(device ? device : identifier)};
}

}  // namespace host
