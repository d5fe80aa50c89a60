#include "host/log/LogLines.h"

#include <array>

namespace host {
namespace {

constexpr std::string_view wordOf(int level) {
    switch (level) {
        case 2: return "error";
        case 3: return "warning";
        case 4:
        case 5: return "info";
        case 6: return "debug";
        default: return level < 2 ? "critical" : "trace";
    }
}

std::string textOfSecond(std::time_t second) {
    std::tm parts{};
    ::gmtime_r(&second, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts)};
}

}  // namespace

void LogLines::add(Time time, int level, std::string_view text) {
    addTime(time);
    m_text += ' ';
    m_text += wordOf(level);
    m_text += ' ';
    m_text += text;
    m_text += '\n';
}

void LogLines::addTime(Time time) {
    const auto second = std::chrono::floor<std::chrono::seconds>(time);
    const std::time_t count = std::chrono::system_clock::to_time_t(second);
    if (count != m_second) {
        m_secondText = textOfSecond(count);
        m_second = count;
    }
    m_text += m_secondText;
    // A leading digit keeps the zeros.
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(time - second).count();
    m_text += '.';
    m_text += std::to_string(1000 + milliseconds).substr(1);
    m_text += 'Z';
}

}  // namespace host
