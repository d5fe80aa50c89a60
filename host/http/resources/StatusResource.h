#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

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

/// The state of the line. Thread-safe.
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

private:
    [[nodiscard]] HttpResponse status(const HttpRequest& request) const;

    const Sources m_sources;
};

}  // namespace host
