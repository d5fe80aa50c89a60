#include "host/tls/ServerCertificate.h"

#include <openssl/ssl.h>

#include <utility>

#include "host/tls/CertificateWarning.h"

namespace host {
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
    warnOfCertificate(m_files, facts, "clients refuse it");
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
