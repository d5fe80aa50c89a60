#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/http/HttpServer.h"
#include "host/http/StatusResource.h"

class JournalServiceIfc;

namespace host {

class Database;
class LocalManagement;
class Metrics;
class Phonebook;
class Router;

/// What the HTTP face serves. Everything is borrowed and outlives the face.
struct HttpBackend {
    std::string line;
    JournalServiceIfc& journal;
    LocalManagement& management;
    Phonebook& phonebook;
    Database& database;
    Metrics& metrics;
    std::function<LineState()> lineState;
    /// How many clients are connected through the other door.
    std::function<std::size_t()> remoteClients;
};

struct HttpApiSettings {
    HttpServerSettings server;
    /// Without one nobody is asked for it.
    std::optional<std::string> token;
    /// Where the files of the page are.
    std::filesystem::path page;
};

/// The HTTP face of one line (docs/http-api.md): the resources behind their routes, the event stream, the page.
///
/// The road of a request: the size of its body, where it comes from (`Authenticator`), its route, its token, its line; then the
/// resource. Whatever one of them throws becomes an error answer.
///
/// Threads: made, started and stopped by one thread.
class HttpApi {
public:
    /// Throws `HttpServerError` when the address is taken.
    HttpApi(HttpBackend backend, HttpApiSettings settings);
    /// Stops the face if it still runs.
    ~HttpApi();
    HttpApi(const HttpApi&) = delete;
    HttpApi& operator=(const HttpApi&) = delete;

    /// Subscribes with the journal and answers where it listens. Throws `HttpServerError`.
    Endpoint start();
    /// Unsubscribes and ends every connection. Idempotent.
    void stop();

    /// Tells the clients of the event stream to read the lists again. To be called when somebody may have made the journal
    /// change them without a word to its observers: once it is done, from any thread, while the face is there.
    void resync();

    /// Everything that is served, apart from the files of the page.
    [[nodiscard]] const Router& routes() const noexcept;

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
