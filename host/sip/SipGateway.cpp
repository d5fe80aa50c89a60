#include "host/sip/SipGateway.h"

#include <chrono>
#include <exception>
#include <future>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-server/CstaServer.h"
#include "host/sip/CallCommands.h"
#include "host/sip/PhoneSupervisor.h"
#include "host/sip/SipCalls.h"

namespace host {

namespace {

/// The time that the first client waits for the telephone, and a call for a telephone that was lost.
constexpr std::chrono::seconds kPhonePatience{3};
/// The time after which a registrar that has not responded is reported.
constexpr std::chrono::seconds kRegistrarPatience{3};
/// The time to send the last events.
constexpr std::chrono::milliseconds kLinger{100};

}  // namespace

class SipGateway::Impl {
public:
    explicit Impl(SipGatewayOptions options)
        : m_options(std::move(options)),
          m_timer(m_io),
          m_registrarTimer(m_io),
          m_status(m_options.account.uri, m_options.account.registers && !m_options.account.baresip),
          m_calls({.number = m_options.account.device(), .name = m_options.account.name}),
          m_phone(m_io, m_options.account, m_options.directory,
                  {.connected = [this] { connected(); },
                   .event = [this](const SipPhoneEvent& event) { process(event); },
                   .printed =
                       [this](const std::string& line) {
                           if (const auto fault = readRegistrationFault(line, m_options.account.uri)) {
                               m_status.registered(false, *fault);
                           }
                       },
                   .registration =
                       [this](const std::string& text) {
                           if (const auto state = readRegistration(text, m_options.account.uri)) {
                               m_status.registered(*state, {});
                           }
                       },
                   .failed = [this](const std::string& reason) { m_status.failed(reason); },
                   .lost = [this](PhoneSupervisor::Loss loss) { lost(loss); }}),
          m_commands(m_phone, m_status, m_calls, [this](const SwitchEvents& events) { publish(events); }) {}

    ~Impl() { stop(); }

    void start() {
        std::future<void> listening = m_listening.get_future();
        m_work.emplace(m_io.get_executor());
        m_timer.expires_after(kPhonePatience);
        m_timer.async_wait([this](std::error_code cancelled) {
            if (!cancelled) {
                listen();
            }
        });
        asio::post(m_io, [this] { m_phone.start(); });
        m_thread = std::thread([this] { m_io.run(); });
        try {
            listening.get();
        } catch (...) {
            stop();
            throw;
        }
    }

    void endCalls() {
        if (!m_thread.joinable() || std::exchange(m_callsEnded, true)) {
            return;
        }
        std::promise<void> sent;
        asio::post(m_io, [this, &sent] {
            endPhone();
            m_timer.expires_after(kLinger);
            m_timer.async_wait([&sent](std::error_code) { sent.set_value(); });
        });
        sent.get_future().wait();
    }

    void stop() {
        if (!m_thread.joinable()) {
            return;
        }
        endCalls();
        asio::post(m_io, [this] {
            if (m_server) {
                m_server->close();
            }
            m_work.reset();
            m_io.stop();
        });
        m_thread.join();
    }

    [[nodiscard]] Endpoint endpoint() const { return {m_options.listen.host, m_port}; }
    [[nodiscard]] std::string device() const { return m_calls.own().number; }
    [[nodiscard]] PhoneState phoneState() const { return m_status.state(); }

private:
    /// The clients are let in once the calls of a running telephone are known: otherwise they would take them
    /// for ended.
    void listen() {
        if (std::exchange(m_listenAttempted, true)) {
            return;
        }
        try {
            m_server.emplace(
                m_io,
                CstaServerOptions{.address = m_options.listen.host,
                                  .port = m_options.listen.port,
                                  .device = m_calls.own().number,
                                  .edition = m_options.edition,
                                  .hasOnlyOwnDevice = true},
                m_callLogs,
                CstaServer::Handlers{
                    .liveCalls = [this](const std::string& /*device*/) { return m_calls.live(); },
                    .service = [this](const WireDocument& request,
                                      const CstaServer::Reply& reply) { return serve(request, reply); }});
            m_port = m_server->port();
            m_listening.set_value();
        } catch (...) {
            m_listening.set_exception(std::current_exception());
        }
    }

