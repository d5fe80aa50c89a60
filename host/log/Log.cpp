#include "host/log/Log.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "host/log/LogText.h"
#include "host/log/LogWriter.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

struct Word {
    std::string_view word;
    int level;
};

constexpr Word kWords[] = {
    {"error", 2}, {"warning", 3}, {"info", 5}, {"debug", 6}, {"trace", std::numeric_limits<int>::max()}};
constexpr int kInitialLevel = 5;

constexpr std::chrono::milliseconds kLastFlush{1000};

std::atomic<int> g_level{kInitialLevel};

/// The current writer. Thread-safe.
class Output {
public:
    void add(int level, std::string text) {
        const std::lock_guard lock(m_mutex);
        m_writer->add(level, std::move(text));
    }

    /// The lines of the previous writer are written first, unless they wait for a reader.
    void redirect(std::shared_ptr<LogWriter> writer) {
        const std::lock_guard lock(m_mutex);
        static_cast<void>(m_writer->flush(kLastFlush));
        m_writer.swap(writer);
    }

    bool flush(std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        const std::shared_ptr<LogWriter> writer = m_writer;
        lock.unlock();
        return writer->flush(limit);
    }

private:
    std::mutex m_mutex;
    std::shared_ptr<LogWriter> m_writer = std::make_shared<LogWriter>("");
};

Output& output();

std::terminate_handler g_previousHandler = nullptr;

/// The queue is written also if the program ends by `std::exit` or an exception that is not caught.
void flushAtTheEnd() {
    std::atexit([] { output().flush(kLastFlush); });
    g_previousHandler = std::set_terminate([] {
        output().flush(kLastFlush);
        g_previousHandler();
    });
}

// Never destroyed: threads may log while the program ends.
Output& output() {
    static auto* const instance = [] {
        flushAtTheEnd();
        return new Output;  // NOLINT(cppcoreguidelines-owning-memory)
    }();
    return *instance;
}

/// Appends the text that `std::vprintf` would print.
__attribute__((format(printf, 2, 0))) void appendPrinted(std::string& line, const char* format,
                                                         std::va_list arguments) {
    // Most texts are shorter.
    std::array<char, 512> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): it is written below.
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    if (length < 0) {
        appendLogText(line, format);
    } else if (static_cast<std::size_t>(length) < buffer.size()) {
        appendLogText(line, {buffer.data(), static_cast<std::size_t>(length)});
    } else {
        std::string text(static_cast<std::size_t>(length), '\0');
        std::vsnprintf(text.data(), text.size() + 1, format, again);
        appendLogText(line, text);
    }
    va_end(again);
}

__attribute__((format(printf, 4, 0))) std::string lineOf(const char* component, const char* sourceFile,
                                                         int number, const char* format,
                                                         std::va_list arguments) {
    constexpr std::size_t kUsualLength = 200;
    std::string line;
    line.reserve(kUsualLength);
    line += '[';
    appendLogText(line, component == nullptr ? "" : component);
    line += "] ";
    appendPrinted(line, format, arguments);
    line += " (";
    appendLogText(line, sourceFile == nullptr ? "" : sourceFile);
    line += ':';
    line += std::to_string(number);
    line += ')';
    return line;
}

}  // namespace

std::optional<int> Log::levelOf(std::string_view word) noexcept {
    for (const Word& known : kWords) {
        if (known.word == word) {
            return known.level;
        }
    }
    return std::nullopt;
}

void Log::configure(std::string_view levelWord, const std::string& file) {
    const std::optional<int> level = levelOf(levelWord);
    if (!level) {
        throw std::runtime_error("the log level must be one of error, warning, info, debug, trace");
    }
    output().redirect(std::make_shared<LogWriter>(file));
    g_level = *level;
}

bool Log::flush(std::chrono::milliseconds limit) noexcept {
    return output().flush(limit);
}

std::uint64_t Log::droppedLines() noexcept {
    return LogWriter::droppedLines();
}

}  // namespace host

__attribute__((visibility("default"))) bool loggingOnAppUni(const char* /*component*/, int level) noexcept {
    return level <= host::g_level.load(std::memory_order_relaxed);
}

__attribute__((visibility("default"))) void logAppUni(const char* component, const char* sourceFile,
                                                      int level, int line, const char* format, ...) noexcept {
    if (!loggingOnAppUni(component, level)) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    // A failure to log must not disturb the caller; the text is lost.
    try {
        host::output().add(level, host::lineOf(component, sourceFile, line, format, arguments));
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
    va_end(arguments);
}
