#include "host/http/HealthRoute.h"

#include <cstddef>
#include <string>

#include "host/database/Database.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/Router.h"

namespace host {

void HealthRoute::addRoutes(Router& router) {
    router.add({"GET", "/healthz", Scope::eNone, [this](const HttpRequest& /*each*/) { return health(); }});
}

HttpResponse HealthRoute::health() {
    // The request needs no token. While the database is locked, a probe blocks for seconds; only one worker
    // may block.
    const std::unique_lock probing(m_probeMutex, std::try_to_lock);
    if (!(probing ? m_database.probe() : m_database.healthy())) {
        const std::size_t kept = m_database.keptCount();
        throw HttpError(503, "database",
                        kept > 0 ? "the database refuses changes; " + std::to_string(kept) +
                                       " are kept in memory and repeated; see the log"
                                 : "the database does not respond; see the log");
    }
    HttpResponse response;
    response.contentType = "text/plain; charset=utf-8";
    response.body = "ok\n";
    return response;
}

}  // namespace host
