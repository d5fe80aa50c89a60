#include "host/webhooks/Signature.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <array>
#include <new>
#include <stdexcept>
#include <system_error>

#include "host/config/ConfigurationError.h"
#include "host/text-files/WholeFile.h"
#include "platform/logging/Logging.h"

namespace host {

std::string signatureOf(const std::string& secret, std::int64_t timestamp, const std::string& body) {
    const std::string text = std::to_string(timestamp) + "." + body;
    std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
    unsigned length = 0;
    if (HMAC(EVP_sha256(), secret.data(), static_cast<int>(secret.size()),
             reinterpret_cast<const unsigned char*>(text.data()), text.size(), hash.data(),
             &length) == nullptr) {
        throw std::bad_alloc();
    }
    constexpr const char* kDigits = "0123456789abcdef";
    std::string signature = "sha256=";
    for (unsigned at = 0; at < length; ++at) {
        signature += {kDigits[hash.at(at) / 16], kDigits[hash.at(at) % 16]};
    }
    return signature;
}

std::string readSecret(const std::filesystem::path& file) {
    constexpr std::size_t kMostBytes = 4096;
    std::string secret;
    try {
        secret = readWholeFile(file, kMostBytes);
    } catch (const std::runtime_error& error) {
        throw ConfigurationError("webhook.secret-file " + file.string() + " cannot be read: " + error.what());
    }
    std::error_code error;
    const auto permissions = std::filesystem::status(file, error).permissions();
    if (!error && (permissions & std::filesystem::perms::others_read) != std::filesystem::perms::none) {
        logAppUni("Webhooks", __FILE_NAME__, 3, __LINE__, "every user can read %s", file.c_str());
    }
    while (!secret.empty() && (secret.back() == '\n' || secret.back() == '\r')) {
        secret.pop_back();
    }
    if (secret.empty()) {
        throw ConfigurationError("webhook.secret-file " + file.string() + " is empty");
    }
    return secret;
}

}  // namespace host
