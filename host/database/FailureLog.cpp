#include "host/database/FailureLog.h"

#include <algorithm>
#include <exception>

#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr std::chrono::minutes kBetween{1};
constexpr std::size_t kMostKnown = 16;

}  // namespace

void FailureLog::write(const std::string& what, const std::string& reason, Clock::time_point now) noexcept {
    try {
        if (const std::string line = textFor(what + " failed: " + reason, now); !line.empty()) {
            logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s", line.c_str());
        }
    } catch (const std::exception&) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed: %s", what.c_str(), reason.c_str());
    }
}

std::string FailureLog::textFor(const std::string& text, Clock::time_point now) {
    const std::lock_guard lock(m_mutex);
    const auto known =
        std::find_if(m_known.begin(), m_known.end(), [&](const Known& each) { return each.text == text; });
    if (known == m_known.end()) {
        m_known.push_front({.text = text, .written = now});
        m_known.resize(std::min(m_known.size(), kMostKnown));
        return text;
    }
    if (now - known->written < kBetween) {
        ++known->repeated;
        return {};
    }
    std::string line = text;
    if (known->repeated > 0) {
        line += " (" + std::to_string(known->repeated) + " times more since the last line)";
    }
    known->written = now;
    known->repeated = 0;
    return line;
}

}  // namespace host
