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

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include "host/csta/Association.h"
#include "host/csta/CallLogRequester.h"
#include "host/csta/CstaLinkConfig.h"
#include "host/csta/DeviceDiscovery.h"
#include "host/csta/EventBatch.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/LinkMessages.h"
#include "host/csta/LinkMonitors.h"
#include "host/csta/LinkThreads.h"
#include "host/csta/SwitchConnection.h"
#include "host/csta/SystemStatusReceivers.h"
#include "host/csta/call-control/CallControl.h"
#include "host/csta/requests/PendingRequests.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

/// Implementation of `CstaLink`: the reader thread and the components that run on it.
///
///   SwitchConnection -> Frame -> event            -> LinkMonitors -> EventDelivery -> the line's strand
///                             -> response         -> PendingRequests -> the handler of the request
///                             -> request, notice  -> handled here
class CstaLinkImpl final : private RequestChannel {
public:
    CstaLinkImpl(CstaLinkConfig config, const EventDelivery::Post& post, const EventDelivery::PostHere& here);
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
    [[nodiscard]] bool isReady() const override { return m_association.isReady(); }
    void send(const std::string& xml, PendingRequests::Handler handler) override;

    /// Posts the last deliveries of a read: a thread of the link carries them out itself if it can.
    [[nodiscard]] static EventDelivery::Post lastOf(LinkThreads& threads, EventDelivery::Post post,
                                                    EventDelivery::PostHere here);
    /// Posts through m_events.
    [[nodiscard]] EventDelivery::Post batched();
    void connected();
    void ready();
    void lost(const std::string& reason);
    void received(const Frame& frame);
    void respond(int invokeId, const WireDocument& document);
    void systemStatus(std::string_view word);
    void deliverStatus(std::string_view word);
    void registerAtSwitch(bool withDevices = true);
    void devicesFound(const std::vector<LineDevice>& devices);
    void updateStatus();
    /// Posts `work` to the reader thread; false if the link has ended, or on the reader thread itself.
    [[nodiscard]] bool post(std::function<void()> work);

    // Constant after `start`.
    const CstaLinkConfig m_config;
    const LinkMessages m_messages;
    CstaLinkStatusListener m_listener;
    std::function<void()> m_callsListener;

    // Reader thread only.
    asio::io_context m_io;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    PendingRequests m_pending;
    EventBatch m_events;
    SwitchConnection m_connection;
    Association m_association;
    CallLogRequester m_callLog;
    SystemStatusReceivers m_receivers;
    LinkMonitors m_monitors;
    CallControl m_callControl;
    DeviceDiscovery m_discovery;
    CstaLinkStatus m_lastStatus;
    bool m_outageLogged = false;
    bool m_replacementsLogged = false;  // on this connection
    bool m_everConnected = false;
    bool m_notifyStatus = false;
    bool m_registrationRefused = false;
    bool m_monitorsDoubtful = false;
    bool m_callsDoubtful = false;

    // Copies of the status for other threads.
    std::atomic<bool> m_connectedNow{false};
    std::atomic<bool> m_monitoringNow{false};
    std::atomic<bool> m_callControlNow{false};

    // Guarded by m_acceptingLock: true while the reader thread accepts work.
    std::mutex m_acceptingLock;
    bool m_accepting = true;

    // Held while the threads are joined.
    std::mutex m_joinLock;
    LinkThreads m_threads;
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
