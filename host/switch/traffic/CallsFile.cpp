#include "host/switch/traffic/CallsFile.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <string_view>

namespace host {

namespace {

std::string_view word(TrafficResult result) {
    switch (result) {
        case TrafficResult::eMissed: return "missed";
        case TrafficResult::eReceived: return "received";
        case TrafficResult::eDialled: return "dialled";
        case TrafficResult::eElsewhere: return "elsewhere";
    }
    return {};
}

/// RFC 3339, UTC, with microseconds.
std::string timeText(CallsFile::Time time) {
    using std::chrono::microseconds;
    constexpr long long kSecond = 1'000'000;
    const long long since = std::chrono::duration_cast<microseconds>(time.time_since_epoch()).count();
    const std::time_t seconds = since / kSecond;
    std::tm parts{};
    static_cast<void>(::gmtime_r(&seconds, &parts));
    std::array<char, 40> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::string result(text.data(), length);
    const std::string fraction = std::to_string(since % kSecond + kSecond);
    return result.append(".").append(fraction, 1).append("Z");
}

}  // namespace

CallsFile::CallsFile(const std::string& path) : m_file(path, std::ios::trunc) {
    m_file << "device,result,number,call_id,ended\r\n" << std::flush;
    if (!m_file) {
        throw std::runtime_error("cannot write " + path);
    }
}

void CallsFile::add(const std::string& callId, const TrafficPart& part, Time ended) {
    m_file << part.device << ',' << word(part.result) << ',' << part.number << ',' << callId << ','
           << timeText(ended) << "\r\n";
}

bool CallsFile::finish() {
    m_file.flush();
    return m_file.good();
}

}  // namespace host
