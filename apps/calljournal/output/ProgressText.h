#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace calljournal {

/// The progress of a command on the standard error output: one text line that is written again and again, on
/// a terminal only, and from the first second on. The destructor clears it. One thread at a time.
class ProgressText {
public:
    ProgressText();
    ~ProgressText();
    ProgressText(const ProgressText&) = delete;
    ProgressText& operator=(const ProgressText&) = delete;

    /// "WHAT (42 %)", at most five times a second; without the percentage if `total` is 0.
    void show(const std::string& what, std::size_t done, std::size_t total);
    /// Clears the line before other output.
    void clear();

private:
    const bool m_onTerminal;
    bool m_shown = false;
    std::chrono::steady_clock::time_point m_next;
};

}  // namespace calljournal
