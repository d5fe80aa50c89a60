#pragma once

#include <filesystem>
#include <string>

namespace host {

/// A certificate with its key, as two files in PEM form. The certificate may be followed by those of its
/// authorities. Both are empty for none.
struct CertificateFiles {
    std::filesystem::path certificate;
    std::filesystem::path key;

    bool operator==(const CertificateFiles&) const = default;
};

/// The rules by which a client checks the server that it connects to over TLS, and its own certificate. A
/// plain value.
struct ServerTrust {
    /// The certificates of the authorities that it trusts, in one file in PEM form; empty for those of the
    /// system.
    std::filesystem::path authorities;
    /// The name that the certificate must have; empty for the host that the client connects to.
    std::string name;
    /// The client's own certificate.
    CertificateFiles own;

    bool operator==(const ServerTrust&) const = default;
};

}  // namespace host
