#pragma once

#include <string>

#include "host/history/PartyNotes.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class NumberTexts;
class Phonebook;
class Router;

/// The numbers of the history and their notes. Thread-safe.
class PartiesResource {
public:
    /// All are borrowed and outlive the resource; the first three as those of `PartyNotes`.
    struct Sources {
        Database& database;
        const std::string& line;
        DigitAnalysisServiceIfc* digits;
        Phonebook& phonebook;
        NumberTexts& numbers;
    };
    explicit PartiesResource(const Sources& sources)
        : m_notes(sources.database, sources.line, sources.digits),
          m_phonebook(sources.phonebook),
          m_numbers(sources.numbers) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse party(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse setNote(const HttpRequest& request);

    PartyNotes m_notes;
    Phonebook& m_phonebook;
    NumberTexts& m_numbers;
};

}  // namespace host
