#pragma once

#include <string>

#include "host/history/PartyNotes.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class Router;

/// The numbers of the history and their notes. Thread-safe.
class PartiesResource {
public:
    /// As `PartyNotes`.
    PartiesResource(Database& database, const std::string& line, DigitAnalysisServiceIfc* digits)
        : m_notes(database, line, digits) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse party(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse setNote(const HttpRequest& request);

    PartyNotes m_notes;
};

}  // namespace host
