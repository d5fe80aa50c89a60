#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace journaltest {

/// The logger of every test program that links the test supports: it keeps what is written, so that a test
/// can look for it.
///
/// It starts empty, with every level on, at the beginning of each test. Any thread may call. Writing and
/// reading take one lock, which orders the threads that log: a test that looks for data races switches the
/// log off first, because asking for a level alone takes no lock.
class CapturedLog {
public:
    CapturedLog() = delete;

    /// No line is wanted (`loggingOnAppUni`) nor kept, until `reset`.
    static void switchOff() noexcept;
    static void reset();

    /// The texts written for `component`, oldest first.
    [[nodiscard]] static std::vector<std::string> lines(std::string_view component);
    /// True if a line contains `text`; the number of lines that do.
    [[nodiscard]] static bool contains(std::string_view text) { return count(text) > 0; }
    [[nodiscard]] static int count(std::string_view text);

    /// All lines in one text, for the message of a failed expectation.
    [[nodiscard]] static std::string dump();
};

}  // namespace journaltest
