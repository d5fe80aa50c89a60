#include "host/csta/LinkMonitors.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

#include "host/csta-events/DeviceReader.h"
#include "host/csta-events/EventBuilder.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/EventSchemas.h"
#include "host/csta/requests/FilterGroups.h"
#include "host/csta/requests/LinkLog.h"
#include "host/log/PrivateText.h"
#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAResponses.h"

namespace host {

namespace {

std::string startedId(const SwitchResponse& response) {
    return response.isNamed("MonitorStartResponse")
               ? childText(response.document->root(), "monitorCrossRefID")
               : std::string();
}

/// For the log.
std::string describe(const SwitchResponse& response) {
    switch (response.kind) {
        case SwitchResponse::Kind::eResponse: return "an unexpected response";
        case SwitchResponse::Kind::eRefused:
            return loggedReason(response.value.empty() ? response.category : response.value);
        case SwitchResponse::Kind::eTimedOut: return "no response in time";
        case SwitchResponse::Kind::eLost: break;
    }
    return "connection lost";
}

bool isSuppressed(const CSTAMonitorFilter& filter, const EventSchema& schema) {
    return memberSetting(filter, schema.filterGroup, schema.filterMember).value_or(false);
}

}  // namespace

LinkMonitors::LinkMonitors(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                           const EventDelivery::Post& post, std::function<void()> changed)
    : m_config(config),
      m_io(io),
      m_channel(channel),
      m_changed(std::move(changed)),
      m_messages(config.edition),
      m_delivery(post, m_calls, config.liveCallStore, config.isUnlogged),
      m_snapshots(io, config.requestTimeout, channel, m_messages),
      m_synchronisation(config, io, m_snapshots, m_table, m_calls,
                        [this](const WantedMonitor& monitor, std::vector<PhoneEvent> events) {
                            m_delivery.deliver(monitor.sink, callDeviceOf(monitor), std::move(events));
                        }),
      m_reader(config.ownDevice, m_calls) {}

// ---- requests of services

void LinkMonitors::start(const std::string& device, const CSTAMonitorFilter& filter,
                         std::shared_ptr<EventSink> sink, const CompleteRequest& complete) {
    if (const WantedMonitor* const existing = monitorOf(device, *sink)) {
        complete(RequestOutcome::ok<CSTAMonitorStartResponse>(existing->crossRefId));
        return;
    }
    sink->otherDevice = OtherDeviceEvents::of(device, m_config.ownDevice);
    WantedMonitor& monitor = m_table.add(device, filter, std::move(sink),
                                         ExponentialBackoff(m_config.reconnectFirst, m_config.reconnectMax));
    const std::string id = monitor.crossRefId;
    if (!m_channel.isReady()) {
        CSTA_LINK_LOG(5, "monitor %s of %s is accepted and starts when the switch is connected", id.c_str(),
                      device.c_str());
        m_synchronisation.monitorAccepted(monitor);
        m_changed();
        complete(RequestOutcome::ok<CSTAMonitorStartResponse>(id));
        return;
    }
    sendStart(monitor, [this, id, complete](const SwitchResponse& response) {
        WantedMonitor* started = m_table.find(id);
        const std::string switchId = startedId(response);
        if (started != nullptr && !switchId.empty()) {
            m_synchronisation.monitorAccepted(*started);
            markStarted(*started, switchId);
            complete(RequestOutcome::ok<CSTAMonitorStartResponse>(id));
            return;
        }
        CSTA_LINK_LOG(4, "monitor %s is not started: %s", id.c_str(), describe(response).c_str());
        m_startFailed = true;
        remove(id);
        stopAtSwitch(switchId);
        complete(started != nullptr ? RequestOutcome::of<CSTAMonitorStartResponse>(response)
                                    : RequestOutcome());
    });
}

void LinkMonitors::stop(const std::string& crossRefId, const CompleteRequest& complete) {
    WantedMonitor* monitor = m_table.find(crossRefId);
    if (monitor == nullptr) {
        complete(RequestOutcome::refused<CSTAMonitorStopResponse>("operation", "invalidMonitorCrossRefID"));
        return;
    }
    const auto finish = [this, crossRefId, complete] {
        remove(crossRefId);
        complete(RequestOutcome::ok<CSTAMonitorStopResponse>());
    };
    const bool shared = m_table.withSwitchId(monitor->switchId).size() > 1;
    if (!m_channel.isReady() || !monitor->isOn() || shared) {
        finish();
        return;
    }
    m_channel.send(m_messages.monitorStop(monitor->switchId),
                   [finish, complete](const SwitchResponse& response) {
                       if (response.isNamed("MonitorStopResponse")) {
                           finish();
                       } else {
                           complete(RequestOutcome::of<CSTAMonitorStopResponse>(response));
                       }
                   });
}

void LinkMonitors::changeFilter(const std::string& device, const CSTAMonitorFilter& filter,
                                const CompleteRequest& complete) {
    WantedMonitor* monitor = monitorOfDevice(device);
    if (monitor == nullptr) {
        complete(
            RequestOutcome::refused<CSTAChangeMonitorFilterResponse>("operation", "invalidMonitorObject"));
        return;
    }
    const auto finish = [this, id = monitor->crossRefId, filter, complete] {
        if (WantedMonitor* changed = m_table.find(id)) {
            changed->filter = filter;
        }
        complete(RequestOutcome::ok<CSTAChangeMonitorFilterResponse>());
    };
    if (!m_channel.isReady() || !monitor->isOn() || !m_config.sendFilters) {
        finish();
        return;
    }
    m_channel.send(m_messages.changeMonitorFilter(monitor->switchId, filter),
                   [finish, complete](const SwitchResponse& response) {
                       if (response.isNamed("ChangeMonitorFilterResponse")) {
                           finish();
                       } else {
                           complete(RequestOutcome::of<CSTAChangeMonitorFilterResponse>(response));
                       }
                   });
}

void LinkMonitors::release(const Service& source) {
    for (WantedMonitor* monitor : m_table.all()) {
        if (monitor->sink->source == &source) {
            const std::string switchId = monitor->switchId;
            remove(monitor->crossRefId);
            if (m_table.withSwitchId(switchId).empty()) {
                stopAtSwitch(switchId);
            }
        }
    }
}

// ---- events and state changes of the switch

void LinkMonitors::startAll() {
    for (WantedMonitor* monitor : m_table.all()) {
        if (!monitor->starting) {
            restart(*monitor);
        }
    }
}

void LinkMonitors::connectionLost() {
    cancelRetries();
    m_snapshots.connectionLost();
    for (WantedMonitor* monitor : m_table.all()) {
        m_synchronisation.gapBegins(*monitor);
        monitor->switchId.clear();
    }
    m_changed();
}

void LinkMonitors::stopAllAtSwitch() {
    for (const WantedMonitor* monitor : m_table.all()) {
        stopAtSwitch(monitor->switchId);
    }
}

void LinkMonitors::close() {
    m_synchronisation.close();
    connectionLost();
}

bool LinkMonitors::isMonitoring() {
    const std::string own = comparableNumber(m_config.ownDevice);
    bool ownWanted = false;
    bool ownOn = true;
    bool anyOn = false;
    for (const WantedMonitor* monitor : m_table.all()) {
        const bool isOwn = comparableNumber(deviceAtSwitch(monitor->device)) == own;
        ownWanted = ownWanted || isOwn;
        ownOn = ownOn && (!isOwn || monitor->isOn());
        anyOn = anyOn || monitor->isOn();
    }
    return ownWanted ? ownOn : anyOn;
}

bool LinkMonitors::isUnnumbered(const std::string& callId) {
    const std::vector<WantedMonitor*> monitors = m_table.all();
    return std::any_of(monitors.begin(), monitors.end(), [&callId](const WantedMonitor* monitor) {
        return EventBuilder::unnumberedCallId(monitor->crossRefId) == callId;
    });
}

void LinkMonitors::cancelRetries() {
    for (WantedMonitor* monitor : m_table.all()) {
        monitor->retry.reset();
        monitor->backoff.reset();
    }
}

void LinkMonitors::stoppedBySwitch(std::string_view switchId) {
    for (WantedMonitor* monitor : m_table.withSwitchId(switchId)) {
        CSTA_LINK_LOG(3, "the switch has stopped monitor %s of %s", monitor->crossRefId.c_str(),
                      monitor->device.c_str());
        m_synchronisation.gapBegins(*monitor);
        monitor->switchId.clear();
        restartLater(*monitor);
    }
    m_changed();
}

void LinkMonitors::onEvent(const WireDocument& document) {
    deliver(document, m_table.withSwitchId(EventReader::crossRefIdOf(document)));
}

void LinkMonitors::callsForgotten() {
    for (const WantedMonitor* monitor : m_table.all()) {
        if (monitor->sink->otherDevice != nullptr) {
            monitor->sink->otherDevice->forgetCalls();
        }
        m_synchronisation.gapBegins(*monitor);
    }
    m_synchronisation.callsForgotten();
}

void LinkMonitors::askForCalls() {
    for (const WantedMonitor* monitor : m_table.all()) {
        if (monitor->isOn()) {
            m_synchronisation.monitorStarted(*monitor);
        }
    }
}

// ---- internal

void LinkMonitors::sendStart(WantedMonitor& monitor,
                             const std::function<void(const SwitchResponse&)>& handler) {
    monitor.starting = true;
    const CSTAMonitorFilter filter = m_config.sendFilters ? monitor.filter : CSTAMonitorFilter();
    m_channel.send(m_messages.monitorStart(deviceAtSwitch(monitor.device), filter),
                   [this, id = monitor.crossRefId, handler](const SwitchResponse& response) {
                       if (WantedMonitor* started = m_table.find(id)) {
                           started->starting = false;
                       }
                       handler(response);
                   });
}

void LinkMonitors::restart(WantedMonitor& monitor) {
    monitor.retry.reset();
    sendStart(monitor, [this, id = monitor.crossRefId](const SwitchResponse& response) {
        WantedMonitor* started = m_table.find(id);
        const std::string switchId = startedId(response);
        if (started == nullptr) {
            stopAtSwitch(switchId);
        } else if (!switchId.empty()) {
            markStarted(*started, switchId);
        } else if (response.kind != SwitchResponse::Kind::eLost) {
            CSTA_LINK_LOG(started->refused ? 6 : 3, "the switch does not start monitor %s of %s: %s",
                          id.c_str(), started->device.c_str(), describe(response).c_str());
            started->refused = true;
            started->switchId.clear();
            restartLater(*started);
            m_changed();
        }
    });
}

void LinkMonitors::restartLater(WantedMonitor& monitor) {
    monitor.retry = std::make_unique<asio::steady_timer>(m_io, monitor.backoff.next());
    monitor.retry->async_wait([this, id = monitor.crossRefId](std::error_code error) {
        if (error) {
            return;
        }
        WantedMonitor* waiting = m_table.find(id);
        if (waiting != nullptr && m_channel.isReady() && !waiting->isOn() && !waiting->starting) {
            restart(*waiting);
        }
    });
}

void LinkMonitors::markStarted(WantedMonitor& monitor, std::string switchId) {
    monitor.switchId = std::move(switchId);
    monitor.backoff.reset();
    monitor.refused = false;
    CSTA_LINK_LOG(5, "monitor %s of %s is on; its id at the switch is %s", monitor.crossRefId.c_str(),
                  monitor.device.c_str(), monitor.switchId.c_str());
    for (const WireDocument& early : m_channel.claim(ReferenceKind::eMonitor, monitor.switchId)) {
        deliver(early, {&monitor});
    }
    m_synchronisation.monitorStarted(monitor);
    m_changed();
}

void LinkMonitors::remove(const std::string& crossRefId) {
    if (const WantedMonitor* monitor = m_table.find(crossRefId)) {
        m_synchronisation.gapBegins(*monitor);
        monitor->sink->live = false;
        const std::string switchId = monitor->switchId;
        m_table.remove(crossRefId);
        if (m_table.withSwitchId(switchId).empty()) {
            m_channel.drop(ReferenceKind::eMonitor, switchId);
        }
        m_changed();
    }
}

/// Stops a monitor that is no longer wanted and ignores the response.
void LinkMonitors::stopAtSwitch(const std::string& switchId) {
    if (!switchId.empty() && m_channel.isReady()) {
        m_channel.send(m_messages.monitorStop(switchId), [](const SwitchResponse& /*response*/) {});
    }
}

void LinkMonitors::deliver(const WireDocument& document, const std::vector<WantedMonitor*>& monitors) {
    const EventSchema* schema = findEventSchema(document.name());
    if (schema == nullptr) {
        CSTA_LINK_LOG(6, "%s is not supported", std::string(document.name()).c_str());
        return;
    }
    // A switch that assigns one id to two monitors of a device sends each event once.
    std::set<const CSTAEventIfc*> served;
    for (const WantedMonitor* monitor : monitors) {
        if (isSuppressed(monitor->filter, *schema) || !served.insert(monitor->sink->receiver).second) {
            continue;
        }
        std::vector<PhoneEvent> events = m_reader.read(document, {monitor->crossRefId, monitor->device});
        const std::string device = callDeviceOf(*monitor);
        for (PhoneEvent& read : events) {
            if (!m_delivery.isDropped(device, *read.event)) {
                CSTA_LINK_LOG(6, "%s for %s: %s", std::string(schema->rootName).c_str(),
                              monitor->crossRefId.c_str(), read.event->toString().c_str());
            }
            if (m_config.eventListener) {
                m_config.eventListener(schema->rootName);
            }
            m_synchronisation.adjust(*monitor, read);
        }
        m_delivery.deliver(monitor->sink, device, std::move(events));
    }
    m_synchronisation.limitCalls();
}

WantedMonitor* LinkMonitors::monitorOfDevice(const std::string& device) {
    const std::string wanted = comparableNumber(deviceAtSwitch(device));
    for (WantedMonitor* monitor : m_table.all()) {
        if (comparableNumber(deviceAtSwitch(monitor->device)) == wanted) {
            return monitor;
        }
    }
    return nullptr;
}

WantedMonitor* LinkMonitors::monitorOf(const std::string& device, const EventSink& sink) {
    for (WantedMonitor* monitor : m_table.all()) {
        if (monitor->device == device && monitor->sink->receiver == sink.receiver &&
            monitor->sink->source == sink.source) {
            return monitor;
        }
    }
    return nullptr;
}

std::string LinkMonitors::callDeviceOf(const WantedMonitor& monitor) const {
    return DeviceReader(m_config.ownDevice, monitor.device).monitoredDevice();
}

std::string LinkMonitors::deviceAtSwitch(const std::string& device) const {
    return device == CSTADevice::kLocalDevice ? m_config.ownDevice : device;
}

}  // namespace host
