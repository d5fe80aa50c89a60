#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include "host/csta/Association.h"
#include "host/csta/CallLogRequester.h"
#include "host/csta/CstaLinkConfig.h"
#include "host/csta/DeviceDiscovery.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/LinkMessages.h"
#include "host/csta/LinkMonitors.h"
#include "host/csta/PendingRequests.h"
#include "host/csta/RequestChannel.h"
#include "host/csta/SwitchConnection.h"
#include "host/csta/SystemStatusReceivers.h"

namespace host {

/// Implementation of `CstaLink`: the reader thread and the components that run on it.
///
///   SwitchConnection -> Frame -> event            -> LinkMonitors -> EventDelivery -> the line's strand
///                             -> response         -> PendingRequests -> the handler of the request
///                             -> request, notice  -> handled here
class CstaLinkImpl final : private RequestChannel {
public:
    CstaLinkImpl(CstaLinkConfig config, const EventDelivery::Post& post);
    ~CstaLinkImpl() override;

    // Call from the owner's thread.
    void setStatusListener(CstaLinkStatusListener listener);
    void start();
    void stop();

    // Thread-safe.
    [[nodiscard]] CstaLinkStatus status() const noexcept;
    [[nodiscard]] std::size_t callCount() const noexcept { return m_monitors.calls().count(); }
    /// Runs `work` on the reader thread and waits until `work` has called its argument.
    [[nodiscard]] RequestOutcome perform(const std::function<void(const CompleteRequest&)>& work);
    void release(const Service& source);

    // Call from the reader thread, inside `perform`.
    [[nodiscard]] LinkMonitors& monitors() noexcept { return m_monitors; }
    [[nodiscard]] CallLogRequester& callLog() noexcept { return m_callLog; }
    void registerForStatus(std::shared_ptr<EventSink> sink, const CompleteRequest& complete);

private:
    // RequestChannel
    [[nodiscard]] bool isReady() const override { return m_association.isReady(); }
    void send(const std::string& xml, PendingRequests::Handler handler) override;

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

    // Constant after `start`.
    const CstaLinkConfig m_config;
    const LinkMessages m_messages;
    CstaLinkStatusListener m_listener;

    // Reader thread only.
    asio::io_context m_io;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    PendingRequests m_pending;
    SwitchConnection m_connection;
    Association m_association;
    CallLogRequester m_callLog;
    SystemStatusReceivers m_receivers;
    LinkMonitors m_monitors;
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

    // Guarded by m_acceptingLock: true while the reader thread accepts work.
    std::mutex m_acceptingLock;
    bool m_accepting = true;

    // Held while the thread is joined.
    std::mutex m_joinLock;
    std::thread m_thread;
    const std::thread::id m_readerId;
};

}  // namespace host
