#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "host/csta-wire/WireDocument.h"
#include "tests/reliability/random-calls/CallEvent.h"
#include "tests/reliability/random-calls/SwitchModel.h"

namespace reliability {

/// The switch's end of the link. It accepts one connection at a time and responds to requests on a thread of
/// its own. The other operations are for one thread.
class SwitchPeer {
public:
    SwitchPeer();
    ~SwitchPeer();
    SwitchPeer(const SwitchPeer&) = delete;
    SwitchPeer& operator=(const SwitchPeer&) = delete;

    [[nodiscard]] std::uint16_t port() const;

    /// Waits for the phone to connect and to monitor its own number. False after 20 s.
    [[nodiscard]] bool connect();
    /// Waits until the phone has asked for its calls, and for the parties of those. False after 20 s.
    [[nodiscard]] bool awaitSnapshot(const std::vector<std::string>& callIds);
    /// Waits until the phone has read everything that was sent. False after 20 s.
    [[nodiscard]] bool awaitIdle();
    void disconnect();
    /// The calls that the following snapshots show.
    void setCalls(std::vector<Call> calls, const Dialect& dialect);

    /// Sends the event, after which snapshots show those calls.
    void send(const CallEvent& event, const Dialect& dialect, std::vector<Call> calls = {});
    /// Sends any bytes.
    void sendBytes(std::string_view bytes);
    /// The id of the monitor of the own number.
    [[nodiscard]] std::string crossRefId();
    /// False after the phone has disconnected.
    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    /// The number of monitors that were started. Thread-safe.
    [[nodiscard]] int monitorStarts() const { return m_monitors; }

private:
    void serve();
    void respond(int invokeId, const host::WireDocument& request);
    [[nodiscard]] std::string responseTo(const host::WireDocument& request);
    [[nodiscard]] std::string snapshotOfDevice();
    [[nodiscard]] std::string snapshotOfCall(const std::string& callId);
    /// Requires: `m_writeMutex` is held.
    void write(int invokeId, const std::string& xml);
    template <typename Condition>
    [[nodiscard]] bool await(Condition condition);

    asio::io_context m_io;
    asio::ip::tcp::acceptor m_acceptor;
    asio::ip::tcp::socket m_socket;
    std::thread m_reader;

    /// Held while a message is made and written: a response shows the calls as of the events before it.
    std::mutex m_writeMutex;

    std::atomic<bool> m_isOpen{false};

    // Used by the reader thread only.
    std::atomic<int> m_monitors{0};
    std::string m_crossRefIdSent;

    // Guarded by m_mutex.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_crossRefId;
    bool m_snapshotSent = false;
    int m_responses = 0;
    std::vector<std::string> m_callsTold;
    std::vector<Call> m_calls;
    Dialect m_dialect;
};

}  // namespace reliability
