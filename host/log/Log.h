#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The program's logger: the one behind `logAppUni` and `loggingOnAppUni`, for the host and for every library that it
/// loads. Before `configure` it writes lines down to "info" to the standard error output.
///
/// A line reads
///
///     2026-11-21T05:22:05.123Z info [Journal Service] loadCallListsFromDb - BEGIN (./src/JournalService:120)
///
/// and is always one line: whatever could break or forge one in the text (control characters, line separators, bytes
/// that are no UTF-8) is shown as "\n", "\x1b", "\xff". Line breaks at the very end of a text are left out, and of a
/// text beyond 64 KiB the rest is.
///
/// Threads: any thread may call any operation, and may log, at any time, also while the program ends.
class Log {
public:
    Log() = delete;

    /// The level number that the word stands for; nothing for a word that is none.
    ///
    ///     word      writes levels
    ///     error     2
    ///     warning   2 to 3
    ///     info      2 to 5     information and decisions
    ///     debug     2 to 6     every detail
    ///     trace     all        numbers beyond 6 too, should somebody use them
    [[nodiscard]] static std::optional<int> levelOf(std::string_view word) noexcept;

    /// From now on lines up to the word's level go to `file`, at its end, or to the standard error output when `file`
    /// is empty. Throws `std::runtime_error` with a text for the user when the word is none or the file cannot be
    /// written; everything then stays as it was. A file that is made is for its owner's eyes (mode 0600), since lines
    /// hold names and numbers.
    static void configure(std::string_view levelWord, const std::string& file);
};

}  // namespace host
