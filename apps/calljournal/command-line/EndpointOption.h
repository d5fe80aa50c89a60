#pragma once

#include <string>

namespace CLI {
class App;
}

namespace calljournal {

/// Adds an option for the listening address of a server, ADDR:PORT; any other text is wrong usage. Port 0
/// selects a free port. Parse `value` with `parseEndpoint`.
void addListenOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help);

/// The same for the address that a client connects to, HOST:PORT; the port is not 0.
void addPeerOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help);

}  // namespace calljournal
