#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace host {

/// Writes log lines to a file descriptor through a bounded queue, so that a party that does not take the log
/// delays no caller.
///
///  1. `add` appends a line with its time to the queue and returns. If the queue is full, it drops the line.
///  2. A thread of its own writes the queue. It starts with the first line.
///  3. Lines that were dropped, or that could not be written, are counted. When the descriptor takes data
///     again, a line in their place reports how many they were.
///
/// Thread-safe. The destructor does not wait: lines that are queued are still written.
class LogWriter {
public:
    /// The descriptor, and whether the writer closes it.
    struct Target {
        int descriptor;
        bool isOwned;
    };

    /// The most bytes that wait for the thread. The thread holds as many again while it writes.
    static constexpr std::size_t kMaxQueuedBytes = 4U * 1024U * 1024U;

    explicit LogWriter(Target target);
    ~LogWriter();
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    /// `text` is one line without its end. Throws if memory or threads run out.
    void add(std::string_view level, std::string_view text);

    /// Waits until all lines are written, or for `limit`. Returns false if lines remain.
    bool flush(std::chrono::milliseconds limit) noexcept;

    /// The number of lines of all writers of this process that were dropped or could not be written.
    [[nodiscard]] static std::uint64_t droppedLines() noexcept;

private:
    class Queue;
    /// Shared with the thread, which ends when the writer is destroyed and all lines are written.
    const std::shared_ptr<Queue> m_queue;
};

}  // namespace host
