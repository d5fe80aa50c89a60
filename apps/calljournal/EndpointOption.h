#pragma once

#include <string>

namespace CLI {
class App;
}

namespace calljournal {

/// Adds an option that takes ADDR:PORT, where a server listens, and refuses anything else as wrong usage; read `value` with
/// `parseEndpoint`. Port 0 is a free one.
void addListenOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help);

/// The same for HOST:PORT, which a client connects to; the port is from 1 on.
void addPeerOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help);

}  // namespace calljournal
