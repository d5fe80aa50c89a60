#include "src/JournalService/base/JournalClock.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/clock/ClockServiceIfc.h"
#include "src/JournalService/base/Log.h"

namespace journal {

std::atomic<ClockServiceIfc*> JournalClock::m_pClockSvc{nullptr};

namespace {

// The clock of each journal, in the order of `setClock`, so that the process can fall back to an older one.
struct RegisteredClocks {
    std::mutex mutex;
    std::vector<std::pair<const JournalClock*, ClockServiceIfc*>> clocks;
};

RegisteredClocks& registeredClocks() {
    static RegisteredClocks clocks;
    return clocks;
}

auto fieldsOf(const ClockServiceIfc::DateTime& time) {
    return std::tie(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

}  // namespace

void JournalClock::setClock(ClockServiceIfc* clock) {
    auto& registered = registeredClocks();
    const std::lock_guard lock(registered.mutex);
    std::erase_if(registered.clocks, [this](const auto& entry) { return entry.first == this; });
    if (clock != nullptr) {
        registered.clocks.emplace_back(this, clock);
    }
    m_ownClock = clock;
    m_pClockSvc.store(registered.clocks.empty() ? nullptr : registered.clocks.back().second);
}

JournalClock::~JournalClock() {
    setClock(nullptr);
}

ClockServiceIfc* JournalClock::clock() const {
    return m_ownClock != nullptr ? m_ownClock : m_pClockSvc.load();
}

std::string JournalClock::getCurrentTime() const {
    const std::string time = getCallBackTime();
    return time.empty() ? time : time + 'Z';
}

std::string JournalClock::getCallBackTime() const {
    auto* service = clock();
    if (service == nullptr) {
        return {};
    }
    const auto now = service->getDateTime();
    std::array<char, 20> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d", now.year,
                                     now.month, now.day, now.hour, now.minute, now.second);
    return length < 0 ? std::string() : std::string(text.data());
}

long JournalClock::getCurrentTimeSec() const {
    auto* service = clock();
    if (service == nullptr) {
        LOG_EVENTS(6, "getCurrentTimeSec: UNKNOWN_TIME[%d]", -1);
        return -1;
    }
    return service->getSeconds();
}

std::string JournalClock::createEntryId(const std::string& callId) const {
    const auto number = static_cast<std::uint32_t>(std::strtol(callId.c_str(), nullptr, 10));
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%.8X", number);
    return getCurrentTime() + digits.data();
}

std::string JournalClock::formatTimeDate(long seconds) const {
    auto* service = clock();
    std::string text = service == nullptr ? std::string() : service->formatTimeDate(seconds);
    LOG_EVENTS(6, "getCurrentTimeSec: formatTimeDate[%ld][%s]", seconds, text.c_str());
    return text;
}

std::string JournalClock::formatDuration(long start, long end) {
    if (end <= start) {
        return "00:00";
    }
    const long duration = end - start;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02ld%c%02ld", duration / 60, ':', duration % 60);
    return text.data();
}

bool JournalClock::compareTimes(const std::string& a, const std::string& b, int& result) const {
    auto* service = clock();
    if (service == nullptr) {
        return false;
    }
    ClockServiceIfc::DateTime first;
    ClockServiceIfc::DateTime second;
    if (!service->splitTimeDate(a, first) || !service->splitTimeDate(b, second)) {
        return false;
    }
    const auto left = fieldsOf(first);
    const auto right = fieldsOf(second);
    result = left < right ? -1 : (right < left ? 1 : 0);
    return true;
}

}  // namespace journal
