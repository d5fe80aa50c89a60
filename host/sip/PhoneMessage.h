#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace host {

// The messages on the control port of the SIP telephone, as JSON texts. Pure functions.

/// Something that has happened at the telephone. Text members are empty if they were not sent.
struct SipPhoneEvent {
    /// "CALL_INCOMING", "REGISTER_FAIL", ...
    std::string type;
    /// The address of the account, "sip:alice@example.org".
    std::string account;
    bool outgoing = false;
    std::string peerUri;
    std::string peerName;
    /// The Call-ID.
    std::string id;
    std::string param;
};

/// The response to the command that had the token.
struct PhoneResponse {
    bool ok = false;
    std::string text;
    std::string token;
};

/// Reads a message. Text that is no UTF-8 is read as ISO 8859-1. Returns `std::nullopt` for any other JSON.
[[nodiscard]] std::optional<std::variant<SipPhoneEvent, PhoneResponse>> readPhoneMessage(std::string text);

/// A command; empty parameters are not written, because some commands then act on the last ones.
[[nodiscard]] std::string writePhoneCommand(std::string_view command, std::string_view parameters,
                                            std::string_view token);

}  // namespace host
