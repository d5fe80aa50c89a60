#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

#include <asio/ssl/context.hpp>

#include "host/tls/Certificates.h"

namespace host {

/// The certificate of a server, which can be renewed while it runs. Any thread may call.
class ServerCertificate {
public:
    /// Reads the files. Throws `TlsError`. Logs a warning for a certificate that is not valid now, or not for
    /// two weeks more, and for a key that others can read.
    /// With `clientAuthorities`, a file in PEM form, clients must show a certificate of one of them.
    explicit ServerCertificate(CertificateFiles files, std::filesystem::path clientAuthorities = {});

    /// Reads the files again, for the connections that begin later. Throws `TlsError`, and the former
    /// certificate stays.
    void reload();

    /// The context of new connections.
    [[nodiscard]] std::shared_ptr<asio::ssl::context> context() const;
    /// The pin of the public key (`CertificateFacts`).
    [[nodiscard]] std::string pin() const;
    /// The host name of the certificate (`CertificateFacts`).
    [[nodiscard]] std::string hostName() const;

private:
    const CertificateFiles m_files;
    const std::filesystem::path m_clientAuthorities;
    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::shared_ptr<asio::ssl::context> m_context;
    std::string m_pin;
    std::string m_hostName;
};

}  // namespace host
