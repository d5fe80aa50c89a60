#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include "host/csta/association/ApplicationSession.h"
#include "host/csta/association/CrossReferences.h"
#include "host/csta/association/LinkThreads.h"
#include "host/csta/association/LinkedLine.h"
#include "host/csta/association/SwitchConnection.h"
#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/PendingRequests.h"
#include "host/csta/requests/RequestChannel.h"
#include "host/tls/TlsFiles.h"

namespace host {

/// Settings of the connection to a switch. A plain value.
struct SwitchLinkConfig {
    std::string host = "127.0.0.1";
    std::uint16_t port = 4242;
    /// The check of the switch by TLS; std::nullopt without TLS.
    std::optional<ServerTrust> tls{};
    /// Name space edition of sent messages ("ed3" ... "ed6"). The link reads every edition.
    std::string edition = "ed4";
    /// "auto", or "application-session".
    std::string session = "auto";
    std::chrono::milliseconds requestTimeout{5000};
    /// Delay before the first reconnection attempt. It doubles for each further attempt, up to the maximum.
    std::chrono::milliseconds reconnectFirst{1000};
    std::chrono::milliseconds reconnectMax{30000};
};

/// The connection to one switch, which its lines share: one association carries the monitors and requests of
/// all of them.
///
///   SwitchConnection -> Frame -> event, segment   -> CrossReferences -> the line that has claimed it
///                             -> response         -> PendingRequests -> the handler of the request
///                             -> request, notice  -> handled here; the lines hear of it
///
/// At most `kWindow` requests are outstanding, so that the monitors of thousands of lines do not flood the
/// switch; later ones wait in order.
///
/// Threads: two threads take turns as the reader, which does all input and output. "Owner": the thread that
/// creates, starts and stops the link. Everything else states its thread.
class SwitchLink {
public:
    /// Requests at the switch without a response.
    static constexpr std::size_t kWindow = 256;

    explicit SwitchLink(SwitchLinkConfig config);
    /// Stops the link if it still runs. Requires: no line is linked.
    ~SwitchLink();
    SwitchLink(const SwitchLink&) = delete;
    SwitchLink& operator=(const SwitchLink&) = delete;

    /// Starts connecting and returns at once. Owner, once.
    void start();
    /// Closes the connection and joins the threads. Waits until each line has left. Owner. Idempotent.
    void stop();

    /// Posts `work` to the reader. Returns false after `stop`. Any thread.
    [[nodiscard]] bool post(std::function<void()> work);
    /// True on the reader. Any thread.
    [[nodiscard]] bool isReader() const { return m_threads.isReader(); }

    // Reader only.

    /// Links a line, which is borrowed until `remove`. It hears at once of a connection that is there.
    void add(LinkedLine& line);
    /// Fails the requests of the line and drops what it has claimed. The link does not call it afterwards.
    void remove(LinkedLine& line);

    [[nodiscard]] bool isConnected() const noexcept { return m_connection.isConnected(); }
    [[nodiscard]] bool isReady() const noexcept { return m_session.isReady(); }
    /// True if the switch has refused to register the link for its status.
    [[nodiscard]] bool isRegistrationRefused() const noexcept { return m_registrationRefused; }
    /// See `RequestChannel::send`. `line` is `nullptr` for the link's own requests.
    void send(const LinkedLine* line, const std::string& xml, PendingRequests::Handler handler);
    [[nodiscard]] CrossReferences& references() noexcept { return m_references; }
    [[nodiscard]] asio::io_context& io() noexcept { return m_io; }
    [[nodiscard]] LinkThreads& threads() noexcept { return m_threads; }

private:
    /// A request that waits for its place in the window.
    struct Waiting {
        const LinkedLine* line;
        std::string xml;
        PendingRequests::Handler handler;
    };

    void sendNow(Waiting request);
    /// Sends what fits into the window.
    void sendWaiting();
    /// Fails the waiting requests of a line; of all, if it is `nullptr`.
    void failWaiting(const LinkedLine* line);
    void connected();
    void ready();
    void lost(const std::string& reason);
    void received(const Frame& frame);
    void handOver(const Frame& frame, WireDocument document);
    void onEvent(WireDocument event);
    void onSegment(WireDocument segment);
    void respond(int invokeId, const WireDocument& document);
    void stoppedBySwitch(const std::string& id);
    void systemStatus(std::string_view word);
    void deliverStatus(std::string_view word);
    void registerAtSwitch(bool withDevices = true);
    void flushEvents();
    void endEvents();

    // Constant after construction.
    const SwitchLinkConfig m_config;
    const LinkMessages m_messages;

    // Reader only.
    asio::io_context m_io;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    PendingRequests m_pending;
    std::deque<Waiting> m_waiting;
    CrossReferences m_references;
    SwitchConnection m_connection;
    ApplicationSession m_session;
    std::vector<LinkedLine*> m_lines;
    /// The lines with events in the present read.
    std::vector<LinkedLine*> m_withEvents;
    std::string m_statusWord;  // that of the switch on this connection; empty if unknown
    bool m_outageLogged = false;
    bool m_replacementsLogged = false;  // on this connection
    bool m_everConnected = false;
    bool m_wasConnected = false;
    bool m_notifyStatus = false;
    bool m_registrationRefused = false;
    bool m_monitorsDoubtful = false;
    bool m_callsDoubtful = false;

    // Guarded by m_acceptingLock: true while the reader accepts work.
    std::mutex m_acceptingLock;
    bool m_accepting = true;

    // Held while the threads are joined.
    std::mutex m_joinLock;
    LinkThreads m_threads;
};

}  // namespace host
