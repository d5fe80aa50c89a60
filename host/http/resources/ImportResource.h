#pragma once

#include "host/call-import/ImportSession.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class Router;

/// The import of calls into the history. Thread-safe.
class ImportResource {
public:
    /// The entries are borrowed and outlive the resource.
    explicit ImportResource(StoredEntries& entries) : m_import(entries) {}

    /// Requires: routes with "/api/v1/calls/{id}" are added later.
    void addRoutes(Router& router);
    /// As `ImportSession`.
    void stop() { m_import.stop(); }

private:
    [[nodiscard]] HttpResponse importCalls(const HttpRequest& request);

    ImportSession m_import;
};

}  // namespace host
