#pragma once

#include <array>
#include <string>

class CSTAEventIfc;
class CSTAMonitorFilter;
class CSTAMonitorStartRequest;
class CSTARequest;
class Service;

namespace journal {

class PlatformServices;
class PhoneSettings;

/// The journal's monitors at the switch: the own line, the Bluetooth telephone, and other devices on request.
/// A SIP phone has no monitor of the own line: the switch reports its devices, and `LineDeviceEvents`
/// monitors those.
///
/// Every request blocks until the switch responds. A failure is logged and changes no state; the next trigger
/// tries again. Call from the strand only.
class CstaMonitors {
public:
    /// Everything is borrowed and outlives this object. `source` is the source of the requests, and
    /// `receiver` receives the events of all monitors.
    CstaMonitors(const PlatformServices& platform, const PhoneSettings& settings, Service* source,
                 CSTAEventIfc& receiver)
        : m_platform(platform), m_settings(settings), m_source(source), m_receiver(receiver) {}
    CstaMonitors(const CstaMonitors&) = delete;
    CstaMonitors& operator=(const CstaMonitors&) = delete;
    ~CstaMonitors() = default;

    /// Starts the monitor of the own line, except on a SIP phone, and registers for the system status.
    void start();
    void CSTASystemRegister();

    // Return true if the monitor was started, or stopped.
    bool startQorvexEvents();
    bool stopQorvexEvents();
    bool startMonitoringBluetoothEvents();
    bool stopMonitoringBluetoothEvents();
    [[nodiscard]] bool qorvexEventsStarted() const noexcept { return m_qorvex.started; }
    [[nodiscard]] bool bluetoothEventsStarted() const noexcept { return m_bluetooth.started; }

    /// The result of `startCSTAMonitor` for a monitor that could not be started.
    static constexpr const char* kNoMonitor = "ERROR";
    /// Returns the cross reference of a new monitor of `device`, or `kNoMonitor`.
    [[nodiscard]] std::string startCSTAMonitor(const std::string& device);
    void stopCSTAMonitor(const std::string& crossRef) const;

    /// Sets the filter of the own line's monitor according to the current settings. Does nothing on a SIP
    /// phone.
    void changeMonitorFilter();

private:
    /// At most 19 characters, as the CSTA service guarantees, and the terminator.
    using CrossRef = std::array<char, 20>;
    struct OwnMonitor {
        CrossRef crossRef{};
        bool started = false;
    };

    /// Sets the source and sends. Returns true if the response code is 0. Without a CSTA service it sends no
    /// request and returns true.
    [[nodiscard]] bool transmit(CSTARequest& request) const;
    /// As `transmit`. Returns the response if it is a `Response` without error; otherwise logs the reason and
    /// returns null.
    template <typename Response>
    [[nodiscard]] Response* send(CSTARequest& request, const char* operation, const char* failure) const;
    static void store(CrossRef& buffer, const std::string& crossRef);
    /// Starts the monitor and stores its cross reference. Returns false, with a log text, if that failed.
    bool start(OwnMonitor& monitor, CSTAMonitorStartRequest& request, const char* logName);
    /// Stops the monitor and clears its cross reference. Returns false, with a log text, if it still runs.
    bool stop(OwnMonitor& monitor, const char* logName);

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    Service* const m_source;
    CSTAEventIfc& m_receiver;

    OwnMonitor m_qorvex;
    OwnMonitor m_bluetooth;
};

}  // namespace journal
