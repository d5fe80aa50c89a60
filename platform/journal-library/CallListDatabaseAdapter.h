#pragma once

#include <deque>
#include <string>

#include "journal-items/MissedCallItem.h"

class DataAccessServiceIfc;

/// Writes changes of the journal into request documents and sends them to the database.
///
/// Threads: call the constructor and `init` before anything else. Afterwards every operation is thread-safe:
/// the adapter holds only the pointer. Lists that are passed belong to the caller, who synchronises them.
/// Every operation may wait for the disk.
///
/// Errors: no operation throws. A missing service, or one that throws, gives "failed" and a log text.
class CallListDatabaseAdapter {
public:
    CallListDatabaseAdapter() = default;
    CallListDatabaseAdapter(const CallListDatabaseAdapter&) = delete;
    CallListDatabaseAdapter& operator=(const CallListDatabaseAdapter&) = delete;
    virtual ~CallListDatabaseAdapter() = default;

    /// `service` is borrowed and outlives the adapter; null means that there is no database.
    void init(DataAccessServiceIfc* service) noexcept { m_service = service; }

    /// Sends one request document. Returns the response document, or "failed".
    [[nodiscard]] virtual std::string processRequest(const std::string& request) const;

    /// Sends `entries` (`ENTRY` elements, or `CallListDatabaseAdapterHelper::allEntries()`) to `table` as a
    /// request of that type. Refuses a delete request without entries: returns "failed" and sends nothing.
    [[nodiscard]] virtual std::string updateEntries(const std::string& entries,
                                                    const std::string& requestType,
                                                    const std::string& table) const;

    /// Replaces `list` by the missed calls of a response document and normalises it. An unreadable document
    /// leaves the list empty.
    virtual void processMissedCallDbXml(const std::string& xml, std::deque<MissedCallItem>& list) const;

    /// Sorts the list by the time of the front occurrence, newest first; the sort is stable. Removes items
    /// without occurrences from the list and, in one request, from the database.
    virtual void normalizeMissedCallList(std::deque<MissedCallItem>& list) const;

private:
    // Written by init only, before any other thread calls.
    DataAccessServiceIfc* m_service = nullptr;
};
