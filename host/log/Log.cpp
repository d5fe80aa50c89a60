#include "host/log/Log.h"

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "host/log/LogFormat.h"
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
constexpr int kWarning = 3;

constexpr std::chrono::milliseconds kLastFlush{1000};

std::atomic<int> g_hostLevel{kInitialLevel};
std::atomic<int> g_libraryLevel{kInitialLevel};
std::atomic<std::uint64_t> g_errors{0};
std::atomic<std::uint64_t> g_warnings{0};

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

/// True for the components of the library, and of its helpers in the program.
bool isOfLibrary(const char* component) noexcept {
    constexpr std::string_view kLibrary = "Journal Service";
    return component != nullptr && std::strncmp(component, kLibrary.data(), kLibrary.size()) == 0;
}

/// True for a line that may have names and numbers in any of its texts. Of the host, those are the messages
/// of the switch and of a telephone; its other lines mask what they have to.
bool hasParties(const char* component, int level) noexcept {
    constexpr int kMessages = 6;
    return isOfLibrary(component) ||
           (level >= kMessages && component != nullptr &&
            (std::strcmp(component, "CSTA Link") == 0 || std::strcmp(component, "CSTA Switch") == 0 ||
             std::strcmp(component, "SIP Gateway") == 0));
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

void Log::configure(const LogSettings& settings) {
    const std::optional<int> level = levelOf(settings.level);
    const std::optional<int> libraryLevel = levelOf(settings.libraryLevel);
    if (!level || !libraryLevel) {
        throw std::runtime_error("the log level must be one of error, warning, info, debug, trace");
    }
    output().redirect(std::make_shared<LogWriter>(settings.file));
    g_hostLevel = *level;
    g_libraryLevel = *libraryLevel;
    setLoggedParties(settings.parties);
}

void Log::configure(const std::string& levelWord, const std::string& file) {
    configure({.level = levelWord, .libraryLevel = levelWord, .file = file, .parties = Parties::eShown});
}

bool Log::flush(std::chrono::milliseconds limit) noexcept {
    return output().flush(limit);
}

LogCounts Log::counts() noexcept {
    return {.dropped = LogWriter::droppedLines(), .errors = g_errors, .warnings = g_warnings};
}

}  // namespace host

__attribute__((visibility("default"))) bool loggingOnAppUni(const char* component, int level) noexcept {
    const int hostLevel = host::g_hostLevel.load(std::memory_order_relaxed);
    const int libraryLevel = host::g_libraryLevel.load(std::memory_order_relaxed);
    return level <= hostLevel && level <= libraryLevel
               ? true
               : level <= (host::isOfLibrary(component) ? libraryLevel : hostLevel);
}

__attribute__((visibility("default"))) void logAppUni(const char* component, const char* sourceFile,
                                                      int level, int line, const char* format, ...) noexcept {
    if (!loggingOnAppUni(component, level)) {
        return;
    }
    if (level <= host::kWarning) {
        ++(level < host::kWarning ? host::g_errors : host::g_warnings);
    }
    std::va_list arguments;
    va_start(arguments, format);
    // A failure to log must not disturb the caller; the text is lost.
    try {
        const host::LogMessage message{component, sourceFile, level, line, format};
        const bool isMasked =
            host::loggedParties() == host::Parties::eMasked && host::hasParties(component, level);
        host::output().add(
            level, isMasked ? host::maskedLogLine(message, arguments) : host::logLine(message, arguments));
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
    va_end(arguments);
}