    bool serve(const WireDocument& request, const CstaServer::Reply& reply) {
        const std::optional<CallControlRequest> service = readCallControlRequest(request);
        if (service) {
            m_commands.perform(*service, m_server->nameSpace(), reply);
        }
        return service.has_value();
    }

    void process(const SipPhoneEvent& event) {
        // A running telephone may have other accounts.
        const std::optional<SipAddress> account = parseSipAddress(event.account);
        if (account && account->user != m_options.account.address.user) {
            return;
        }
        if (event.type == "REGISTER_OK" || event.type == "REGISTER_FAIL") {
            m_status.registered(event.type == "REGISTER_OK", event.param);
        }
        publish(m_calls.process(event));
    }

    void publish(const SwitchEvents& events) {
        for (const SwitchEvent& event : events) {
            if (m_server) {
                m_server->publish(event);
            }
        }
    }

    /// The result of the registration may precede the connection to the telephone, so it is asked for, too.
    void connected() {
        m_status.connected();
        m_registrarTimer.expires_after(kRegistrarPatience);
        m_registrarTimer.async_wait([this](std::error_code cancelled) {
            if (!cancelled) {
                m_status.overdue();
            }
        });
        readCalls();
    }

    void readCalls() {
        m_phone.send({{.name = "listcalls"}}, [this](const std::vector<PhoneResponse>& responses) {
            std::vector<PhoneControl::Command> commands;
            for (const int line :
                 readLineNumbers(responses.empty() ? std::string() : responses.front().text)) {
                commands.push_back({.name = "line", .parameters = std::to_string(line)});
                commands.push_back({.name = "callstat"});
            }
            if (responses.empty() || commands.empty()) {
                callsRead(responses);
            } else {
                m_phone.send(commands,
                             [this](const std::vector<PhoneResponse>& states) { callsRead(states); });
            }
        });
    }

    void callsRead(const std::vector<PhoneResponse>& states) {
        if (states.empty()) {
            return;
        }
        for (const PhoneResponse& state : states) {
            if (const std::optional<SipCallState> call = readCallState(state.text)) {
                publish(m_calls.introduce(*call));
            }
        }
        m_timer.cancel();
        dropDoubtful();
        listen();
    }

    void lost(PhoneSupervisor::Loss loss) {
        if (loss == PhoneSupervisor::Loss::eEnded) {
            publish(m_calls.endAll());
            return;
        }
        m_calls.doubtAll();
        if (loss == PhoneSupervisor::Loss::eKilled) {
            dropDoubtful();
            return;
        }
        m_timer.expires_after(kPhonePatience);
        m_timer.async_wait([this](std::error_code cancelled) {
            if (!cancelled) {
                dropDoubtful();
                listen();
            }
        });
    }

    /// It is not known when these calls have ended. The clients connect again, see that the calls are gone,
    /// and mark their ends as approximate.
    void dropDoubtful() {
        if (m_calls.dropDoubtful() && m_server) {
            m_server->dropClients();
        }
    }

    void endPhone() {
        m_phone.stop();
        m_registrarTimer.cancel();
        if (!m_options.account.baresip) {  // the calls of a telephone of another go on
            publish(m_calls.endAll());
        }
    }

    const SipGatewayOptions m_options;
    std::promise<void> m_listening;
    std::uint16_t m_port = 0;
    bool m_callsEnded = false;

    // The gateway's thread only, while it runs.
    bool m_listenAttempted = false;
    asio::io_context m_io;
    std::optional<asio::executor_work_guard<asio::io_context::executor_type>> m_work;
    asio::steady_timer m_timer;
    asio::steady_timer m_registrarTimer;
    PhoneStatus m_status;
    CallLogStore m_callLogs;
    SipCalls m_calls;
    PhoneSupervisor m_phone;
    CallCommands m_commands;
    std::optional<CstaServer> m_server;

    std::thread m_thread;
};

SipGateway::SipGateway(SipGatewayOptions options) : m_impl(std::make_unique<Impl>(std::move(options))) {}

SipGateway::~SipGateway() = default;

void SipGateway::start() {
    m_impl->start();
}

void SipGateway::endCalls() {
    m_impl->endCalls();
}

void SipGateway::stop() {
    m_impl->stop();
}

Endpoint SipGateway::endpoint() const {
    return m_impl->endpoint();
}

std::string SipGateway::device() const {
    return m_impl->device();
}

PhoneState SipGateway::phoneState() const {
    return m_impl->phoneState();
}

}  // namespace host
