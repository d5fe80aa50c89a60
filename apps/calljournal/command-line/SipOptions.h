#pragma once

#include <filesystem>
#include <string>

#include "apps/calljournal/command-line/Command.h"
#include "host/config/Endpoint.h"
#include "host/sip/SipAccount.h"
#include "host/sip/SipGateway.h"

namespace calljournal {

/// The account in a file, or with an address ("sip:alice@example.org") instead of the file, that of a running
/// telephone. `baresip` is HOST:PORT of its control port, which overrides the file; empty for none. Throws
/// `ConfigurationError`.
[[nodiscard]] host::SipAccount readAccount(const std::string& account, const std::string& baresip);

/// The directory of the telephone's configuration. Creates the data directory.
[[nodiscard]] std::filesystem::path sipDirectory(const CommonOptions& common);

/// Throws `std::runtime_error` with a text for the user if it cannot listen there.
void startGateway(host::SipGateway& gateway, const host::Endpoint& listen);

}  // namespace calljournal
