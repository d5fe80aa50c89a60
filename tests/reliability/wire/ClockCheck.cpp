// Calls while the machine's clock is set, its time zone changes, daylight saving begins, or a year of a
// smaller calendar ends. Each call must have the time at which it began, by the clock of that moment, and the
// duration that has really passed. This program's `clock_gettime` replaces the one of the C library.

#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/clock/SystemClock.h"
#include "host/lists/ListOperations.h"
#include "journal-items/Occurrences.h"
#include "tests/reliability/random-calls/PhoneUnderTest.h"
#include "tests/reliability/random-calls/SwitchPeer.h"
#include "tests/reliability/support/Rounds.h"

namespace {

std::atomic<long> jumped{0};
std::atomic<long> passed{0};

}  // namespace

extern "C" int clock_gettime(clockid_t id, timespec* time) noexcept {
    const long result = ::syscall(SYS_clock_gettime, id, time);
    if (id == CLOCK_REALTIME) {
        time->tv_sec += jumped + passed;
    } else if (id == CLOCK_BOOTTIME) {
        time->tv_sec += passed;
    }
    return static_cast<int>(result);
}

namespace reliability {
namespace {

constexpr long kDay = 86400;

/// A course: a received call in which the clock is set twice, then a missed one in which it is set once.
struct Row {
    const char* what;
    /// The clock at the first event: ISO 8601; empty for that of the machine.
    const char* begin;
    /// The seconds that are added to the clock while it rings, while the user talks, and in the missed call.
    std::array<long, 3> jumps;
    /// The zone after the first call was answered.
    const char* zone = "UTC";
};

constexpr std::array kRows{
    Row{"an untouched clock", "", {0, 0, 0}},
    Row{"a second back", "", {-1, 0, 0}},
    Row{"an hour forward", "", {0, 3600, 3600}},
    Row{"an hour back", "", {0, -3600, -3600}},
    Row{"a day forward", "", {kDay, kDay, kDay}},
    Row{"a day back", "", {-kDay, -kDay, -kDay}},
    Row{"forward and back", "", {365 * kDay, -365 * kDay, 0}},
    Row{"from 1970 to today", "1970-01-01T00:00:30Z", {0, 1790000000, 0}},
    Row{"from 2035 to 2026", "2035-01-01T00:00:00Z", {-3000 * kDay, 0, 0}},
    Row{"the end of daylight saving", "2026-10-25T00:59:50Z", {0, 0, 0}, "Europe/Berlin"},
    Row{"the begin of daylight saving", "2027-03-28T00:59:50Z", {0, 0, 0}, "Europe/Berlin"},
    Row{"the end of daylight saving in America", "2026-11-01T05:59:50Z", {0, 0, 0}, "America/New_York"},
    Row{"another zone", "", {0, 0, 0}, "Pacific/Kiritimati"},
    Row{"another zone and an hour", "", {3600, -3600, 3600}, "America/St_Johns"},
    Row{"the end of 32 bits", "2038-01-19T03:14:00Z", {0, 0, 0}},
    Row{"after the end of 32 bits", "2038-01-19T03:14:10Z", {0, 5 * kDay, -kDay}},
    Row{"the leap day of 2028", "2028-02-28T23:59:30Z", {0, 0, 0}},
    Row{"the year 2100, which has none", "2100-02-28T23:59:30Z", {0, 0, 0}},
    Row{"the end of a year", "2026-12-31T23:59:30Z", {0, 0, 0}, "Asia/Kathmandu"},
    Row{"the end of 2099", "2099-12-31T23:59:30Z", {0, -kDay, kDay}},
};

constexpr long kRings = 5;
constexpr long kTalks = 75;

class Clock {
public:
    static long now() { return static_cast<long>(std::time(nullptr)) + jumped + passed; }
    static void set(const char* time) {
        jumped = -passed;
        ClockServiceIfc::DateTime read{};
        host::SystemClock clock;
        if (*time != '\0' && clock.splitTimeDate(time, read)) {
            const std::chrono::sys_days day =
                std::chrono::year(read.year) / read.month / static_cast<unsigned>(read.day);
            jumped = day.time_since_epoch().count() * kDay + read.hour * 3600 + read.minute * 60 +
                     read.second - static_cast<long>(std::time(nullptr)) - passed;
        }
    }
    static void setZone(const char* zone) {
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
};

class ClockCourse {
public:
    explicit ClockCourse(const Row& row) : m_row(row) {
        if (!m_peer.connect() || !m_peer.awaitSnapshot({}) || !m_peer.awaitIdle()) {
            throw std::runtime_error("the phone does not start its monitor");
        }
    }

