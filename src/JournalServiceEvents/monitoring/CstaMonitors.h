#pragma once

#include <array>
#include <string>

class CSTAEventIfc;
class CSTAMonitorFilter;
class CSTARequest;

namespace journal {

class PlatformServices;
class PhoneSettings;

/// The journal's monitors at the switch: its own line, the Bluetooth telephone, and other devices on request.
///
/// Every request waits for the switch's answer. A failure is logged and changes nothing; the next trigger tries
/// again. Threads: start-up and the line's strand, one at a time.
class CstaMonitors {
public:
    /// The parts are borrowed and outlive this one; `receiver` gets the events of every monitor.
    CstaMonitors(const PlatformServices& platform, const PhoneSettings& settings, CSTAEventIfc& receiver)
        : m_platform(platform), m_settings(settings), m_receiver(receiver) {}
    CstaMonitors(const CstaMonitors&) = delete;
    CstaMonitors& operator=(const CstaMonitors&) = delete;
    ~CstaMonitors() = default;

    /// Asks to be told of the switch's system status.
    void CSTASystemRegister();

    // True when the monitor is on, or off, as asked.
    bool startQorvexEvents();
    bool stopQorvexEvents();
    bool startMonitoringBluetoothEvents();
    bool stopMonitoringBluetoothEvents();
    [[nodiscard]] bool qorvexEventsStarted() const noexcept { return m_qorvexEventsStarted; }
    [[nodiscard]] bool bluetoothEventsStarted() const noexcept { return m_bluetoothEventsStarted; }

    /// What `startCSTAMonitor` answers when there is no monitor.
    static constexpr const char* kNoMonitor = "ERROR";
    /// The cross reference of a new monitor of `device`, or `kNoMonitor`.
    [[nodiscard]] std::string startCSTAMonitor(const std::string& device);
    void stopCSTAMonitor(const std::string& crossRef) const;

    /// Changes the own line's filter to what the settings ask for now; not for SIP phones.
    void changeMonitorFilter();

private:
    /// 19 characters and the terminator: what the CSTA service promises at most.
    using CrossRef = std::array<char, 20>;

    /// Sends the request and says whether the answer is a `Response` without error; logs why not.
    template <typename Response>
    [[nodiscard]] Response* send(CSTARequest& request, const char* operation, const char* failure) const;
    static void store(CrossRef& buffer, const std::string& crossRef);

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    CSTAEventIfc& m_receiver;

    CrossRef m_qorvexCrossRef{};
    CrossRef m_bluetoothCrossRef{};
    bool m_qorvexEventsStarted = false;
    bool m_bluetoothEventsStarted = false;
};

}  // namespace journal
