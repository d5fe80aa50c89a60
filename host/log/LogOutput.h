#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// The file or the standard error to which log lines are written. For one thread at a time.
class LogOutput {
public:
    /// Appends to `file`, or writes to standard error if `file` is empty. A new file gets mode 0600. Throws
    /// `std::runtime_error` with the reason if it cannot be written; a pipe without a reader cannot.
    explicit LogOutput(const std::string& file);
    ~LogOutput();
    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

    /// Blocks while the reader of a pipe or a terminal does not read. Returns the number of bytes written:
    /// fewer than all only if the output fails.
    [[nodiscard]] std::size_t write(std::string_view text) noexcept;

private:
    const int m_descriptor;
};

}  // namespace host
