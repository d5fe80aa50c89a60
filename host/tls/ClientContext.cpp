#include "host/tls/ClientContext.h"

#include "host/tls/Certificates.h"

namespace host {

std::shared_ptr<asio::ssl::context> clientContext(const ServerTrust& trust) {
    auto context = tlsContext(asio::ssl::context::tls_client);
    requirePeerOf(*context, trust.authorities);
    if (!trust.own.certificate.empty()) {
        useCertificate(*context, trust.own);
    }
    return context;
}

}  // namespace host
