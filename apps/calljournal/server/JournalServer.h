#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/config/Configuration.h"
#include "host/http/resources/StatusResource.h"
#include "host/remote/ServerSocket.h"

namespace calljournal {

/// The components of `serve`: the database, the service library, the lines, the HTTP API, and the server for
/// remote clients. Construct, start and stop from the main thread.
class JournalServer {
public:
    /// Claims `dataDirectory` for this process, and creates it if it does not exist. Call before any file in
    /// it is opened. Throws `RemoteError` if a server is running there.
    [[nodiscard]] static std::unique_ptr<host::ServerSocket> claim(
        const std::filesystem::path& dataDirectory);

    /// The database in a data directory.
    [[nodiscard]] static std::filesystem::path databaseIn(const std::filesystem::path& dataDirectory);

    /// True if the name is that of a file which the server has, makes or keeps in its data directory.
    [[nodiscard]] static bool isOwnFile(const std::filesystem::path& dataDirectory,
                                        const std::filesystem::path& file);

    /// Opens the database and loads the library. `socket` is borrowed and outlives the server. Throws a
    /// `std::exception` with a text for the user.
    JournalServer(const host::Configuration& configuration, const std::filesystem::path& dataDirectory,
                  host::ServerSocket& socket);
    /// Calls `stop`.
    ~JournalServer();
    JournalServer(const JournalServer&) = delete;
    JournalServer& operator=(const JournalServer&) = delete;

    /// Sets a listener that gets a sentence about each change of the journal, on the thread that makes the
    /// change. Call before `start`.
    void setChangeListener(std::function<void(const std::string&)> listener);
    /// Sets a function that returns the state of the telephone that the program runs. Any thread may call it
    /// until `stop` returns. Call before `start`.
    void setTelephone(std::function<host::TelephoneState()> telephone);
    /// Sets the configuration file that `doctor` finds as the one of this server; empty for none. Call before
    /// `start`.
    void setConfigurationFile(std::filesystem::path file);

    /// Returns when the journal is loaded and clients are served. The connection to the switch is made
    /// asynchronously.
    void start();

    /// The address of the HTTP API. Valid after `start`.
    struct HttpAddress {
        host::Endpoint endpoint;
        std::optional<std::string> token;
        bool isSecure = false;

        /// "http://127.0.0.1:8080/".
        [[nodiscard]] std::string text() const;
        /// The same with the token, for a browser that has no cookie yet.
        [[nodiscard]] std::string signInText() const;
    };
    [[nodiscard]] HttpAddress httpAddress() const;
    /// Reads the named tokens and the server's certificate again. Throws `TlsError` if the certificate cannot
    /// be used; the former one stays.
    void reload();
    /// Reports to the service manager that the service works, from one of the threads that do the work of the
    /// line.
    void reportAlive();

    /// Stops the components in reverse order; afterwards no thread of the server runs. Every change that a
    /// client was notified of is then stored, except for those whose number it returns: the database has
    /// refused them, the last five seconds too. Idempotent.
    [[nodiscard]] std::size_t stop();
    /// Does the same and prints on standard error the changes that are not stored, and those that were lost
    /// since the start. Returns the exit status, which is 1 if there are any.
    [[nodiscard]] int end();

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace calljournal
