#include "apps/calljournal/command-line/EndpointOption.h"

#include <CLI/CLI.hpp>

#include "host/config/Endpoint.h"

namespace calljournal {
namespace {

void addOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help,
               const char* shape, bool anyPort) {
    const auto check = [shape, anyPort](const std::string& text) {
        const auto endpoint = host::parseEndpoint(text);
        return endpoint && (anyPort || endpoint->port > 0)
                   ? std::string()
                   : text + " is not " + shape + " (such as 127.0.0.1:4242)";
    };
    app.add_option(name, value, help)
        ->type_name(shape)
        ->check(std::function<std::string(const std::string&)>(check));
}

}  // namespace

void addListenOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help) {
    addOption(app, name, value, help, "ADDR:PORT", true);
}

void addPeerOption(CLI::App& app, const std::string& name, std::string& value, const std::string& help) {
    addOption(app, name, value, help, "HOST:PORT", false);
}

}  // namespace calljournal
