#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/call-import/CallInsertion.h"
#include "host/call-import/ImportedEntries.h"
#include "host/history/Call.h"
#include "host/stored-lists/StoredEntries.h"

namespace host {

/// Stores calls that come from a file (docs/export-import.md). The sequence of an import:
///
///  1. `add`, once or several times: the calls become rows of the history, in transactions of 1000. A call
///     that is there is not stored again. The entry of the call's party in its list takes the call over, or
///     is made.
///  2. `publish` after an `add` that others follow: the journal loads the entries that were made, so that a
///     call that is filed meanwhile makes no second one.
///  3. `finish`: the journal loads its lists, the entries that were there before take over their newest
///     calls, and all readers read again.
///
/// One thread at a time. No call is reported to the switch. A missed `finish` leaves the entries with their
/// former calls.
class CallImport {
public:
    /// The entries are borrowed.
    explicit CallImport(StoredEntries& entries) : m_entries(entries) {}

    struct Counts {
        std::size_t imported = 0;
        /// Calls that the history had before.
        std::size_t known = 0;
    };
    /// Stores the calls. A missed call that is not viewed is viewed after the import, unless `unviewed` is
    /// true or the history had it before it was deleted: its id is one of this database. Returns std::nullopt
    /// if the database fails; the transactions before are done then.
    [[nodiscard]] std::optional<Counts> add(const std::vector<Call>& calls, bool unviewed);
    void publish();
    /// Ends the import. Call it after the last `add`, also after a failed one.
    void finish();

private:
    [[nodiscard]] bool addBatch(const Call* begin, const Call* end, bool unviewed,
                                CallInsertion::Added& added, Counts& counts);
    template <typename Item>
    void takeOver(std::int64_t entry, bool unviewed);

    StoredEntries& m_entries;
    ImportRun m_run;
    /// The greatest id of a call before the import; std::nullopt before its first `add`.
    std::optional<std::int64_t> m_lastId;
};

}  // namespace host
