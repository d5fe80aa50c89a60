#include "host/api-client/ApiAddress.h"

#include <fstream>
#include <system_error>

#include "host/config/FileReplacement.h"

namespace host {
namespace {

constexpr const char* kScheme = "http://";

}  // namespace

ApiAddressFile::ApiAddressFile(const std::filesystem::path& dataDirectory, const Endpoint& listening)
    : m_path(dataDirectory / kName) {
    replaceFile(m_path, localUrl(listening) + "\n");
}

ApiAddressFile::~ApiAddressFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void ApiAddressFile::removeStale(const std::filesystem::path& dataDirectory) noexcept {
    std::error_code ignored;
    std::filesystem::remove(dataDirectory / kName, ignored);
}

std::optional<std::string> ApiAddressFile::read(const std::filesystem::path& dataDirectory) {
    std::ifstream file(dataDirectory / kName);
    std::string url;
    if (!std::getline(file, url) || url.rfind(kScheme, 0) != 0) {
        return std::nullopt;
    }
    return url;
}

std::string localUrl(const Endpoint& listening) {
    Endpoint local = listening;
    if (local.host == "0.0.0.0") {
        local.host = "127.0.0.1";
    } else if (local.host == "::") {
        local.host = "::1";
    }
    return kScheme + local.text();
}

}  // namespace host
