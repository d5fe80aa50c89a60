#pragma once

#include <atomic>
#include <string>

class Executable;

namespace journal {

class PlatformServices;
class PhoneValues;
class PhoneSettings;

/// Saves a visitor's call log at the management server at intervals if something was written since the last
/// save. The first interval is one hour plus a delay that depends on the phone's MAC address, so that the
/// phones of a site do not all save at the same moment. On a Qorvex phone it is followed by intervals of one
/// hour.
///
/// Threads: call from the strand only; `setSavePending` and `clearSavePending` are thread-safe.
class VisitorCallLog {
public:
    /// Everything is borrowed and outlives this object. `handler` receives the expiries of the timers and
    /// passes them to `onTimer`.
    VisitorCallLog(const PlatformServices& platform, const PhoneSettings& settings, Executable& handler)
        : m_platform(platform), m_settings(settings), m_handler(handler) {}
    VisitorCallLog(const VisitorCallLog&) = delete;
    VisitorCallLog& operator=(const VisitorCallLog&) = delete;
    /// Deletes the timers.
    ~VisitorCallLog();

    /// Creates the first timer. The phone starts it, by `getAutoSaveVisitorCallLogToVantorTimerId`, if it has
    /// visitors. Requires: the platform has a context.
    void createFirstTimer(const PhoneValues& phoneValues);
    /// Handles an expiry. Ignores timers of other components.
    void onTimer(int id);
    /// Something was written: the next interval ends with a save.
    void setSavePending() noexcept { m_visitorCallLogSavePending = true; }
    void clearSavePending() noexcept { m_visitorCallLogSavePending = false; }
    [[nodiscard]] bool isSavePending() const noexcept { return m_visitorCallLogSavePending; }
    /// Returns the id of the first timer, or -1.
    [[nodiscard]] int getAutoSaveVisitorCallLogToVantorTimerId() const noexcept {
        return m_autoSaveVisitorCallLogTimerId;
    }

    /// Returns the last two characters of the address, read as one hexadecimal byte; 0 if they are not
    /// hexadecimal.
    [[nodiscard]] static int getLastByteOfMacAddr(const std::string& macAddress);

private:
    void startHourlyTimer();
    void save();

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    Executable& m_handler;

    std::atomic<bool> m_visitorCallLogSavePending{false};

    // Used on the strand only.
    int m_autoSaveVisitorCallLogTimerId = -1;
    int m_hourlyVisitorCallLogTimerId = -1;
};

}  // namespace journal
