#include "host/csta/CallSynchronisation.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

#include "host/calls/CallClock.h"
#include "host/calls/FollowCalls.h"
#include "host/csta-events/EventBuilder.h"
#include "host/csta-events/SnapshotRules.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta/requests/LinkLog.h"
#include "platform/csta/CSTALocalConnectionState.h"

namespace host {

namespace {

constexpr std::chrono::seconds kAgeingPeriod{10};

PhoneCall::Time now() {
    return std::chrono::system_clock::now();
}

}  // namespace

CallSynchronisation::CallSynchronisation(const CstaLinkConfig& config, asio::io_context& io,
                                         SnapshotRequests& snapshots, MonitorTable& monitors,
                                         PhoneCalls& calls, Deliver deliver)
    : m_config(config),
      m_snapshots(snapshots),
      m_monitors(monitors),
      m_calls(calls),
      m_deliver(std::move(deliver)),
      m_ageing(io) {
    if (m_config.liveCallStore != nullptr) {
        for (NotedCall& noted : m_config.liveCallStore->read()) {
            if (noted.ended) {
                m_unfiled.push_back(std::move(noted));
            } else {
                Time& gap = m_gaps[noted.call.device];
                gap = std::max(gap, noted.seen);
                noted.call.unconfirmed = true;
                m_calls.store(std::move(noted.call));
            }
        }
    }
    scheduleAgeing();
}

void CallSynchronisation::monitorAccepted(const WantedMonitor& monitor) {
    fileNoted(monitor);
    for (const PhoneCall& call : callsOf(deviceOf(monitor))) {
        replay(monitor, call);
    }
}

void CallSynchronisation::monitorStarted(const WantedMonitor& monitor) {
    m_snapshots.ofDevice(deviceAtSwitch(monitor), [this, id = monitor.crossRefId, asked = Moment::now()](
                                                      const std::optional<DeviceSnapshot>& snapshot) {
        if (snapshot) {
            apply(id, asked, *snapshot);
        } else {
            CSTA_LINK_LOG(5, "no snapshot for monitor %s; the known calls stay", id.c_str());
        }
    });
}

void CallSynchronisation::gapBegins(const WantedMonitor& monitor) {
    if (!monitor.isOn()) {
        return;
    }
    const std::string device = deviceOf(monitor);
    m_gaps[device] = now();
    for (PhoneCall& call : callsOf(device)) {
        call.unconfirmed = true;
        m_calls.store(std::move(call));
    }
}

void CallSynchronisation::callsForgotten() {
    for (const PhoneCall& call : m_calls.all()) {
        if (const WantedMonitor* monitor = monitorOf(call.device)) {
            replay(*monitor, call);
        }
    }
}

void CallSynchronisation::close() {
    confirmCalls();
    m_closed = true;
    m_ageing.cancel();
}

void CallSynchronisation::limitCalls() {
    const auto lastSign = [](const PhoneCall& call) {
        return call.lastEvent + (call.established ? kTalkBonus : std::chrono::hours(0));
    };
    while (m_calls.count() > kMaxCalls) {
        const PhoneCall ended = *m_calls.first([&lastSign](const PhoneCall& one, const PhoneCall& other) {
            return lastSign(one) < lastSign(other);
        });
        CSTA_LINK_LOG(3, "more than %zu calls are up; call %s ends as one whose end is not known", kMaxCalls,
                      ended.callId.c_str());
        end(ended);
    }
}

void CallSynchronisation::adjust(const WantedMonitor& monitor, PhoneEvent& event) const {
    const auto gap = m_gaps.find(deviceOf(monitor));
    if (event.endApproximate && event.time && gap != m_gaps.end()) {
        event.time = std::max(*event.time, gap->second);
    }
}

std::string CallSynchronisation::deviceOf(const WantedMonitor& monitor) const {
    return readerFor(monitor).monitoredDevice();
}

std::string CallSynchronisation::deviceAtSwitch(const WantedMonitor& monitor) const {
    return monitor.device == CSTADevice::kLocalDevice ? m_config.ownDevice : monitor.device;
}

const WantedMonitor* CallSynchronisation::monitorOf(const std::string& device) {
    for (const WantedMonitor* monitor : m_monitors.all()) {
        if (deviceOf(*monitor) == device) {
            return monitor;
        }
    }
    return nullptr;
}

DeviceReader CallSynchronisation::readerFor(const WantedMonitor& monitor) const {
    return {m_config.ownDevice, monitor.device};
}

std::vector<PhoneCall> CallSynchronisation::callsOf(const std::string& device) const {
    std::vector<PhoneCall> calls = m_calls.all();
    calls.erase(std::remove_if(calls.begin(), calls.end(),
                               [&device](const PhoneCall& call) { return call.device != device; }),
                calls.end());
    return calls;
}

/// The calls do not follow these events: they are known.
void CallSynchronisation::replay(const WantedMonitor& monitor, const PhoneCall& call) {
    CSTA_LINK_LOG(5, "call %s is given to the journal again", call.callId.c_str());
    const std::vector<PhoneCall> members =
        call.conference ? m_calls.membersOf(call.device, call.callId) : std::vector<PhoneCall>();
    m_deliver(monitor, eventsOf(call, members, monitor.crossRefId));
}

/// Files the calls that had ended in the last run. The journal ignores one that it has filed already.
void CallSynchronisation::fileNoted(const WantedMonitor& monitor) {
    const std::string device = deviceOf(monitor);
    for (NotedCall& noted : std::exchange(m_unfiled, {})) {
        if (noted.call.device != device) {
            m_unfiled.push_back(std::move(noted));
            continue;
        }
        if (isOnlyConference(noted.call)) {
            m_config.liveCallStore->delivered({.ends = {{.call = keyOf(noted.call)}}});
            continue;
        }
        const PhoneCall* const live = m_calls.find(device, noted.call.callId);
        const std::optional<PhoneCall> later = live == nullptr ? std::nullopt : std::optional(*live);
        m_calls.store(noted.call);
        replay(monitor, noted.call);
        give(monitor, device,
             {.event = unreportedEndEvent(noted.call, monitor.crossRefId),
              .time = noted.ended,
              .endApproximate = noted.endApproximate});
        if (later) {
            m_calls.store(*later);
        }
    }
}

void CallSynchronisation::apply(const std::string& crossRefId, const Moment& asked,
                                const DeviceSnapshot& snapshot) {
    const WantedMonitor* monitor = m_monitors.find(crossRefId);
    if (monitor == nullptr) {
        return;
    }
    std::set<std::string> present;
    for (const DeviceSnapshot::Connection& connection : snapshot.connections) {
        if (connection.own == CSTA_LCS_Null) {
            continue;
        }
        if (connection.callId.empty()) {
            // The switch does not number its calls, so it cannot be asked for one.
            present.insert(EventBuilder::unnumberedCallId(monitor->crossRefId));
            continue;
        }
        present.insert(connection.callId);
        askForCall(*monitor, connection, asked);
    }
    for (const PhoneCall& call : callsOf(deviceOf(*monitor))) {
        const bool isLive =
            m_calls.find(call.device, call.callId) != nullptr;  // may have ended in a conference
        if (isLive && !m_calls.isInConference(call) && !present.contains(call.callId) &&
            call.lastEvent < timeIn(call, asked)) {
            end(call);
        }
    }
}

/// A call that an event has introduced since needs no snapshot.
void CallSynchronisation::askForCall(const WantedMonitor& monitor,
                                     const DeviceSnapshot::Connection& connection, const Moment& asked) {
    m_snapshots.ofCall(connection.callId, deviceAtSwitch(monitor), readerFor(monitor),
                       [this, id = monitor.crossRefId, connection, asked,
                        wasKnown = m_calls.find(deviceOf(monitor), connection.callId) !=
                                   nullptr](const std::optional<CallSnapshot>& snapshot) {
                           const WantedMonitor* asking = m_monitors.find(id);
                           const bool ended = asking != nullptr && wasKnown &&
                                              m_calls.find(deviceOf(*asking), connection.callId) == nullptr;
                           if (asking != nullptr && snapshot && !ended) {
                               apply(*asking, connection, asked, *snapshot);
                           }
                       });
}

void CallSynchronisation::apply(const WantedMonitor& monitor, const DeviceSnapshot::Connection& connection,
                                const Moment& asked, const CallSnapshot& snapshot) {
    const std::string device = deviceOf(monitor);
    std::optional<PhoneCall> call = callFrom(connection, snapshot, device);
    const PhoneCall* known = m_calls.find(device, connection.callId);
    if (!call) {
        return;
    }
    // Events that have arrived since are newer than the device's snapshot, but not than this response.
    const bool hasEvent = known != nullptr && known->lastEvent >= timeIn(*known, asked);
    if (known != nullptr && !hasEvent && isOtherCall(*known, *call, snapshot)) {
        end(PhoneCall(*known));
        known = nullptr;
    }
    if (known == nullptr) {
        begin(monitor, *call);
    } else if (call->established && !known->established) {
        if (!isPickedUp(*known, *call)) {
            call->calling = known->calling;
            call->outgoing = known->outgoing;
        }
        establish(monitor, *call);
    } else if (known->offered && call->role == PhoneRole::eRinging) {
        give(monitor, device, {ringingEvent(*known, monitor.crossRefId)});
    }
}

void CallSynchronisation::begin(const WantedMonitor& monitor, const PhoneCall& call) {
    CSTA_LINK_LOG(5, "call %s has begun without an event", call.callId.c_str());
    give(
        monitor, call.device,
        {call.outgoing ? originatedEvent(call, monitor.crossRefId) : ringingEvent(call, monitor.crossRefId)});
    if (call.established) {
        establish(monitor, call);
    }
}

void CallSynchronisation::establish(const WantedMonitor& monitor, PhoneCall call) {
    if (call.outgoing && call.partner.number.empty()) {
        call.partner = call.called;
    }
    give(monitor, call.device, {establishedEvent(call, monitor.crossRefId)});
}

/// Without a monitor the journal has no interest in the call.
void CallSynchronisation::end(const PhoneCall& call) {
    CSTA_LINK_LOG(5, "call %s has ended without an event", call.callId.c_str());
    const WantedMonitor* monitor = monitorOf(call.device);
    if (monitor == nullptr) {
        m_calls.remove(call.device, call.callId);
        return;
    }
    PhoneEvent cleared{.event = unreportedEndEvent(call, monitor->crossRefId),
                       .time = call.lastEvent,
                       .endApproximate = true};
    adjust(*monitor, cleared);
    give(*monitor, call.device, std::move(cleared));
}

void CallSynchronisation::give(const WantedMonitor& monitor, const std::string& device, PhoneEvent event) {
    if (!event.time) {
        event.time = m_calls.timeOf(*event.event, device);
    }
    follow(m_calls, *event.event, device, *event.time);
    std::vector<PhoneEvent> events;
    events.push_back(std::move(event));
    m_deliver(monitor, std::move(events));
}

void CallSynchronisation::scheduleAgeing() {
    m_ageing.expires_after(kAgeingPeriod);
    m_ageing.async_wait([this](std::error_code error) {
        if (!error && !m_closed) {
            scheduleAgeing();
            endSilentCalls();
            confirmCalls();
        }
    });
}

void CallSynchronisation::confirmCalls() {
    if (m_config.liveCallStore == nullptr) {
        return;
    }
    for (const PhoneCall& call : m_calls.all()) {
        const WantedMonitor* monitor = monitorOf(call.device);
        if (monitor != nullptr && monitor->isOn()) {
            m_config.liveCallStore->confirm(keyOf(call), now());
        }
    }
}

bool CallSynchronisation::isSilent(const PhoneCall& call) const {
    return !m_calls.isInConference(call) &&
           timeIn(call, Moment::now()) - call.lastEvent > m_config.callMaxAge;
}

/// Asks the switch if a call without events is still up. Without a snapshot the call ends.
void CallSynchronisation::endSilentCalls() {
    std::set<std::string> devices;
    for (const PhoneCall& call : m_calls.all()) {
        if (isSilent(call)) {
            devices.insert(call.device);
        }
    }
    for (const std::string& device : devices) {
        const WantedMonitor* monitor = monitorOf(device);
        if (monitor != nullptr && monitor->isOn()) {
            askForSilentCalls(*monitor);
        } else {
            endSilentCalls(device);
        }
    }
}

void CallSynchronisation::askForSilentCalls(const WantedMonitor& monitor) {
    m_snapshots.ofDevice(deviceAtSwitch(monitor),
                         [this, id = monitor.crossRefId, device = deviceOf(monitor),
                          asked = Moment::now()](const std::optional<DeviceSnapshot>& snapshot) {
                             if (!snapshot) {
                                 endSilentCalls(device);
                                 return;
                             }
                             apply(id, asked, *snapshot);
                             for (PhoneCall& call : callsOf(device)) {
                                 if (isSilent(call)) {
                                     call.lastEvent = timeIn(call, Moment::now());
                                     m_calls.store(std::move(call));
                                 }
                             }
                         });
}

void CallSynchronisation::endSilentCalls(const std::string& device) {
    for (const PhoneCall& call : callsOf(device)) {
        if (isSilent(call)) {
            CSTA_LINK_LOG(4, "call %s had no event for too long", call.callId.c_str());
            end(call);
        }
    }
}

}  // namespace host
