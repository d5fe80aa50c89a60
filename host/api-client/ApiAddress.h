#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/config/Endpoint.h"

namespace host {

/// The file DATA/api-address: the address of the HTTP API of the server that runs in a data directory, by
/// which its clients find it. The first text line is "http://127.0.0.1:8080"; of a server with TLS,
/// "https://127.0.0.1:8080", and the second one, else empty, is the pin of its certificate. The third one is
/// the configuration file that the server reads, if it reads one. Exists as long as this object,
/// which the server owns; a killed server leaves its file. One thread at a time.
class ApiAddressFile {
public:
    static constexpr const char* kName = "api-address";

    struct Address {
        std::string url;
        /// Of the server's public key, as curl takes it; empty without TLS.
        std::string pin;
        /// Absolute; empty without one.
        std::filesystem::path configuration;
    };

    /// The contents of the file.
    struct Server {
        /// The address that it listens on, with its port.
        Endpoint listening;
        /// Empty without TLS.
        std::string pin{};
        /// The configuration file that it reads; empty without one.
        std::filesystem::path configuration{};
    };

    /// Writes the file, with mode 0600. Throws `std::runtime_error` with a text for the user.
    ApiAddressFile(const std::filesystem::path& dataDirectory, const Server& server);
    /// Replaces the contents: for a certificate that was renewed. Throws as the constructor.
    void write(const Server& server) const;
    /// Removes the file.
    ~ApiAddressFile();
    ApiAddressFile(const ApiAddressFile&) = delete;
    ApiAddressFile& operator=(const ApiAddressFile&) = delete;

    /// Removes the file of a server that was killed. Requires: no server runs in the directory.
    static void removeStale(const std::filesystem::path& dataDirectory) noexcept;

    /// Returns the address in the file; std::nullopt if there is no file or no address in it.
    [[nodiscard]] static std::optional<Address> read(const std::filesystem::path& dataDirectory);

private:
    const std::filesystem::path m_path;
};

/// The URL of a server for clients on the same machine: one that listens on all addresses is reached through
/// the loopback address. Pure.
[[nodiscard]] std::string localUrl(const Endpoint& listening, bool isSecure = false);

}  // namespace host
