#include "host/tls/ServerCertificate.h"

#include <utility>

#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr std::chrono::days kSoon{14};

void warn(const CertificateFiles& files, const CertificateFacts& facts) {
    const auto now = std::chrono::system_clock::now();
    const char* problem = nullptr;
    if (facts.notAfter <= now) {
        problem = "has expired; clients refuse it";
    } else if (facts.notBefore > now) {
        problem = "is not valid yet; clients refuse it";
    } else if (facts.notAfter - now < kSoon) {
        problem = "expires in less than two weeks";
    }
    if (problem != nullptr) {
        logAppUni("TLS", __FILE_NAME__, 3, __LINE__, "the certificate %s %s", files.certificate.c_str(),
                  problem);
    }
    using std::filesystem::perms;
    std::error_code ignored;
    if ((std::filesystem::status(files.key, ignored).permissions() & perms::others_read) != perms::none) {
        logAppUni("TLS", __FILE_NAME__, 3, __LINE__,
                  "every user of this machine can read the key %s; chmod 640", files.key.c_str());
    }
}

}  // namespace

ServerCertificate::ServerCertificate(CertificateFiles files) : m_files(std::move(files)) {
    reload();
}

void ServerCertificate::reload() {
    auto context = tlsContext(asio::ssl::context::tls_server);
    useCertificate(*context, m_files);
    CertificateFacts facts = factsOfCertificate(m_files.certificate);
    warn(m_files, facts);
    const std::lock_guard lock(m_mutex);
    m_context = std::move(context);
    m_pin = std::move(facts.pin);
}

std::shared_ptr<asio::ssl::context> ServerCertificate::context() const {
    const std::lock_guard lock(m_mutex);
    return m_context;
}

std::string ServerCertificate::pin() const {
    const std::lock_guard lock(m_mutex);
    return m_pin;
}

}  // namespace host
