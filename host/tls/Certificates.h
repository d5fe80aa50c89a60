#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <asio/ssl/context.hpp>

#include "host/tls/TlsFiles.h"

namespace host {

/// The times and the key of a certificate.
struct CertificateFacts {
    std::chrono::sys_seconds notBefore;
    std::chrono::sys_seconds notAfter;
    /// The SHA-256 of its public key, as curl takes it: "sha256//" and Base64.
    std::string pin;
    /// Its first host name without a wildcard; empty if it has none.
    std::string hostName;
};

/// Returns a context for TLS 1.2 or later that knows no certificate yet. Throws `TlsError`.
[[nodiscard]] std::shared_ptr<asio::ssl::context> tlsContext(asio::ssl::context::method method);

/// Gives the context the certificate and the key. Throws `TlsError` if a file cannot be read, is none of that
/// kind, or if the two do not belong together.
void useCertificate(asio::ssl::context& context, const CertificateFiles& files);

/// Makes the context check the certificate of its peers, which must have one of an authority in the file; an
/// empty path for the authorities of the system. Throws `TlsError`.
void requirePeerOf(asio::ssl::context& context, const std::filesystem::path& authorities);

/// Returns the facts of the first certificate in a file. Throws `TlsError`.
[[nodiscard]] CertificateFacts factsOfCertificate(const std::filesystem::path& file);

}  // namespace host
