#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/log/PrivateText.h"

namespace host {

struct LogSettings {
    /// The words that `Log::levelOf` accepts: for the host, and for the library that it loads.
    std::string level = "info";
    std::string libraryLevel = "warning";
    std::string file;
    Parties parties = Parties::eMasked;
};

/// Numbers of lines since the program started.
struct LogCounts {
    /// Dropped, or not written.
    std::uint64_t dropped = 0;
    std::uint64_t errors = 0;
    std::uint64_t warnings = 0;
};

/// The program's logger, which implements `logAppUni` and `loggingOnAppUni` for the host and every library
/// that it loads. Before `configure` it writes the levels up to "info" to standard error.
///
/// A log entry has the form
///
///     2026-11-21T05:22:05.123Z info [Journal Service] loadCallListsFromDb - BEGIN (./src/JournalService:120)
///
/// and is always one text line: `escapedLogText` escapes every character that could break or forge one.
///
/// Logging never waits for the output: a `LogWriter` writes the lines on a thread of its own, and drops and
/// counts them while its queue is full. The end of the program waits up to 1 s for the queue.
///
/// Thread-safe. Any thread may log at any time, even while the program ends.
class Log {
public:
    Log() = delete;

    /// Returns the highest level that the word includes, or std::nullopt if the word is not valid.
    ///
    ///     word      writes levels
    ///     error     2
    ///     warning   2 to 3
    ///     info      2 to 5     information and decisions
    ///     debug     2 to 6     every detail
    ///     trace     all        levels above 6 too
    [[nodiscard]] static std::optional<int> levelOf(std::string_view word) noexcept;

    /// Sets the levels and the output. Appends to the file, or writes to standard error if its name is empty.
    /// Opens the file anew also if it is the current one. Creates a new file with mode 0600, since the log
    /// may have names and numbers. Throws `std::runtime_error` with a message for the user if a word is not
    /// valid or the file cannot be written; the configuration is then unchanged.
    static void configure(const LogSettings& settings);
    /// One level for all components, and names and numbers as they are: for a program without a journal.
    static void configure(const std::string& levelWord, const std::string& file);

    /// Waits until every line that was logged before is written, or for `limit`. Returns false if lines
    /// remain.
    static bool flush(std::chrono::milliseconds limit) noexcept;

    [[nodiscard]] static LogCounts counts() noexcept;
};

}  // namespace host
