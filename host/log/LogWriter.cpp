#include "host/log/LogWriter.h"

#include <poll.h>
#include <spdlog/async_logger.h>
#include <spdlog/details/thread_pool.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace host {
namespace {

std::atomic<std::uint64_t> g_droppedLines{0};

spdlog::level::level_enum spdlogLevelOf(int level) {
    switch (level) {
        case 2: return spdlog::level::err;
        case 3: return spdlog::level::warn;
        case 4:
        case 5: return spdlog::level::info;
        case 6: return spdlog::level::debug;
        default: return level < 2 ? spdlog::level::critical : spdlog::level::trace;
    }
}

/// Standard error without the buffer and the lock of `stderr`: the exit of the program would wait for them.
class StandardErrorSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
private:
    /// Blocks while the reader of a pipe or a terminal does not read. Throws `spdlog_ex`.
    void sink_it_(const spdlog::details::log_msg& line) override {
        spdlog::memory_buf_t text;
        formatter_->format(line, text);
        std::string_view rest(text.data(), text.size());
        while (!rest.empty()) {
            const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
            if (written > 0) {
                rest.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno == EAGAIN) {
                pollfd wait{STDERR_FILENO, POLLOUT, 0};
                ::poll(&wait, 1, -1);
            } else if (errno != EINTR) {
                throw spdlog::spdlog_ex("standard error", errno);
            }
        }
    }
    void flush_() override {}
};

spdlog::sink_ptr outputTo(const std::string& file) {
    if (file.empty()) {
        return std::make_shared<StandardErrorSink>();
    }
    try {
        return std::make_shared<spdlog::sinks::basic_file_sink_st>(file);
    } catch (const spdlog::spdlog_ex& error) {
        throw std::runtime_error(error.what());
    }
}

/// Passes the lines to the output and counts those that are missing. Used by the thread of the queue only,
/// except `handled`.
class CountingSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    explicit CountingSink(spdlog::sink_ptr output) : m_output(std::move(output)) {}

    void setQueue(spdlog::details::thread_pool& queue) { m_queue = &queue; }

    /// The number of lines that were written or could not be written.
    [[nodiscard]] std::uint64_t handled() const noexcept { return m_handled; }

private:
    void sink_it_(const spdlog::details::log_msg& line) override {
        const std::uint64_t overrun = m_queue->overrun_counter();
        m_missing += overrun - std::exchange(m_overrun, overrun);
        if (!reportMissing(line) || !write(line)) {
            ++m_missing;
            ++g_droppedLines;
        }
        ++m_handled;
    }
    void flush_() override {}
    void set_formatter_(std::unique_ptr<spdlog::formatter> formatter) override {
        m_output->set_formatter(std::move(formatter));
    }

    bool reportMissing(const spdlog::details::log_msg& before) {
        if (m_missing == 0) {
            return true;
        }
        const std::string text =
            "[Log] " + std::to_string(m_missing) +
            " lines are missing here: they were not taken in time, or could not be written";
        const bool done =
            write(spdlog::details::log_msg(before.time, {}, before.logger_name, spdlog::level::warn, text));
        m_missing = done ? 0 : m_missing;
        return done;
    }

    /// Blocks while the reader of a pipe or a terminal does not read.
    bool write(const spdlog::details::log_msg& line) {
        try {
            m_output->log(line);
            m_output->flush();
            return true;
        } catch (const spdlog::spdlog_ex&) {
            return false;
        }
    }

    const spdlog::sink_ptr m_output;
    spdlog::details::thread_pool* m_queue = nullptr;
    std::uint64_t m_overrun = 0;
    /// Lines that are missing before the next one.
    std::uint64_t m_missing = 0;
    std::atomic<std::uint64_t> m_handled{0};
};

/// A queue whose thread takes no signals: the program's own threads decide about them.
std::shared_ptr<spdlog::details::thread_pool> makeQueue() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto restore = [&before](void*) { pthread_sigmask(SIG_SETMASK, &before, nullptr); };
    const std::unique_ptr<void, decltype(restore)> atTheEnd(&before, restore);
    return std::make_shared<spdlog::details::thread_pool>(LogWriter::kMaxQueuedLines, 1);
}

}  // namespace

struct LogWriter::Impl {
    explicit Impl(const std::string& file)
        : sink(std::make_shared<CountingSink>(outputTo(file))), queue(makeQueue()) {
        sink->setQueue(*queue);
        logger = std::make_shared<spdlog::async_logger>("", sink, queue,
                                                        spdlog::async_overflow_policy::overrun_oldest);
        logger->set_level(spdlog::level::trace);
        logger->set_formatter(std::make_unique<spdlog::pattern_formatter>("%Y-%m-%dT%H:%M:%S.%eZ %l %v",
                                                                          spdlog::pattern_time_type::utc));
    }

    /// Adds the lines that the queue has overwritten to the count, each once.
    void countOverrun() {
        const std::uint64_t overrun = queue->overrun_counter();
        std::uint64_t counted = countedOverrun;
        while (counted < overrun && !countedOverrun.compare_exchange_weak(counted, overrun)) {}
        g_droppedLines += counted < overrun ? overrun - counted : 0;
    }
    [[nodiscard]] bool isWritten() const { return added == sink->handled() + queue->overrun_counter(); }

    const std::shared_ptr<CountingSink> sink;
    const std::shared_ptr<spdlog::details::thread_pool> queue;
    std::shared_ptr<spdlog::async_logger> logger;
    std::atomic<std::uint64_t> added{0};
    std::atomic<std::uint64_t> countedOverrun{0};
};

LogWriter::LogWriter(const std::string& file) : m_impl(std::make_unique<Impl>(file)) {}

LogWriter::~LogWriter() {
    if (!flush(std::chrono::milliseconds(0))) {
        // The queue would wait for its thread, which waits for the party that takes no lines.
        static_cast<void>(m_impl.release());
    }
}

void LogWriter::add(int level, const std::string& text) {
    ++m_impl->added;
    m_impl->logger->log(spdlogLevelOf(level), text);
    m_impl->countOverrun();
}

bool LogWriter::flush(std::chrono::milliseconds limit) noexcept {
    constexpr std::chrono::milliseconds kPause{1};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!m_impl->isWritten()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

std::uint64_t LogWriter::droppedLines() noexcept {
    return g_droppedLines;
}

}  // namespace host
