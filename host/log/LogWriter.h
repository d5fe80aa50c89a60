#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

namespace host {

/// Writes log lines to a file or to standard error through a bounded queue with a thread of its own, so that
/// a party that does not take the log delays no caller. While the queue is full, each new line takes the
/// place of the oldest one; a line in their place reports how many are missing.
///
/// A line is written some 2 ms after it was added, with those that were added meanwhile: a call logs some 20
/// lines, and each wake-up of the thread and each write would cost more than the line.
///
/// Thread-safe. The destructor does not wait for a party that takes no lines; the lines that are queued for
/// it are lost with the process.
class LogWriter {
public:
    /// The most lines that wait. A line has at most `kMaxLogText` bytes (LogText.h).
    static constexpr std::size_t kMaxQueuedLines = 4096;

    /// Appends to `file`, or writes to standard error if `file` is empty. A new file gets mode 0600. Throws
    /// `std::runtime_error` with the reason if it cannot be written.
    explicit LogWriter(const std::string& file);
    ~LogWriter();
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    /// Queues a line with the current time. `level` is that of `logAppUni`; `text` is one line without its
    /// end. Throws if memory runs out.
    void add(int level, std::string text);

    /// Waits until all lines are written, or for `limit`. Returns false if lines remain.
    [[nodiscard]] bool flush(std::chrono::milliseconds limit) noexcept;

    /// The number of lines of all writers of this process that were dropped or could not be written.
    [[nodiscard]] static std::uint64_t droppedLines() noexcept;

private:
    class Queue;

    /// Also owned by its thread, which may still be writing when the writer is destroyed.
    const std::shared_ptr<Queue> m_queue;
    std::thread m_thread;
};

}  // namespace host
