#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"
#include "host/presentation/ListName.h"

class JournalServiceIfc;

namespace host {

class Database;
class LocalManagement;
class Router;

/// What a line is doing just now.
struct LineState {
    bool connected = false;
    bool monitoring = false;
    std::size_t callsUp = 0;
};

/// How the line and the service are. Threads: any.
class StatusResource {
public:
    /// All is borrowed and outlives the resource.
    struct Sources {
        std::string line;
        std::function<LineState()> lineState;
        JournalServiceIfc& journal;
        LocalManagement& management;
        Database& database;
    };

    explicit StatusResource(Sources sources) : m_sources(std::move(sources)) {}

    void addRoutes(Router& router);

    /// How many entries each list has.
    [[nodiscard]] std::map<ListName, std::size_t> entries() const;
    /// How many missed entries nobody has looked at.
    [[nodiscard]] std::size_t unviewed() const;

private:
    [[nodiscard]] HttpResponse health();
    [[nodiscard]] HttpResponse status() const;

    const Sources m_sources;
    /// Held by whoever tries the database.
    std::mutex m_probeMutex;
};

}  // namespace host
