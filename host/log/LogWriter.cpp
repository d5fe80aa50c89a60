#include "host/log/LogWriter.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <exception>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

#include "host/log/LogLines.h"
#include "host/log/LogOutput.h"
#include "host/systemd/JournalStream.h"

namespace host {
namespace {

constexpr std::chrono::milliseconds kGathering{2};
/// So many lines are written without waiting for more, and at most so many at once.
constexpr std::size_t kBatch = 256;
constexpr int kWarning = 3;

std::atomic<std::uint64_t> g_droppedLines{0};

std::string missingText(std::uint64_t lines) {
    return "[Log] " + std::to_string(lines) +
           " lines are missing here: they were not taken in time, or could not be written";
}

/// Starts a thread that takes no signals: the program's own threads decide about them.
template <typename Work>
std::thread threadWithoutSignals(Work work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto restore = [&before](void*) { pthread_sigmask(SIG_SETMASK, &before, nullptr); };
    const std::unique_ptr<void, decltype(restore)> atTheEnd(&before, restore);
    return std::thread(std::move(work));
}

}  // namespace

/// The lines that wait, and the work of the thread that writes them.
class LogWriter::Queue {
public:
    explicit Queue(const std::string& file) : m_output(file), m_isJournal(file.empty() && isJournalStream()) {
        m_batch.reserve(kBatch);
    }

    void add(int level, std::string text);
    [[nodiscard]] std::uint64_t added() const noexcept { return m_added; }
    /// The number of lines that were written, dropped or could not be written.
    [[nodiscard]] std::uint64_t handled() const noexcept { return m_handled; }
    /// Ends `run` when all lines are written.
    void stop();
    /// Writes lines until `stop`. On the queue's own thread.
    void run() noexcept;

private:
    struct Line {
        LogLines::Time time;
        int level = 0;
        std::string text;
    };

    [[nodiscard]] bool takeBatch() noexcept;
    void compose();
    void write() noexcept;
    void sendBatch() noexcept;
    void miss(std::uint64_t lines) noexcept;
    void countMissing(std::uint64_t lines) noexcept;

    // Each has its own synchronisation.
    std::atomic<std::uint64_t> m_added{0};
    std::atomic<std::uint64_t> m_handled{0};

    std::mutex m_mutex;
    std::condition_variable m_filled;
    // Guarded by m_mutex.
    std::deque<Line> m_lines;
    /// The lines that are missing before the first one.
    std::uint64_t m_overwritten = 0;
    /// True while the thread waits for a first line; otherwise it comes by itself.
    bool m_isIdle = false;
    bool m_isStopped = false;

    // Used by the thread only.
    LogOutput m_output;
    const bool m_isJournal;
    std::vector<Line> m_batch;
    LogLines m_text;
    /// The sizes of the text up to the end of each line, and before the first one.
    std::vector<std::size_t> m_ends;
    std::size_t m_report = 0;
    /// Lines that are missing before the next one.
    std::uint64_t m_missing = 0;
    /// The output took the last line in part.
    bool m_isCut = false;
};

void LogWriter::Queue::add(int level, std::string text) {
    bool wake = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_lines.size() == kMaxQueuedLines) {
            m_lines.pop_front();
            ++m_overwritten;
            countMissing(1);
        }
        m_lines.push_back({std::chrono::system_clock::now(), level, std::move(text)});
        ++m_added;
        wake = std::exchange(m_isIdle, false) || m_lines.size() == kBatch;
    }
    if (wake) {
        m_filled.notify_one();
    }
}

void LogWriter::Queue::stop() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopped = true;
    }
    m_filled.notify_one();
}

void LogWriter::Queue::countMissing(std::uint64_t lines) noexcept {
    g_droppedLines += lines;
    m_handled += lines;
}

void LogWriter::Queue::run() noexcept {
    while (takeBatch()) {
        try {
            if (m_isJournal) {
                sendBatch();
            } else {
                compose();
                write();
            }
        } catch (const std::exception&) {  // no memory
            miss(m_batch.size());
        }
        m_batch.clear();
    }
}

/// Returns false at the end.
bool LogWriter::Queue::takeBatch() noexcept {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isIdle = m_lines.empty();
    m_filled.wait(lock, [this] { return !m_lines.empty() || m_isStopped; });
    m_isIdle = false;
    m_filled.wait_for(lock, kGathering, [this] { return m_lines.size() >= kBatch || m_isStopped; });
    const auto end = m_lines.begin() + static_cast<std::ptrdiff_t>(std::min(m_lines.size(), kBatch));
    m_batch.assign(std::make_move_iterator(m_lines.begin()), std::make_move_iterator(end));
    m_lines.erase(m_lines.begin(), end);
    m_missing += std::exchange(m_overwritten, 0);
    return !m_batch.empty();
}

void LogWriter::Queue::compose() {
    m_text.clear();
    m_ends.clear();
    if (m_isCut) {
        m_text.addEnd();
    }
    if (m_missing > 0) {
        m_text.add(m_batch.front().time, kWarning, missingText(m_missing));
    }
    m_report = m_text.text().size();
    for (const Line& line : m_batch) {
        m_text.add(line.time, line.level, line.text);
        m_ends.push_back(m_text.text().size());
    }
}

void LogWriter::Queue::write() noexcept {
    const std::size_t size = m_output.write(m_text.text());
    const auto written =
        static_cast<std::uint64_t>(std::upper_bound(m_ends.begin(), m_ends.end(), size) - m_ends.begin());
    if (size > 0) {
        m_isCut = m_text.text()[size - 1] != '\n';
    }
    if (size >= m_report) {
        m_missing = 0;
    }
    m_handled += written;
    miss(m_batch.size() - written);
}

/// The journal of systemd takes each line by itself, with its time.
void LogWriter::Queue::sendBatch() noexcept {
    if (m_missing > 0 && sendToJournal(kWarning, missingText(m_missing))) {
        m_missing = 0;
    }
    for (const Line& line : m_batch) {
        if (sendToJournal(line.level, line.text)) {
            ++m_handled;
        } else {
            miss(1);
        }
    }
}

void LogWriter::Queue::miss(std::uint64_t lines) noexcept {
    m_missing += lines;
    countMissing(lines);
}

LogWriter::LogWriter(const std::string& file)
    : m_queue(std::make_shared<Queue>(file)),
      m_thread(threadWithoutSignals([queue = m_queue] { queue->run(); })) {}

LogWriter::~LogWriter() {
    m_queue->stop();
    if (flush(std::chrono::milliseconds(0))) {
        m_thread.join();
    } else {
        // The thread waits for the party that takes no lines.
        m_thread.detach();
    }
}

void LogWriter::add(int level, std::string text) {
    m_queue->add(level, std::move(text));
}

bool LogWriter::flush(std::chrono::milliseconds limit) noexcept {
    constexpr std::chrono::milliseconds kPause{1};
    const auto end = std::chrono::steady_clock::now() + limit;
    const std::uint64_t added = m_queue->added();
    while (m_queue->handled() < added) {
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
