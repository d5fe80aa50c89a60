#include "host/api-client/ApiAddress.h"

#include <fstream>
#include <system_error>

#include "host/config/FileReplacement.h"

namespace host {
namespace {

constexpr const char* kScheme = "http://";
constexpr const char* kSecureScheme = "https://";

}  // namespace

ApiAddressFile::ApiAddressFile(const std::filesystem::path& dataDirectory, const Endpoint& listening,
                               const std::string& pin)
    : m_path(dataDirectory / kName) {
    write(listening, pin);
}

void ApiAddressFile::write(const Endpoint& listening, const std::string& pin) const {
    replaceFile(m_path, localUrl(listening, !pin.empty()) + "\n" + (pin.empty() ? "" : pin + "\n"));
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
