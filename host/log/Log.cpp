#include "host/log/Log.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <system_error>
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
    void add(int level, const std::string& text) {
        const std::lock_guard lock(m_mutex);
        m_writer->add(level, text);
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

std::shared_ptr<LogWriter> writerTo(const std::string& file) {
    if (!file.empty()) {
        // Created here with mode 0600, because the library would make it readable for all.
        // A pipe that no process reads would block.
        const int descriptor =
            ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
        if (descriptor < 0) {
            throw std::runtime_error(
                "cannot write the log file " + file + ": " +
                (errno == ENXIO ? "it is a pipe without a reader" : std::generic_category().message(errno)));
        }
        ::close(descriptor);
    }
    return std::make_shared<LogWriter>(file);
}

__attribute__((format(printf, 1, 0))) std::string printed(const char* format, std::va_list arguments) {
    std::string text(512, '\0');
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    if (length >= 0 && static_cast<std::size_t>(length) >= text.size()) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
    }
    va_end(again);
    text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return length < 0 ? format : text;
}

std::string payloadOf(const char* component, const char* sourceFile, int line, std::string_view text) {
    return '[' + escapedLogText(component == nullptr ? "" : component) + "] " + escapedLogText(text) + " (" +
           escapedLogText(sourceFile == nullptr ? "" : sourceFile) + ':' + std::to_string(line) + ')';
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
    output().redirect(writerTo(file));
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
        host::output().add(level,
                           host::payloadOf(component, sourceFile, line, host::printed(format, arguments)));
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
    va_end(arguments);
}
