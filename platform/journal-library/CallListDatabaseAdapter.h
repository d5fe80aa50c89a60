#pragma once

#include <deque>
#include <string>

#include "journal-items/MissedCallItem.h"

class DataAccessServiceIfc;

/// The journal's way to its database: wraps what is to be changed into a request document and hands it
/// over.
///
/// Threads: `init` and the constructor before anything else; afterwards any thread may call any operation,
/// also at the same time, since the adapter holds nothing but the pointer. The lists that are passed belong
/// to the caller, who synchronises them. Every operation may wait for the disk.
///
/// Errors: a missing service, or one that throws, answers "failed" and leaves a log line; nothing throws.
class CallListDatabaseAdapter {
public:
    CallListDatabaseAdapter() = default;
    CallListDatabaseAdapter(const CallListDatabaseAdapter&) = delete;
    CallListDatabaseAdapter& operator=(const CallListDatabaseAdapter&) = delete;
    virtual ~CallListDatabaseAdapter() = default;

    /// `service` is borrowed and must outlive the adapter's last use; null means that there is no database.
    void init(DataAccessServiceIfc* service) noexcept { m_service = service; }

    /// Sends one request document; returns the answer document, or "failed".
    [[nodiscard]] virtual std::string processRequest(const std::string& request) const;

    /// Sends `entries` (`ENTRY` elements, or `CallListDatabaseAdapterHelper::allEntries()`) to `table` as a
    /// request of that type. A delete request without entries is refused with "failed" and is not sent.
    [[nodiscard]] virtual std::string updateEntries(const std::string& entries,
                                                    const std::string& requestType,
                                                    const std::string& table) const;

    /// Replaces `list` by the missed calls of an answer document and normalises it. A document that cannot
    /// be read leaves the list empty.
    virtual void processMissedCallDbXml(const std::string& xml, std::deque<MissedCallItem>& list) const;

    /// Brings the list into order, newest first, by the time of the front occurrence; equal times keep
    /// their order. Items without occurrences are erased from the list and, in one request, from the
    /// database.
    virtual void normalizeMissedCallList(std::deque<MissedCallItem>& list) const;

private:
    // Written by init only, before any other thread may call.
    DataAccessServiceIfc* m_service = nullptr;
};
