#pragma once

#include <string>
#include <utility>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

namespace host {

class Database;
class LocalManagement;
class Router;

/// When people call: how many calls of each list began in which quarter of an hour. Counts what the database has, which
/// is more than the lists show. Threads: any.
class TimesResource {
public:
    /// All is borrowed and outlives the resource. The management says which zone the local times of a switch are in.
    struct Sources {
        std::string line;
        Database& database;
        const LocalManagement& management;
    };

    explicit TimesResource(Sources sources) : m_sources(std::move(sources)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse times(const HttpRequest& request) const;

    const Sources m_sources;
};

}  // namespace host
