#pragma once

#include <mutex>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class Database;
class Router;

/// The health of the service, for probes. Thread-safe.
class HealthRoute {
public:
    /// The database is borrowed.
    explicit HealthRoute(Database& database) : m_database(database) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse health();

    Database& m_database;
    /// Held during the database probe; at most one worker probes at a time.
    std::mutex m_probeMutex;
};

}  // namespace host
