#include "host/tls/StreamSocket.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <asio/ip/address.hpp>

namespace host {

void StreamSocket::encrypt(Context context) {
    m_layers->context = std::move(context);
    m_layers->tls.emplace(m_layers->socket, *m_layers->context);
}

void StreamSocket::expectServer(const std::string& server) {
    SSL* const session = m_layers->tls->native_handle();
    std::error_code isName;
    static_cast<void>(asio::ip::make_address(server, isName));
    if (isName) {
        // The macro of this function has an old-style cast.
        std::string name = server;
        SSL_ctrl(session, SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name, name.data());
        SSL_set1_host(session, server.c_str());
    } else {
        X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(session), server.c_str());
    }
}

std::string StreamSocket::reasonOf(const std::error_code& error) const {
    if (m_layers->tls) {
        const long verified = SSL_get_verify_result(m_layers->tls->native_handle());
        if (verified != X509_V_OK) {
            return std::string("its certificate is refused: ") + X509_verify_cert_error_string(verified);
        }
    }
    return "the TLS handshake fails: " + error.message();
}

}  // namespace host
