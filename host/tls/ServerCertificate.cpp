#include "host/tls/ServerCertificate.h"

#include <openssl/ssl.h>

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

ServerCertificate::ServerCertificate(CertificateFiles files, std::filesystem::path clientAuthorities)
    : m_files(std::move(files)), m_clientAuthorities(std::move(clientAuthorities)) {
    reload();
}

void ServerCertificate::reload() {
    auto context = tlsContext(asio::ssl::context::tls_server);
    useCertificate(*context, m_files);
    if (!m_clientAuthorities.empty()) {
        requirePeerOf(*context, m_clientAuthorities);
        // Clients whose certificate was checked are not resumed, which would need the name of a context.
        context->set_options(SSL_OP_NO_TICKET);
        SSL_CTX_set_session_cache_mode(context->native_handle(), SSL_SESS_CACHE_OFF);
    }
    CertificateFacts facts = factsOfCertificate(m_files.certificate);
    warn(m_files, facts);
    const std::lock_guard lock(m_mutex);
    m_context = std::move(context);
    m_pin = std::move(facts.pin);
    m_hostName = std::move(facts.hostName);
}

std::shared_ptr<asio::ssl::context> ServerCertificate::context() const {
    const std::lock_guard lock(m_mutex);
    return m_context;
}

std::string ServerCertificate::hostName() const {
    const std::lock_guard lock(m_mutex);
    return m_hostName;
}

std::string ServerCertificate::pin() const {
    const std::lock_guard lock(m_mutex);
    return m_pin;
}

}  // namespace host
