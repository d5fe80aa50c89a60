#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "host/presentation/ListName.h"

namespace host {

class Database;
class LocalManagement;
class Router;
class StoredLists;

/// The telephone that the program itself runs.
struct TelephoneState {
    /// Calls can be placed with it.
    bool isReady = false;
    /// "ready", "registering", "not-registered" or "not-running".
    std::string word{};
    /// Why it is not ready; may be empty.
    std::string reason{};
};

struct LineState {
    bool connected = false;
    bool monitoring = false;
    /// Calls can be placed at the switch, as far as is known.
    bool callControl = false;
    std::size_t liveCallCount = 0;
    /// std::nullopt: the telephone belongs to the switch.
    std::optional<TelephoneState> telephone{};
};

/// The state of the line and the health of the service. Thread-safe.
class StatusResource {
public:
    /// All are borrowed and outlive the resource.
    struct Sources {
        std::string line;
        std::function<LineState()> lineState;
        const StoredLists& storedLists;
        LocalManagement& management;
        Database& database;
        /// Of the program.
        std::string version{};
    };

    explicit StatusResource(Sources sources) : m_sources(std::move(sources)) {}

    void addRoutes(Router& router);

    // Both throw `HttpError` 503 if the database fails.

    /// The number of entries in each list.
    [[nodiscard]] std::map<ListName, std::size_t> entries() const;
    /// The number of missed entries that are not viewed.
    [[nodiscard]] std::size_t unviewed() const;

private:
    [[nodiscard]] HttpResponse health();
    [[nodiscard]] HttpResponse status(const HttpRequest& request) const;

    const Sources m_sources;
    /// Held during the database probe; at most one worker probes at a time.
    std::mutex m_probeMutex;
};

}  // namespace host
