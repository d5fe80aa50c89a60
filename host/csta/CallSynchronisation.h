#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/calls/CallClock.h"
#include "host/calls/LiveCallStoreIfc.h"
#include "host/calls/PhoneCallEvents.h"
#include "host/calls/PhoneCalls.h"
#include "host/csta/CstaLinkConfig.h"
#include "host/csta/MonitorTable.h"
#include "host/csta/SnapshotRequests.h"

namespace host {

/// Keeps the journal's calls correct over gaps in the events: a lost link, a stopped monitor, a restart.
///  1. A new monitor, or a journal that has forgotten its calls, gets the known calls again: events at their
///     old times. At a start these are the calls that the last run has noted.
///  2. After a monitor is (re)started at the switch, SnapshotDevice asks for the calls of its device, and
///     SnapshotCall for the parties of each. Events that arrive meanwhile are handled first.
///  3. A known call that is not in the snapshot has ended: a ConnectionCleared event at the time of its last
///     event, or of the gap if that is later. So has one whose caller is another one now.
///  4. A call of the snapshot that is not known begins; one that was established meanwhile is established.
///  5. If the switch does not have the service, the known calls stay. A call without an event for the
///     configured time ends, and one more whenever there are more than `kMaxCalls`: the one that is silent
///     longest, a talk counting as `kTalkBonus` younger, because it has no events.
///
/// Reader thread only.
class CallSynchronisation {
public:
    static constexpr std::size_t kMaxCalls = 1000;
    static constexpr std::chrono::hours kTalkBonus{4};

    /// Delivers events to the receiver of a monitor. Requires: `calls` has followed them.
    using Deliver = std::function<void(const WantedMonitor&, std::vector<PhoneEvent>)>;

    /// The references must outlive the object. Reads the calls that the last run has noted.
    CallSynchronisation(const CstaLinkConfig& config, asio::io_context& io, SnapshotRequests& snapshots,
                        MonitorTable& monitors, PhoneCalls& calls, Deliver deliver);

    /// A service has requested the monitor, and it was accepted.
    void monitorAccepted(const WantedMonitor& monitor);
    /// The monitor is on at the switch.
    void monitorStarted(const WantedMonitor& monitor);
    /// The monitor is no longer on, or the connection is lost.
    void gapBegins(const WantedMonitor& monitor);
    /// The journal has dropped its calls.
    void callsForgotten();
    /// Notes the time of the end, and cancels the timer. Call it while the monitors are on.
    void close();
    /// Ends the calls without an event for the configured time. A timer calls it.
    [[nodiscard]] bool isSilent(const PhoneCall& call) const;
    void endSilentCalls();
    void askForSilentCalls(const WantedMonitor& monitor);
    void endSilentCalls(const std::string& device);
    /// Ends the calls beyond `kMaxCalls`.
    void limitCalls();

    /// Sets the time of an assumed end to that of the gap if it is later.
    void adjust(const WantedMonitor& monitor, PhoneEvent& event) const;

private:
    using Time = PhoneCall::Time;

    /// The device as the calls name it.
    [[nodiscard]] std::string deviceOf(const WantedMonitor& monitor) const;
    [[nodiscard]] std::string deviceAtSwitch(const WantedMonitor& monitor) const;
    [[nodiscard]] const WantedMonitor* monitorOf(const std::string& device);
    [[nodiscard]] DeviceReader readerFor(const WantedMonitor& monitor) const;
    [[nodiscard]] std::vector<PhoneCall> callsOf(const std::string& device) const;

    void replay(const WantedMonitor& monitor, const PhoneCall& call);
    void fileNoted(const WantedMonitor& monitor);

    void apply(const std::string& crossRefId, const Moment& asked, const DeviceSnapshot& snapshot);
    void askForCall(const WantedMonitor& monitor, const DeviceSnapshot::Connection& connection,
                    const Moment& asked);
    void apply(const WantedMonitor& monitor, const DeviceSnapshot::Connection& connection,
               const Moment& asked, const CallSnapshot& snapshot);
    void begin(const WantedMonitor& monitor, const PhoneCall& call);
    void establish(const WantedMonitor& monitor, PhoneCall call);
    void end(const PhoneCall& call);
    /// Lets the calls follow the event, and delivers it.
    void give(const WantedMonitor& monitor, const std::string& device, PhoneEvent event);

    void scheduleAgeing();
    /// Notes that the monitored calls are up now.
    void confirmCalls();

    const CstaLinkConfig& m_config;
    SnapshotRequests& m_snapshots;
    MonitorTable& m_monitors;
    PhoneCalls& m_calls;
    const Deliver m_deliver;
    asio::steady_timer m_ageing;
    bool m_closed = false;
    /// The begin of the last gap, by the device.
    std::map<std::string, Time> m_gaps;
    /// Calls that had ended in the last run, but were not filed.
    std::vector<NotedCall> m_unfiled;
};

}  // namespace host
