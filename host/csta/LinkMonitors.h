#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <asio/io_context.hpp>

#include "host/csta-events/EventReader.h"
#include "host/csta/CallDelivery.h"
#include "host/csta/CallSynchronisation.h"
#include "host/csta/CstaLinkConfig.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/MonitorTable.h"
#include "host/csta/SnapshotRequests.h"
#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/RequestChannel.h"
#include "host/csta/requests/RequestOutcome.h"

namespace host {

/// The monitors of the link: handles the services' requests, keeps the wanted monitors started at the switch,
/// and delivers the switch's events to their receivers.
///
///     wanted, off  --MonitorStart sent-->                           starting
///     starting     --response with an id-->                         on
///     on           --connection lost, or stopped by the switch-->   wanted, off
///
/// A monitor that is requested while the switch is connected is removed if the switch does not start it. An
/// accepted monitor stays wanted: a refusal is logged and retried with exponential backoff.
///
/// `CallSynchronisation` keeps the calls correct while a monitor is off.
///
/// Reader thread only.
class LinkMonitors {
public:
    /// The references must outlive the object. `changed` is called after every change that may affect the
    /// status.
    LinkMonitors(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                 const EventDelivery::Post& post, std::function<void()> changed);

    // Requests of services.
    void start(const std::string& device, const CSTAMonitorFilter& filter, std::shared_ptr<EventSink> sink,
               const CompleteRequest& complete);
    void stop(const std::string& crossRefId, const CompleteRequest& complete);
    void changeFilter(const std::string& device, const CSTAMonitorFilter& filter,
                      const CompleteRequest& complete);
    void release(const Service& source);

    // Events and state changes of the switch.
    void startAll();
    void connectionLost();
    /// Stops all monitors at the switch, for a connection that stays.
    void stopAllAtSwitch();
    /// The connection is lost for good: cancels all timers.
    void close();
    void stoppedBySwitch(std::string_view switchId);
    void onEvent(const WireDocument& document);
    /// A segment of a snapshot.
    void onSnapshotSegment(const WireDocument& segment) { m_snapshots.addSegment(segment); }
    /// The service has received a system status on which it drops its calls.
    void callsForgotten();
    /// Asks the switch for the calls of every monitor that is on.
    void askForCalls();

    /// True if all monitors of the own device are on or, without such a monitor, if any monitor is on.
    [[nodiscard]] bool isMonitoring();
    void cancelRetries();

    /// The calls of the monitored devices. They stay while a monitor is off. The reader thread changes them.
    [[nodiscard]] const PhoneCalls& calls() const noexcept { return m_calls; }
    [[nodiscard]] PhoneCalls& calls() noexcept { return m_calls; }
    /// True if the id was made for the calls of a monitor whose switch sends none.
    [[nodiscard]] bool isUnnumbered(const std::string& callId);

    /// True if a requested monitor was not started, and was removed, since the last call.
    [[nodiscard]] bool takeFailedStart() noexcept { return std::exchange(m_startFailed, false); }

private:
    void sendStart(WantedMonitor& monitor, const std::function<void(const SwitchResponse&)>& handler);
    void restart(WantedMonitor& monitor);
    void restartLater(WantedMonitor& monitor);
    void markStarted(WantedMonitor& monitor, std::string switchId);
    void remove(const std::string& crossRefId);
    void stopAtSwitch(const std::string& switchId);
    void deliver(const WireDocument& document, const std::vector<WantedMonitor*>& monitors);
    [[nodiscard]] WantedMonitor* monitorOfDevice(const std::string& device);
    /// The monitor of the device for the receiver, requested as `device`; `nullptr` if there is none.
    [[nodiscard]] WantedMonitor* monitorOf(const std::string& device, const EventSink& sink);
    /// The device of the calls that the monitor reports.
    [[nodiscard]] std::string callDeviceOf(const WantedMonitor& monitor) const;
    [[nodiscard]] std::string deviceAtSwitch(const std::string& device) const;

    const CstaLinkConfig& m_config;
    asio::io_context& m_io;
    RequestChannel& m_channel;
    const std::function<void()> m_changed;
    const LinkMessages m_messages;

    MonitorTable m_table;
    PhoneCalls m_calls;
    CallDelivery m_delivery;
    SnapshotRequests m_snapshots;
    CallSynchronisation m_synchronisation;
    EventReader m_reader;
    bool m_startFailed = false;
};

}  // namespace host
