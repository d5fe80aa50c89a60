#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/config/Configuration.h"
#include "host/remote/ServerSocket.h"

namespace calljournal {

/// Everything that `serve` runs: the database, the service library, the line, and the server for remote clients.
///
/// Threads: made, started and stopped by the main thread.
class JournalServer {
public:
    /// Claims `dataDirectory`, which is made when it is not there. Done before anything is opened there. Throws
    /// `RemoteError` when a server is running in it.
    [[nodiscard]] static std::unique_ptr<host::ServerSocket> claim(
        const std::filesystem::path& dataDirectory);

    /// Opens the database and loads the library. `socket` is borrowed and outlives the server. Throws what can go wrong
    /// with a text for the user.
    JournalServer(const host::Configuration& configuration, const std::filesystem::path& dataDirectory,
                  host::ServerSocket& socket);
    /// Stops the server if it still runs.
    ~JournalServer();
    JournalServer(const JournalServer&) = delete;
    JournalServer& operator=(const JournalServer&) = delete;

    /// `listener` is told every change of the journal in a sentence, on whichever thread makes it. Before `start`.
    void setChangeListener(std::function<void(const std::string&)> listener);

    /// Returns when the journal is loaded and clients are served; the switch is connected to meanwhile or later.
    void start();

    /// Where the HTTP face is, once started.
    struct HttpAddress {
        host::Endpoint endpoint;
        std::optional<std::string> token;

        /// "http://127.0.0.1:8080/".
        [[nodiscard]] std::string text() const;
        /// The same with the token, for a browser that has none yet.
        [[nodiscard]] std::string signInText() const;
    };
    [[nodiscard]] HttpAddress httpAddress() const;
    /// Ends what `start` began, in reverse order: when it returns, every change that a client was told of is stored, and
    /// nothing runs any more. Idempotent.
    void stop();

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace calljournal
