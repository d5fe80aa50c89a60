#pragma once

#include <string>

#include "journalservice/JournalServiceQorvex.h"

/// The service variant that the framework gets from `createJournalService`. It loads all lists, and the contacts that
/// their calls refer to, with two read requests of at most 200 rows together, and it does so at every subscription: this
/// load does not count as one that need not be repeated.
///
/// So the lists hold the newest entries of the database, not all of it. Older ones stay there: they come back into view
/// when newer ones are gone, and one whose party calls again is found and merged (`journal::UnloadedEntries`).
///
/// Threads: `loadCallListsFromDb` as in the base; it is one change of the lists, so that no call that is filed and no
/// deletion that is made meanwhile is lost. The other loading steps are for the thread that loads. The requests run, and the
/// answers are parsed, with no list locked; each list is locked only while it is emptied or filled.
class JournalServiceQorvexTel : public JournalServiceQorvex {
public:
    explicit JournalServiceQorvexTel(ObserverNotifierIfc* notifier) : JournalServiceQorvex(notifier) {}

    /// The whole load. A read that fails leaves the lists as they are; what a second read brings is added in any case.
    void loadCallListsFromDb() override;

    /// `<name>value</name>`, the value escaped, the name as it is.
    [[nodiscard]] std::string buildXmlElement(const std::string& name, const std::string& value) const;
    /// The beginning of a request: XML declaration, the opening `Schema` tag with the name as it is, and the reason.
    [[nodiscard]] std::string buildXmlHeader(const std::string& schemaName, const std::string& reason) const;
    /// Sends one read request; answers the response as it came.
    [[nodiscard]] std::string loadCallLists(const std::string& schemaName, const std::string& resultCols,
                                            unsigned rowLimit) const;
    /// The same for all columns of calls and phonebook.
    [[nodiscard]] std::string loadCallLists(const std::string& schemaName, unsigned rowLimit) const;
    /// Whether the response may be parsed: it is not the failure text and says "failure" nowhere.
    [[nodiscard]] bool ifNotReadFailure(const std::string& response) const;

    /// Empties the four call lists and the contact list; the callbacks stay.
    void clearPreviousCachedData() const;
    /// Adds what the response holds behind what the lists hold, and brings them into order. Answers how many items
    /// the four lists have then, before those without occurrences are dropped.
    unsigned processReadResponse(const std::string& response);

private:
    /// The last response could be parsed to its end. Guarded by the change that a load is.
    bool m_wholeResponse = true;
};
