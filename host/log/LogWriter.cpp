#include "host/log/LogWriter.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace host {
namespace {

std::atomic<std::uint64_t> g_droppedLines{0};

/// "2026-11-21T05:22:05.123Z".
std::string timeText() {
    using namespace std::chrono;
    const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const auto seconds = static_cast<std::time_t>(now / 1000);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &utc);
    std::snprintf(text.data() + length, text.size() - length, ".%03dZ", static_cast<int>(now % 1000));
    return text.data();
}

void appendLine(std::string& to, std::string_view level, std::string_view text) {
    to += timeText();
    to += ' ';
    to += level;
    to += ' ';
    to += text;
    to += '\n';
}

/// Starts a thread that takes no signals: the program's own threads decide about them.
template <typename Function>
void startDetached(Function function) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread(std::move(function)).detach();
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

/// The descriptor of a log, used by the writing thread only.
class Output {
public:
    explicit Output(LogWriter::Target target) : m_target(target) {}
    ~Output() {
        if (m_target.isOwned) {
            ::close(m_target.descriptor);
        }
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Writes the lines, and then how many lines are missing after them.
    void write(std::string_view lines, std::uint64_t missingAfter) {
        const bool isComplete = reportLost() && writeAll(lines);
        if (!isComplete) {
            countLost(static_cast<std::uint64_t>(std::count(m_rest.begin(), m_rest.end(), '\n')));
        }
        m_lost += missingAfter;
        if (isComplete) {
            reportLost();
        }
    }

private:
    void countLost(std::uint64_t lines) {
        m_lost += lines;
        g_droppedLines += lines;
    }

    bool reportLost() {
        if (m_lost == 0) {
            return true;
        }
        std::string line(m_isInLine ? "\n" : "");
        appendLine(line, "warning",
                   "[Log] " + std::to_string(m_lost) +
                       " lines are missing here: they were not taken in time, or could not be written");
        if (!writeAll(line)) {
            return false;
        }
        m_lost = 0;
        return true;
    }

    /// Blocks while the reader of a pipe or a terminal does not read. Leaves in `m_rest` what failed.
    bool writeAll(std::string_view text) {
        m_rest = text;
        while (!m_rest.empty()) {
            const ssize_t written = ::write(m_target.descriptor, m_rest.data(), m_rest.size());
            if (written > 0) {
                m_isInLine = m_rest[static_cast<std::size_t>(written) - 1] != '\n';
                m_rest.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno == EAGAIN) {
                pollfd wait{m_target.descriptor, POLLOUT, 0};
                ::poll(&wait, 1, -1);
            } else if (errno != EINTR) {
                return false;
            }
        }
        return true;
    }

    const LogWriter::Target m_target;
    std::string_view m_rest;
    std::uint64_t m_lost = 0;
    /// The last write ended within a line.
    bool m_isInLine = false;
};

}  // namespace

class LogWriter::Queue : public std::enable_shared_from_this<Queue> {
public:
    explicit Queue(Target target) : m_output(target) {}

    void add(std::string_view level, std::string_view text) {
        const std::lock_guard lock(m_mutex);
        // A dropped line is followed by dropped lines only, until the report stands in their place.
        if (m_dropped > 0 || (!m_lines.empty() && m_lines.size() + text.size() > kMaxQueuedBytes)) {
            ++m_dropped;
            ++g_droppedLines;
            return;
        }
        if (!std::exchange(m_isRunning, true)) {
            startDetached([self = shared_from_this()] { self->run(); });
        }
        appendLine(m_lines, level, text);
        m_work.notify_one();
    }

    bool flush(std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        return m_idle.wait_for(lock, limit, [this] { return m_lines.empty() && !m_isWriting; });
    }

    void close() {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        m_work.notify_one();
    }

private:
    void run() {
        std::string lines;
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_work.wait(lock, [this] { return !m_lines.empty() || m_isClosed; });
            if (m_lines.empty()) {
                return;
            }
            lines.clear();
            lines.swap(m_lines);
            const std::uint64_t dropped = std::exchange(m_dropped, 0);
            m_isWriting = true;
            lock.unlock();
            m_output.write(lines, dropped);
            lock.lock();
            m_isWriting = false;
            m_idle.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_work;
    std::condition_variable m_idle;

    // Guarded by m_mutex.
    std::string m_lines;
    /// Lines that are missing after `m_lines`.
    std::uint64_t m_dropped = 0;
    bool m_isRunning = false;
    bool m_isWriting = false;
    bool m_isClosed = false;

    // The thread only.
    Output m_output;
};

LogWriter::LogWriter(Target target) : m_queue(std::make_shared<Queue>(target)) {}

LogWriter::~LogWriter() {
    m_queue->close();
}

void LogWriter::add(std::string_view level, std::string_view text) {
    m_queue->add(level, text);
}

bool LogWriter::flush(std::chrono::milliseconds limit) noexcept {
    return m_queue->flush(limit);
}

std::uint64_t LogWriter::droppedLines() noexcept {
    return g_droppedLines;
}

}  // namespace host
