#include "host/tls/ClientContext.h"

#include "host/tls/Certificates.h"
#include "host/tls/TlsError.h"

namespace host {

std::shared_ptr<asio::ssl::context> clientContext(const ServerTrust& trust) {
    auto context = tlsContext(asio::ssl::context::tls_client);
    std::error_code error;
    if (trust.authorities.empty()) {
        context->set_default_verify_paths(error);
    } else {
        context->load_verify_file(trust.authorities.string(), error);
    }
    if (error) {
        throw TlsError("the authorities in " + trust.authorities.string() +
                       " cannot be read: " + error.message());
    }
    context->set_verify_mode(asio::ssl::verify_peer);
    if (!trust.own.certificate.empty()) {
        useCertificate(*context, trust.own);
    }
    return context;
}

}  // namespace host