    std::vector<std::string> play() {
        Clock::setZone("UTC");
        Clock::set(m_row.begin);
        const long received = Clock::now();
        send(EventKind::eDelivered, "1", "4711", "alerting");
        pass(kRings, m_row.jumps[0]);
        send(EventKind::eEstablished, "1", "4711", "connected");
        Clock::setZone(m_row.zone);
        pass(kTalks, m_row.jumps[1]);
        send(EventKind::eConnectionCleared, "1", "4711", "null");

        const long missed = Clock::now();
        send(EventKind::eDelivered, "2", "4712", "alerting");
        pass(kRings, m_row.jumps[2]);
        send(EventKind::eConnectionCleared, "2", "4712", "null");
        if (!m_phone.awaitMissed("4712")) {
            return {fault("the missed call is not filed")};
        }
        std::vector<std::string> faults;
        expect(occurrence<ReceivedCallItem>(), received, "01:15", faults);
        expect(occurrence<MissedCallItem>(), missed, "", faults);
        return faults;
    }

private:
    struct Found {
        std::string time = "no entry";
        std::string duration{};
    };

    void send(EventKind kind, const char* callId, const char* caller, const char* local) {
        CallEvent event;
        event.kind = kind;
        event.callId = callId;
        event.subject = event.device = event.called = SwitchModel::own();
        event.calling = {caller, {}};
        event.local = local;
        event.cause = kind == EventKind::eConnectionCleared ? "normalClearing" : "newCall";
        m_peer.send(event, {});
        if (!m_peer.awaitIdle()) {
            throw std::runtime_error("the phone has stopped");
        }
    }

    static void pass(long seconds, long jump) {
        passed += seconds;
        jumped += jump;
    }

    template <typename Item>
    Found occurrence() {
        for (const Item& item : host::readList<Item>(m_phone.journal())) {
            for (const auto& call : occurrencesOf(item)) {
                Found found{call.getTimeAndDate()};
                if constexpr (std::is_same_v<Item, ReceivedCallItem>) {
                    found.duration = call.getDuration();
                }
                return found;
            }
        }
        return {};
    }

    /// The clock goes on while the course is played: a time may be up to two seconds later.
    void expect(const Found& found, long began, const std::string& duration,
                std::vector<std::string>& faults) const {
        host::SystemClock clock;
        bool isTime = false;
        for (long late = 0; late <= 2; ++late) {
            isTime = isTime || found.time == clock.formatTimeDate(began + late);
        }
        const bool isDuration =
            found.duration == duration || (found.duration == "01:16" && !duration.empty());
        if (!isTime || !isDuration) {
            faults.push_back(fault("expected " + clock.formatTimeDate(began) + " " + duration + ", found " +
                                   found.time + " " + found.duration));
        }
    }

    [[nodiscard]] std::string fault(const std::string& text) const {
        return std::string(m_row.what) + ": " + text;
    }

    const Row& m_row;
    SwitchPeer m_peer;
    PhoneUnderTest m_phone{PhoneType{}, m_peer.port()};
};

}  // namespace
}  // namespace reliability

int main(int argc, char** argv) {
    using reliability::kRows;
    return reliability::Rounds("clock", argc, argv, kRows.size()).play([](std::uint64_t seed) {
        return reliability::ClockCourse(kRows[(seed - 1) % kRows.size()]).play();
    });
}
