#include "host/sip/PhoneMessage.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "host/csta-wire/XmlText.h"

namespace host {

namespace {

using nlohmann::json;

std::string textOf(const json& message, const char* member) {
    const auto found = message.find(member);
    return found != message.end() && found->is_string() ? found->get<std::string>() : std::string();
}

bool flagOf(const json& message, const char* member) {
    const auto found = message.find(member);
    return found != message.end() && found->is_boolean() && found->get<bool>();
}

SipPhoneEvent eventOf(const json& message) {
    return {.type = textOf(message, "type"),
            .account = textOf(message, "accountaor"),
            .outgoing = textOf(message, "direction") == "outgoing",
            .peerUri = textOf(message, "peeruri"),
            .peerName = textOf(message, "peerdisplayname"),
            .id = textOf(message, "id"),
            .param = textOf(message, "param")};
}

}  // namespace

std::optional<std::variant<SipPhoneEvent, PhoneResponse>> readPhoneMessage(std::string text) {
    // The telephone does not escape every control character of a name.
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    if (!isXmlUtf8(text)) {
        text = utf8FromLatin1(text);
    }
    const json message = json::parse(text, nullptr, false);
    if (message.is_object() && flagOf(message, "event")) {
        return eventOf(message);
    }
    if (message.is_object() && flagOf(message, "response")) {
        return PhoneResponse{
            .ok = flagOf(message, "ok"), .text = textOf(message, "data"), .token = textOf(message, "token")};
    }
    return std::nullopt;
}

std::string writePhoneCommand(std::string_view command, std::string_view parameters, std::string_view token) {
    json message{{"command", command}, {"token", token}};
    if (!parameters.empty()) {
        message["params"] = parameters;
    }
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace host
