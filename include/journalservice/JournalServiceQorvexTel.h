#pragma once

#include <string>

#include "journalservice/JournalServiceQorvex.h"

/// The service variant that `createJournalService` returns. At every subscription it loads all lists, and the
/// contacts of their calls, with two read requests of at most 200 rows together.
///
/// So the lists contain the newest entries of the database, not all of them. The other entries stay in the
/// database: they are loaded when newer entries are deleted, and an entry whose party calls again is found
/// and merged (`journal::UnloadedEntries`).
///
/// Thread-safe. A load is one change of the lists, so that no concurrent entry or deletion is lost. It
/// prepares the new contents aside and swaps them in at the end: no list is locked while a request runs or a
/// response is parsed, and no reader sees a list empty or half filled because of a load.
class JournalServiceQorvexTel : public JournalServiceQorvex {
public:
    explicit JournalServiceQorvexTel(ObserverNotifierIfc* notifier) : JournalServiceQorvex(notifier) {}

    /// Loads all lists. A failed first read leaves the lists unchanged; the items of the second read are
    /// added in any case.
    void loadCallListsFromDb() override;

    /// Returns `<name>value</name>`, with the value escaped and the name unchanged.
    [[nodiscard]] std::string buildXmlElement(const std::string& name, const std::string& value) const;
    /// Returns the beginning of a request: XML declaration, opening `Schema` tag with the unchanged name, and
    /// the reason.
    [[nodiscard]] std::string buildXmlHeader(const std::string& schemaName, const std::string& reason) const;
    /// Sends one read request and returns the unchanged response.
    [[nodiscard]] std::string loadCallLists(const std::string& schemaName, const std::string& resultCols,
                                            unsigned rowLimit) const;
    /// The same, for all columns of calls and phonebook.
    [[nodiscard]] std::string loadCallLists(const std::string& schemaName, unsigned rowLimit) const;
    /// True if the response can be parsed: it is not the failure text and does not contain "failure".
    [[nodiscard]] bool ifNotReadFailure(const std::string& response) const;

    /// Empties the four call lists and the contact list; the callbacks stay.
    void clearPreviousCachedData() const;
    /// Appends the items of the response to the lists and normalises the lists. Returns the number of items
    /// in the four lists before normalisation, which drops items without occurrences.
    unsigned processReadResponse(const std::string& response);
};
