#pragma once

#include <string>

namespace CLI {
class App;
}

namespace host {

/// Adds an option that takes ADDR:PORT and refuses anything else as wrong usage; read `value` with `parseEndpoint`.
void addEndpointOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help);

}  // namespace host
