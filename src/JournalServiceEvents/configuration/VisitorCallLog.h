#pragma once

#include <atomic>
#include <string>

class Executable;

namespace journal {

class PlatformServices;
class PhoneValues;
class PhoneSettings;

/// Saves a visitor's call log at the management server from time to time: first an hour or more after start-up,
/// then, on a Qorvex phone, every hour, whenever something new was written. The first delay is spread by the phone's
/// MAC address, so that the phones of a site do not all save at the same moment.
/// Threads: start-up, and the line's strand.
class VisitorCallLog {
public:
    /// The parts are borrowed and outlive this one; `handler` gets the timers' expiries and hands them to `onTimer`.
    VisitorCallLog(const PlatformServices& platform, const PhoneSettings& settings,
                   const PhoneValues& management, std::atomic<bool>& savePending, Executable& handler)
        : m_platform(platform),
          m_settings(settings),
          m_management(management),
          m_visitorCallLogSavePending(savePending),
          m_handler(handler) {}
    VisitorCallLog(const VisitorCallLog&) = delete;
    VisitorCallLog& operator=(const VisitorCallLog&) = delete;
    /// Deletes the timers.
    ~VisitorCallLog();

    /// Makes the first timer. Whether making it also arms it is the platform's business.
    void createFirstTimer();
    /// An expiry of any timer of the journal; others' are ignored.
    void onTimer(int id);
    [[nodiscard]] int getAutoSaveVisitorCallLogToVantorTimerId() const noexcept {
        return m_autoSaveVisitorCallLogTimerId;
    }

    /// The last two hexadecimal characters of the address as one byte; 0 when they are none.
    [[nodiscard]] static int getLastByteOfMacAddr(const std::string& macAddress);

private:
    void startHourlyTimer();
    void save();

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    const PhoneValues& m_management;
    std::atomic<bool>& m_visitorCallLogSavePending;
    Executable& m_handler;

    int m_autoSaveVisitorCallLogTimerId = -1;
    int m_hourlyVisitorCallLogTimerId = -1;
};

}  // namespace journal
