#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace host {

/// The rows that the writing connection has changed lately, so that a reader of the journal's entries reads
/// only those again. Each row that is noted gets the next number.
///
/// Sequence of a reader that has read all changes up to a number K:
///  1. `settled`: the number up to which all transactions have ended; the next K.
///  2. It begins a read transaction.
///  3. `since(K)`: the rows that may differ from what it has. A transaction that was open at step 1 is
///     reported by the next read too, since it may end after step 2.
///
/// Rows are kept from the first `settled` on, and no more than `kMostRows`; then no reader follows any more
/// until the next `settled`.
///
/// Thread-safe; the writing operations are called with the lock of the writing connection.
class RowChanges {
public:
    static constexpr std::size_t kMostRows = 4096;

    enum class Table : std::uint8_t { eItem, eCall };
    struct Row {
        Table table = Table::eItem;
        std::int64_t id = 0;
        bool operator==(const Row&) const = default;
    };

    /// Notes a row that the open transaction has changed.
    void note(const Row& row) noexcept;
    /// Notes that any row may have changed.
    void noteAll() noexcept;
    /// Records that the open transaction has ended, committed or not.
    void endTransaction() noexcept;

    [[nodiscard]] std::uint64_t settled();
    /// std::nullopt if any row may differ.
    [[nodiscard]] std::optional<std::vector<Row>> since(std::uint64_t number) const;

private:
    void count();

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::uint64_t m_last = 0;
    /// The number of the first row of the open transaction.
    std::optional<std::uint64_t> m_first;
    bool m_isFollowed = false;
    /// The rows with the last numbers.
    std::deque<Row> m_rows;
};

}  // namespace host
