#include "apps/calljournal/EndpointOption.h"

#include <CLI/CLI.hpp>

#include "host/config/Endpoint.h"

namespace host {

void addEndpointOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help) {
    app.add_option(name, value, help)
        ->type_name("ADDR:PORT")
        ->check(std::function<std::string(const std::string&)>([](const std::string& text) {
            return parseEndpoint(text) ? std::string() : text + " is not ADDR:PORT (such as 127.0.0.1:4242)";
        }));
}

}  // namespace host
