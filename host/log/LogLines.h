#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace host {

/// Log lines as they are written, each with its time, its level and its text. For one thread at a time.
class LogLines {
public:
    using Time = std::chrono::system_clock::time_point;

    /// `level` is that of `logAppUni`; `text` is one line without its end.
    void add(Time time, int level, std::string_view text);
    /// Ends a line of which only the begin was written.
    void addEnd() { m_text += '\n'; }
    void clear() noexcept { m_text.clear(); }
    [[nodiscard]] const std::string& text() const noexcept { return m_text; }

private:
    void addTime(Time time);

    std::string m_text;
    /// The second of the last line and its text: many lines are of the same one.
    std::time_t m_second = -1;
    std::string m_secondText;
};

}  // namespace host
