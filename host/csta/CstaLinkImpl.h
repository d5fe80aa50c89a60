#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta/CallLogRequester.h"
#include "host/csta/CstaLinkConfig.h"
#include "host/csta/DeviceDiscovery.h"
#include "host/csta/EventBatch.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/LinkMonitors.h"
#include "host/csta/SystemStatusReceivers.h"
#include "host/csta/association/LinkedLine.h"
#include "host/csta/association/SwitchLink.h"
#include "host/csta/call-control/CallControl.h"
#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

/// Implementation of `CstaLink`: the components of one line on the link to its switch.
///
///   SwitchLink -> event   -> LinkMonitors -> EventDelivery -> the line's strand
///              -> segment -> DeviceDiscovery, LinkMonitors
///              -> status  -> SystemStatusReceivers
class CstaLinkImpl final : private RequestChannel, private LinkedLine {
public:
    /// Has a link of its own if `shared` is `nullptr`.
    CstaLinkImpl(SwitchLink* shared, CstaLinkConfig config, const EventDelivery::Post& post,
                 const EventDelivery::PostHere& here);
    ~CstaLinkImpl() override;

    // Call from the owner's thread.
    void setStatusListener(CstaLinkStatusListener listener);
    void setCallsListener(std::function<void()> listener) { m_callsListener = std::move(listener); }
    void start();
    void stop();

    // Thread-safe.
    [[nodiscard]] CstaLinkStatus status() const noexcept;
    [[nodiscard]] std::size_t callCount() const noexcept { return m_monitors.calls().count(); }
    /// Runs `work` on the reader thread and waits until `work` has called its argument.
    [[nodiscard]] RequestOutcome perform(const std::function<void(const CompleteRequest&)>& work) {
        return resultOf<RequestOutcome>(work).value_or(RequestOutcome());
    }
    /// The same for a result of any type; `std::nullopt` if the link has ended.
    template <typename Result>
    [[nodiscard]] std::optional<Result> resultOf(
        const std::function<void(const std::function<void(Result)>&)>& work);
    void release(const Service& source);

    // Call from the reader thread, inside `perform`.
    [[nodiscard]] LinkMonitors& monitors() noexcept { return m_monitors; }
    [[nodiscard]] CallLogRequester& callLog() noexcept { return m_callLog; }
    [[nodiscard]] CallControl& callControl() noexcept { return m_callControl; }
    void registerForStatus(std::shared_ptr<EventSink> sink, const CompleteRequest& complete);

private:
    // RequestChannel
    [[nodiscard]] bool isReady() const override { return m_isLinked && m_switch.isReady(); }
    void send(const std::string& xml, PendingRequests::Handler handler) override;
    [[nodiscard]] std::vector<WireDocument> claim(ReferenceKind kind, const std::string& id) override;
    void drop(ReferenceKind kind, const std::string& id) override;

    // LinkedLine
    void connected() override { updateStatus(); }
    void ready() override;
    void connectionLost() override;
    void onEvent(const WireDocument& event) override;
    void onSegment(const WireDocument& segment) override;
    void onLateResponse(const WireDocument& response) override { m_callControl.onLateResponse(response); }
    void monitorStopped(const std::string& id) override { m_monitors.stoppedBySwitch(id); }
    void onSystemStatus(std::string_view word) override;
    void rememberSystemStatus(std::string_view word) override { m_receivers.remember(word); }
    void restartMonitors() override;
    void askForCalls() override { m_monitors.askForCalls(); }
    void devicesChanged() override { m_discovery.start(); }
    [[nodiscard]] bool awaitsDevices() const override { return m_discovery.isWaiting(); }
    void flushEvents() override { m_events.flush(); }
    void endEvents() override { m_events.end(); }

    /// Posts the last deliveries of a read: a thread of the link carries them out itself if it can.
    [[nodiscard]] static EventDelivery::Post lastOf(LinkThreads& threads, EventDelivery::Post post,
                                                    EventDelivery::PostHere here);
    /// Posts through m_events.
    [[nodiscard]] EventDelivery::Post batched();
    /// True for an event that is handed over to the monitors; call control has seen it then.
    [[nodiscard]] bool isForMonitors(const WireDocument& event);
    void devicesFound(const std::vector<LineDevice>& devices);
    void updateStatus();
    /// Leaves the link: afterwards the reader calls no function of the line, except a handler of a timer that
    /// had run out.
    void leave();
    /// Posts `work` to the reader thread; false if the link has ended, or on the reader thread itself.
    [[nodiscard]] bool post(std::function<void()> work);

    // Constant after `start`.
    const CstaLinkConfig m_config;
    const LinkMessages m_messages;
    CstaLinkStatusListener m_listener;
    std::function<void()> m_callsListener;

    /// Empty if the line shares a link.
    const std::unique_ptr<SwitchLink> m_own;
    SwitchLink& m_switch;

    // Reader thread only.
    EventBatch m_events;
    CallLogRequester m_callLog;
    SystemStatusReceivers m_receivers;
    LinkMonitors m_monitors;
    CallControl m_callControl;
    DeviceDiscovery m_discovery;
    CstaLinkStatus m_lastStatus;
    bool m_isLinked = false;

    // Copies of the status for other threads.
    std::atomic<bool> m_connectedNow{false};
    std::atomic<bool> m_monitoringNow{false};
    std::atomic<bool> m_callControlNow{false};

    // Guarded by m_acceptingLock: true while the reader thread accepts work of the line.
    std::mutex m_acceptingLock;
    bool m_accepting = true;

    // Held while the line leaves the link.
    std::mutex m_leaveLock;
};

template <typename Result>
std::optional<Result> CstaLinkImpl::resultOf(
    const std::function<void(const std::function<void(Result)>&)>& work) {
    auto promise = std::make_shared<std::promise<Result>>();
    std::future<Result> result = promise->get_future();
    if (!post([work, promise = std::move(promise)] {
            work([promise](Result value) { promise->set_value(std::move(value)); });
        })) {
        return std::nullopt;
    }
    try {
        return result.get();
    } catch (const std::future_error&) {
        return std::nullopt;  // an exception has ended the work
    }
}

}  // namespace host
