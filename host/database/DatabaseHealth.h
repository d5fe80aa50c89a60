#pragma once

#include <atomic>
#include <mutex>
#include <set>
#include <string>

namespace host {

/// The state of a database, from the outcome of each work. A kind of work is its name in the log.
///
///  - After a failed read any work that succeeds makes it healthy again, after a failed write any write.
///  - A kind of work that has found the file damaged must succeed itself: other work may use other pages.
///
/// Thread-safe; `healthy` never blocks.
class DatabaseHealth {
public:
    void succeeded(const std::string& kind, bool isWrite);
    /// `code` is SQLite's error, 0 for any other exception.
    void failed(const std::string& kind, bool isWrite, int code) noexcept;

    [[nodiscard]] bool healthy() const noexcept { return !m_readFailed && !m_writeFailed && !m_damaged; }
    [[nodiscard]] bool writeFailed() const noexcept { return m_writeFailed; }
    [[nodiscard]] bool damaged() const noexcept { return m_damaged; }

private:
    std::atomic<bool> m_readFailed{false};
    std::atomic<bool> m_writeFailed{false};
    std::atomic<bool> m_damaged{false};

    std::mutex m_mutex;
    // Guarded by m_mutex: the kinds of work that have found the file damaged.
    std::set<std::string> m_damagedKinds;
};

}  // namespace host
