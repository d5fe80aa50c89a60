#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta/association/ExponentialBackoff.h"
#include "host/sip/PhoneControl.h"
#include "host/sip/PhoneDirectory.h"
#include "host/sip/PhoneProcess.h"
#include "host/sip/SipAccount.h"

namespace host {

/// Keeps a telephone running and connected: starts it as a child process (or expects it to be running),
/// connects to its control port, asks regularly whether it is alive, and begins anew after a failure, with
/// exponential backoff.
///
/// Call from the thread of the io_context only. Must outlive the operations of the io_context.
class PhoneSupervisor {
public:
    enum class Loss {
        eEnded,   ///< it has ended, with all its calls
        eKilled,  ///< it did not respond and was ended; its calls may have ended before
        eAway,    ///< a telephone of another is not connected; its calls may go on
    };
    struct Handlers {
        /// The telephone is connected.
        std::function<void()> connected;
        std::function<void(const SipPhoneEvent&)> event;
        /// A text line of the output of the child process.
        std::function<void(const std::string&)> printed;
        /// The response to `reginfo`, which is asked for at once and then regularly.
        std::function<void(const std::string& text)> registration;
        /// An attempt has failed, or the telephone is lost, which `lost` follows.
        std::function<void(const std::string& reason)> failed;
        /// The telephone is not connected any more.
        std::function<void(Loss)> lost;
    };

    /// `directory` is for the configuration of the child process. Throws `std::runtime_error` with a text for
    /// the user if the telephone is not installed or the directory cannot be used.
    PhoneSupervisor(asio::io_context& io, SipAccount account, const std::filesystem::path& directory,
                    Handlers handlers);

    void start() { attempt(); }
    /// Disconnects and ends the child process. No handler is called afterwards.
    void stop();
    /// Sends commands to the telephone; the handler gets no responses if it is not connected.
    void send(const std::vector<PhoneControl::Command>& commands, PhoneControl::ResponseHandler handler);
    [[nodiscard]] bool isConnected() const noexcept { return m_control != nullptr; }

private:
    void attempt();
    void startProcess();
    void connect();
    void connected(asio::ip::tcp::socket socket);
    void failed(const std::string& reason, bool isSilent = false);
    void closeControl();
    void check();

    asio::io_context& m_io;
    const SipAccount m_account;
    Handlers m_handlers;
    std::filesystem::path m_program;
    std::optional<PhoneDirectory> m_directory;
    std::unique_ptr<PhoneProcess> m_process;
    std::shared_ptr<PhoneControl> m_control;
    Endpoint m_endpoint;
    asio::steady_timer m_timer;
    ExponentialBackoff m_backoff;
    std::chrono::steady_clock::time_point m_connectUntil;
    std::chrono::steady_clock::time_point m_connectedAt;
    /// Distinguishes an attempt from those before it.
    unsigned m_attempt = 0;
    bool m_stopped = false;
};

}  // namespace host
