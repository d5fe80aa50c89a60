#include "host/api-client/ApiAddress.h"

#include <fstream>
#include <system_error>

#include "host/config/FileReplacement.h"

namespace host {
namespace {

constexpr const char* kScheme = "http://";
constexpr const char* kSecureScheme = "https://";

}  // namespace

ApiAddressFile::ApiAddressFile(const std::filesystem::path& dataDirectory, const Server& server)
    : m_path(dataDirectory / kName) {
    write(server);
}

void ApiAddressFile::write(const Server& server) const {
    std::string text = localUrl(server.listening, !server.pin.empty()) + "\n";
    if (!server.pin.empty() || !server.configuration.empty()) {
        text += server.pin + "\n";
    }
    if (!server.configuration.empty()) {
        text += std::filesystem::absolute(server.configuration).string() + "\n";
    }
    replaceFile(m_path, text);
}

ApiAddressFile::~ApiAddressFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void ApiAddressFile::removeStale(const std::filesystem::path& dataDirectory) noexcept {
    std::error_code ignored;
    std::filesystem::remove(dataDirectory / kName, ignored);
}

std::optional<ApiAddressFile::Address> ApiAddressFile::read(const std::filesystem::path& dataDirectory) {
    std::ifstream file(dataDirectory / kName);
    Address address;
    if (!std::getline(file, address.url) ||
        !(address.url.starts_with(kScheme) || address.url.starts_with(kSecureScheme))) {
        return std::nullopt;
    }
    std::getline(file, address.pin);
    if (std::string configuration; std::getline(file, configuration)) {
        address.configuration = configuration;
    }
    return address;
}

std::string localUrl(const Endpoint& listening, bool isSecure) {
    Endpoint local = listening;
    if (local.host == "0.0.0.0") {
        local.host = "127.0.0.1";
    } else if (local.host == "::") {
        local.host = "::1";
    }
    return (isSecure ? kSecureScheme : kScheme) + local.text();
}

}  // namespace host
