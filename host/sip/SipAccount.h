#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "host/config/ConfigurationError.h"
#include "host/config/Endpoint.h"
#include "host/sip/SipAddress.h"

namespace host {

/// The section `[sip]` of an account file (docs/sip.md). A plain value.
struct SipAccount {
    SipAddress address;
    /// `address` with its parameters, as it was written.
    std::string uri;
    /// The display name that others see; may be empty.
    std::string name;
    /// Empty: the account needs none.
    std::string password;
    /// The name for the password, if it is not the user of the address.
    std::string authUser;
    /// The proxy for all requests, "sip:proxy.example.org"; may be empty.
    std::string outbound;
    /// False for a telephone without a registrar.
    bool registers = true;
    /// The address for SIP; empty: the system chooses.
    std::string listen;
    /// "none", or a module and a device: "alsa,default".
    std::string audio = "none";
    /// A telephone that is running already. Its own configuration then applies.
    std::optional<Endpoint> baresip;

    /// The monitored device: the user part of the address.
    [[nodiscard]] std::string device() const;
};

/// Reads an account file. Throws `ConfigurationError` with file, line and key. The password is in another
/// file, which only its owner may read.
[[nodiscard]] SipAccount loadSipAccount(const std::filesystem::path& file);
/// The same from TOML text. `file` is the name for messages, and the directory of a relative password file.
[[nodiscard]] SipAccount readSipAccount(std::string_view toml, const std::filesystem::path& file);

}  // namespace host
