#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "host/clock/SystemClock.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class Database;
class Router;

/// The number of calls of each list that began in each quarter of an hour. Counts all calls in the database,
/// which are more than the lists contain. Thread-safe.
class TimesResource {
public:
    /// All are borrowed and outlive the resource.
    struct Sources {
        std::string line;
        Database& database;
    };

    explicit TimesResource(Sources sources) : m_sources(std::move(sources)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse times(const HttpRequest& request);
    /// The begin of the period: the parameter "from", or four weeks ago.
    [[nodiscard]] std::chrono::sys_seconds startOf(const HttpRequest& request);
    [[nodiscard]] std::string textOf(std::chrono::sys_seconds time);

    const Sources m_sources;
    SystemClock m_clock;
};

}  // namespace host
