#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <asio/io_context.hpp>

#include "host/csta/CstaLink.h"
#include "host/csta/EarlyEvents.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/EventReader.h"
#include "host/csta/LinkMessages.h"
#include "host/csta/MonitorTable.h"
#include "host/csta/RequestChannel.h"
#include "host/csta/RequestOutcome.h"

namespace host {

/// The monitors of the link: takes the services' requests, keeps the wanted monitors on at the switch, and brings the
/// switch's events to their receivers.
///
///   wanted, off --MonitorStart sent--> starting --answer with an id--> on --connection lost, stopped by the switch--> off
///
/// A monitor that a service asks for while the switch is there is forgotten when the switch does not start it. Once
/// it was accepted, it stays wanted: a refusal is logged and tried again with growing pauses.
///
/// Reader thread only.
class LinkMonitors {
public:
    /// `channel` and `io` outlive the object. `changed` is called after anything that may change the status.
    LinkMonitors(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                 EventDelivery delivery, std::function<void()> changed);

    // Requests of services.
    void start(const std::string& device, const CSTAMonitorFilter& filter, std::shared_ptr<EventSink> sink,
               const CompleteRequest& complete);
    void stop(const std::string& crossRefId, const CompleteRequest& complete);
    void changeFilter(const std::string& device, const CSTAMonitorFilter& filter,
                      const CompleteRequest& complete);
    void release(const Service& source);

    // What happens at the switch.
    void startAll();
    void connectionLost();
    void stoppedBySwitch(std::string_view switchId);
    void event(WireDocument document);

    /// The monitors of the own device are on, or, when nobody wants one of it, some other monitor is.
    [[nodiscard]] bool isMonitoring();
    void cancelRetries();

    /// Whether a monitor that a service asked for was not started, and so forgotten, since this was asked last.
    [[nodiscard]] bool takeFailedStart() noexcept { return std::exchange(m_startFailed, false); }

private:
    void sendStart(WantedMonitor& monitor, const std::function<void(const Answer&)>& handler);
    void startAgain(WantedMonitor& monitor);
    void startAgainLater(WantedMonitor& monitor);
    void becomeOn(WantedMonitor& monitor, std::string switchId);
    void forget(const std::string& crossRefId);
    void stopQuietly(const std::string& switchId);
    void deliver(const WireDocument& document, const std::vector<WantedMonitor*>& monitors);
    [[nodiscard]] WantedMonitor* monitorOfDevice(const std::string& device);
    [[nodiscard]] std::string deviceAtSwitch(const std::string& device) const;

    const CstaLinkConfig& m_config;
    asio::io_context& m_io;
    RequestChannel& m_channel;
    const EventDelivery m_delivery;
    const std::function<void()> m_changed;
    const LinkMessages m_messages;

    MonitorTable m_table;
    EventReader m_reader;
    EarlyEvents m_early;
    bool m_startFailed = false;
};

}  // namespace host
