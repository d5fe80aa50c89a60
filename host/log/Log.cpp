#include "host/log/Log.h"

#include <fcntl.h>
#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "host/log/LogText.h"
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

std::unique_ptr<spdlog::logger> loggerInto(spdlog::sink_ptr sink) {
    auto logger = std::make_unique<spdlog::logger>("", std::move(sink));
    logger->set_level(spdlog::level::trace);
    logger->flush_on(spdlog::level::trace);
    logger->set_formatter(std::make_unique<spdlog::pattern_formatter>("%Y-%m-%dT%H:%M:%S.%eZ %l %v",
                                                                      spdlog::pattern_time_type::utc));
    return logger;
}

/// The output of the log. The sinks have no lock of their own; the mutex also guards the change of the sink.
struct Output {
    std::mutex mutex;
    std::unique_ptr<spdlog::logger> logger = loggerInto(std::make_shared<spdlog::sinks::stderr_sink_st>());
};

std::atomic<int> g_level{kInitialLevel};

// Never destroyed: threads may log while the program ends.
Output& output() {
    static auto* const instance = new Output;  // NOLINT(cppcoreguidelines-owning-memory)
    return *instance;
}

/// Creates the file with mode 0600, because the file sink would make it readable for all.
void makePrivateFile(const std::string& file) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        throw std::runtime_error("cannot write the log file " + file + ": " +
                                 std::generic_category().message(errno));
    }
    ::close(descriptor);
}

std::unique_ptr<spdlog::logger> loggerFor(const std::string& file) {
    if (file.empty()) {
        return loggerInto(std::make_shared<spdlog::sinks::stderr_sink_st>());
    }
    makePrivateFile(file);
    try {
        return loggerInto(std::make_shared<spdlog::sinks::basic_file_sink_st>(file));
    } catch (const spdlog::spdlog_ex& error) {
        throw std::runtime_error("cannot write the log file " + file + ": " + error.what());
    }
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
    auto logger = loggerFor(file);
    Output& out = output();
    {
        const std::lock_guard lock(out.mutex);
        out.logger.swap(logger);
    }
    g_level = *level;
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
        const std::string payload =
            host::payloadOf(component, sourceFile, line, host::printed(format, arguments));
        host::Output& out = host::output();
        const std::lock_guard lock(out.mutex);
        out.logger->log(host::spdlogLevelOf(level), payload);
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
    va_end(arguments);
}
