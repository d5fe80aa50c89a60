#include "host/sip/PhoneSupervisor.h"

#include <exception>
#include <system_error>
#include <utility>

#include <asio/connect.hpp>
#include <asio/ip/address.hpp>

#include "platform/logging/Logging.h"

namespace host {

namespace {

using asio::ip::tcp;
using std::chrono::steady_clock;

constexpr const char* kComponent = "SIP Gateway";
constexpr std::chrono::milliseconds kFirstDelay{250};
constexpr std::chrono::milliseconds kLongestDelay{30000};
constexpr std::chrono::milliseconds kConnectRetry{25};
/// The time that the child process has to open its control port.
constexpr std::chrono::seconds kStartPatience{5};
constexpr std::chrono::seconds kCheckInterval{10};
/// A telephone that was connected for less counts as one that failed to start.
constexpr std::chrono::seconds kStable{10};

/// A port that is free now.
std::uint16_t freePort(asio::io_context& io) {
    return tcp::acceptor(io, {asio::ip::address_v4::loopback(), 0}).local_endpoint().port();
}

}  // namespace

PhoneSupervisor::PhoneSupervisor(asio::io_context& io, SipAccount account,
                                 const std::filesystem::path& directory, Handlers handlers)
    : m_io(io),
      m_account(std::move(account)),
      m_handlers(std::move(handlers)),
      m_timer(io),
      m_backoff(kFirstDelay, kLongestDelay) {
    if (!m_account.baresip) {
        m_program = findBaresip();
        m_directory.emplace(directory);
        m_directory->write(m_account, 0);
    }
}

void PhoneSupervisor::stop() {
    m_stopped = true;
    ++m_attempt;
    m_timer.cancel();
    closeControl();
    m_process.reset();
}

/// First without the connection, so that what waits for a response sends nothing more over it.
void PhoneSupervisor::closeControl() {
    if (const auto control = std::exchange(m_control, nullptr)) {
        control->close();
    }
}

void PhoneSupervisor::send(const std::vector<PhoneControl::Command>& commands,
                           PhoneControl::ResponseHandler handler) {
    if (m_control) {
        m_control->send(commands, std::move(handler));
    } else {
        handler({});
    }
}

void PhoneSupervisor::attempt() {
    ++m_attempt;
    try {
        if (m_account.baresip) {
            m_endpoint = *m_account.baresip;
            m_connectUntil = steady_clock::now();
        } else {
            startProcess();
            m_connectUntil = steady_clock::now() + kStartPatience;
        }
    } catch (const std::exception& error) {
        failed(error.what());
        return;
    }
    connect();
}

void PhoneSupervisor::startProcess() {
    m_endpoint = {"127.0.0.1", freePort(m_io)};
    m_directory->write(m_account, m_endpoint.port);
    m_process = std::make_unique<PhoneProcess>(
        m_io, m_program, m_directory->path(),
        PhoneProcess::Handlers{.printed = m_handlers.printed, .ended = [this](const std::string& lastWords) {
                                   failed("baresip has ended" + (lastWords.empty() ? "" : ": " + lastWords));
                               }});
}

void PhoneSupervisor::connect() {
    auto resolver = std::make_shared<tcp::resolver>(m_io);
    auto socket = std::make_shared<tcp::socket>(m_io);
    resolver->async_resolve(
        m_endpoint.host, std::to_string(m_endpoint.port),
        [this, resolver, socket, attempt = m_attempt](std::error_code, const auto& addresses) {
            asio::async_connect(*socket, addresses,
                                [this, socket, attempt](std::error_code error, const tcp::endpoint&) {
                                    if (attempt != m_attempt) {
                                        return;
                                    }
                                    if (!error) {
                                        connected(std::move(*socket));
                                    } else if (steady_clock::now() >= m_connectUntil) {
                                        failed("its control port: " + error.message());
                                    } else {
                                        m_timer.expires_after(kConnectRetry);
                                        m_timer.async_wait([this, attempt](std::error_code cancelled) {
                                            if (!cancelled && attempt == m_attempt) {
                                                connect();
                                            }
                                        });
                                    }
                                });
        });
}

void PhoneSupervisor::connected(tcp::socket socket) {
    m_connectedAt = steady_clock::now();
    m_control = std::make_shared<PhoneControl>(
        std::move(socket),
        PhoneControl::Handlers{
            .event = [this](const SipPhoneEvent& event) { m_handlers.event(event); },
            .closed = [this](const std::string& reason, bool isSilent) { failed(reason, isSilent); }});
    m_control->start();
    logAppUni(kComponent, __FILE_NAME__, 5, __LINE__, "baresip is connected at %s",
              m_endpoint.text().c_str());
    m_handlers.connected();
    check();
}

void PhoneSupervisor::failed(const std::string& reason, bool isSilent) {
    if (m_stopped) {
        return;
    }
    ++m_attempt;
    const bool wasConnected = m_control != nullptr;
    closeControl();
    const Loss loss = m_process == nullptr ? Loss::eAway : isSilent ? Loss::eKilled : Loss::eEnded;
    m_process.reset();
    if (wasConnected && steady_clock::now() - m_connectedAt > kStable) {
        m_backoff.reset();
    }
    const auto delay = m_backoff.next();
    logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "baresip at %s is lost: %s; next attempt in %lld ms",
              m_endpoint.text().c_str(), reason.c_str(), static_cast<long long>(delay.count()));
    m_handlers.failed(reason);
    if (wasConnected) {
        m_handlers.lost(loss);
    }
    m_timer.expires_after(delay);
    m_timer.async_wait([this, attempt = m_attempt](std::error_code cancelled) {
        if (!cancelled && attempt == m_attempt) {
            this->attempt();
        }
    });
}

/// A response that does not come closes the connection.
void PhoneSupervisor::check() {
    send({{.name = "reginfo"}}, [this](const std::vector<PhoneResponse>& responses) {
        if (!responses.empty()) {
            m_handlers.registration(responses.front().text);
        }
    });
    m_timer.expires_after(kCheckInterval);
    m_timer.async_wait([this, attempt = m_attempt](std::error_code cancelled) {
        if (!cancelled && attempt == m_attempt) {
            check();
        }
    });
}

}  // namespace host
