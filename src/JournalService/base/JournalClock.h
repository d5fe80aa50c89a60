#pragma once

#include <atomic>
#include <string>

class ClockServiceIfc;

namespace journal {

/// Time strings, entry ids and durations, all from the phone's clock service.
///
/// The phone has one clock, so the process keeps one pointer to it. Each journal of a process sets the clock
/// of its framework; a journal that is destroyed removes its own clock only. Thread-safe, except `setClock`
/// and the destructor: strand only.
class JournalClock {
public:
    JournalClock() = default;
    JournalClock(const JournalClock&) = delete;
    JournalClock& operator=(const JournalClock&) = delete;
    ~JournalClock();

    /// Sets the clock, which is borrowed until this object is destroyed; with null the process's clock is
    /// used.
    void setClock(ClockServiceIfc* clock);

    [[nodiscard]] bool isAvailable() const { return clock() != nullptr; }
    /// The date and time now: "2026-11-21T05:22:05Z", 20 characters; empty without a clock.
    [[nodiscard]] std::string getCurrentTime() const;
    /// The same without the zone, as in callbacks: "2026-11-21T05:22:05".
    [[nodiscard]] std::string getCallBackTime() const;
    /// The seconds since 1970; -1 without a clock.
    [[nodiscard]] long getCurrentTimeSec() const;
    /// The current time string and the low 32 bits of the call id, read as a decimal number, in eight
    /// upper-case hexadecimal digits: 28 characters. A call id that is no number counts as 0.
    [[nodiscard]] std::string createEntryId(const std::string& callId) const;
    /// `seconds` in the clock's display format; empty without a clock.
    [[nodiscard]] std::string formatTimeDate(long seconds) const;
    /// Minutes and seconds, "61:01"; "00:00" unless the end lies after the start.
    [[nodiscard]] static std::string formatDuration(long start, long end);
    /// Compares two time texts field by field: `result` is -1 when `a` is earlier, 1 when it is later, 0 when
    /// they are equal. False, and `result` unchanged, without a clock or when a text is no time.
    [[nodiscard]] bool compareTimes(const std::string& a, const std::string& b, int& result) const;

private:
    [[nodiscard]] ClockServiceIfc* clock() const;

    /// The process's clock: the one that was set last by a journal that still exists.
    static std::atomic<ClockServiceIfc*> m_pClockSvc;

    // Constant after setClock.
    ClockServiceIfc* m_ownClock = nullptr;
};

}  // namespace journal
