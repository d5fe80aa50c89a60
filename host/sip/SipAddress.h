#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/csta-wire/SwitchParty.h"

namespace host {

// SIP addresses and the device ids that stand for them at the CSTA link. Pure functions.

/// `sip:USER@HOST:PORT;parameters`. A plain value.
struct SipAddress {
    std::string scheme = "sip";
    /// Percent signs decoded.
    std::string user;
    /// With the port, if it was written; in lower case.
    std::string host;

    [[nodiscard]] bool operator==(const SipAddress&) const = default;
};

/// True if the text before the "@" is USER:PASSWORD after the scheme.
[[nodiscard]] bool hasPassword(std::string_view text) noexcept;

/// False if the address has a port or a ";transport=" that the telephone does not know.
[[nodiscard]] bool canBeReached(std::string_view text);

/// Returns `std::nullopt` if the text is no sip: or sips: address with a user and a host.
[[nodiscard]] std::optional<SipAddress> parseSipAddress(std::string_view text);

/// The party of a call. A telephone number stands for itself, at any host. Any other user has its host,
/// `ann@example.org`, so that it can be dialled. An address without a user, or with one that means
/// "withheld", is an anonymous party.
[[nodiscard]] SwitchParty partyOf(std::string_view uri, std::string_view name);

/// The user of an address as a device id.
[[nodiscard]] std::string deviceOf(const SipAddress& address);

/// The text to dial for a number or an address; `std::nullopt` if it cannot be dialled. Addresses remain as
/// they are. Separators are removed from a number.
[[nodiscard]] std::optional<std::string> dialText(std::string_view number);

/// The id of a call at the CSTA link. It depends on the Call-ID and the direction only, so it survives a
/// restart of the gateway. Two calls never have the same one, nor do the two ends of a call to oneself.
[[nodiscard]] std::string cstaCallId(std::string_view sipId, bool outgoing);

}  // namespace host
