#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "host/history/CallFilter.h"
#include "host/stored-lists/StoredEntries.h"

namespace host {

/// Deletes calls for a user or by their age: from the history, from the lists that show them, and from the
/// switch's log where an entry of a list has them (docs/database.md). The sequence of a deletion:
///  1. Each entry that has some of the calls gets its newest other calls, or is deleted with its last one
///     (`StoredEntries::change`).
///  2. The calls that are in no entry, or are not listed there, are deleted in batches.
///  3. Parties without calls are removed, and the database's log is emptied.
///
/// Thread-safe.
class CallDeletion final {
public:
    /// `entries` is borrowed and outlives the object.
    explicit CallDeletion(StoredEntries& entries) : m_entries(entries) {}

    /// Deletes the calls that fulfil the filter; all calls if it is empty. Returns their number, or
    /// std::nullopt if the database failed.
    [[nodiscard]] std::optional<std::size_t> remove(const CallFilter& filter);
    /// Deletes one call. Returns the number of deleted calls, 0 or 1, or std::nullopt if the database failed.
    [[nodiscard]] std::optional<std::size_t> remove(std::int64_t id);
    /// Deletes the calls that began before that time, in batches, without a report to the switch. A call
    /// whose time is not known stays.
    [[nodiscard]] std::optional<std::size_t> removeOlderThan(std::chrono::sys_seconds time);

private:
    /// A condition about rows of the table `call`, and the binding of its values.
    struct Condition {
        std::string text;
        std::function<void(Query&)> bind;
    };

    [[nodiscard]] std::optional<std::size_t> remove(const Condition& selected, bool reportsRemoved);
    [[nodiscard]] std::optional<std::int64_t> count(const Condition& condition);
    [[nodiscard]] std::optional<std::int64_t> number(const std::string& sql,
                                                     const std::function<void(Query&)>& bind);
    [[nodiscard]] bool changeEntries(const Condition& condition, bool reportsRemoved);
    [[nodiscard]] std::optional<std::size_t> removeRows(const Condition& condition);

    StoredEntries& m_entries;
};

}  // namespace host
