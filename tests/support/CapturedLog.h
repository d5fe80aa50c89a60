#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace journaltest {

/// The logger of every test program that links the test supports: it keeps what is written, so that a test can look
/// for it.
///
/// It starts empty, with every level on, at the beginning of each test. Any thread may call. Writing and reading
/// take one lock, which orders the threads that log: a test that looks for data races switches the log off first,
/// because asking for a level alone takes no lock.
class CapturedLog {
public:
    struct Line {
        std::string component;
        std::string sourceFile;
        int level = 0;
        int line = 0;
        std::string text;
    };

    /// Lines above `level` are neither wanted (`loggingOnAppUni`) nor kept. 6 keeps everything, 0 nothing.
    static void setLevel(int level) noexcept;
    static void switchOff() noexcept { setLevel(0); }
    static void reset();

    [[nodiscard]] static std::vector<Line> lines();
    /// The texts written for `component`, oldest first.
    [[nodiscard]] static std::vector<std::string> lines(std::string_view component);
    /// Whether a line holds `text` somewhere.
    [[nodiscard]] static bool contains(std::string_view text);
    [[nodiscard]] static int count(std::string_view text);

    /// All lines in one text, for the message of a failed expectation.
    [[nodiscard]] static std::string dump();
};

}  // namespace journaltest
