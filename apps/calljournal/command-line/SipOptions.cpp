#include "apps/calljournal/command-line/SipOptions.h"

#include <optional>
#include <stdexcept>
#include <system_error>

#include "host/config/DataDirectory.h"

namespace calljournal {

host::SipAccount readAccount(const std::string& account, const std::string& baresip) {
    const std::optional<host::SipAddress> address = host::parseSipAddress(account);
    if (address && host::hasPassword(account)) {
        throw host::ConfigurationError("the address must have no password: other users can read the command");
    }
    if (address && baresip.empty()) {
        throw host::ConfigurationError(account + ": an address without a file needs --baresip HOST:PORT");
    }
    host::SipAccount result;
    if (address) {
        result.address = *address;
        result.uri = account;
    } else {
        result = host::loadSipAccount(account);
    }
    if (!baresip.empty()) {
        result.baresip = host::parseEndpoint(baresip);
    }
    return result;
}

std::filesystem::path sipDirectory(const CommonOptions& common) {
    const std::filesystem::path directory = common.dataDirectory();
    host::makeDataDirectory(directory);
    return directory / "sip";
}

void startGateway(host::SipGateway& gateway, const host::Endpoint& listen) {
    try {
        gateway.start();
    } catch (const std::system_error& error) {
        throw std::runtime_error("cannot listen on " + listen.text() + ": " + error.what() +
                                 "; choose another address with --listen");
    }
}

}  // namespace calljournal
