#include "host/tls/CertificateWarning.h"

#include <chrono>
#include <filesystem>

#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr std::chrono::days kSoon{14};

}  // namespace

void warnOfCertificate(const CertificateFiles& files, const CertificateFacts& facts,
                       const std::string& effect) {
    const auto now = std::chrono::system_clock::now();
    std::string problem;
    if (facts.notAfter <= now) {
        problem = "has expired; " + effect;
    } else if (facts.notBefore > now) {
        problem = "is not valid yet; " + effect;
    } else if (facts.notAfter - now < kSoon) {
        problem = "expires in less than two weeks";
    }
    if (!problem.empty()) {
        logAppUni("TLS", __FILE_NAME__, 3, __LINE__, "the certificate %s %s", files.certificate.c_str(),
                  problem.c_str());
    }
    using std::filesystem::perms;
    std::error_code ignored;
    if ((std::filesystem::status(files.key, ignored).permissions() & perms::others_read) != perms::none) {
        logAppUni("TLS", __FILE_NAME__, 3, __LINE__,
                  "every user of this machine can read the key %s; chmod 640", files.key.c_str());
    }
}

}  // namespace host
