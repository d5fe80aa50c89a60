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
#include "platform/logging/Logging.h"

namespace host {

namespace {

constexpr const char* kComponent = "SIP Gateway";
/// The time that the first client waits for the telephone, and a call for a telephone that was lost.
constexpr std::chrono::seconds kPhonePatience{3};
/// The time to send the last events.
constexpr std::chrono::milliseconds kLinger{100};

}  // namespace

class SipGateway::Impl {
public:
    explicit Impl(SipGatewayOptions options)
        : m_options(std::move(options)),
          m_timer(m_io),
          m_calls({.number = m_options.account.device(), .name = m_options.account.name}),
          m_phone(m_io, m_options.account, m_options.directory,
                  {.connected = [this] { readCalls(); },
                   .event = [this](const SipPhoneEvent& event) { process(event); },
                   .registration =
                       [this](const std::string& text) {
                           if (const auto state = readRegistration(text, m_options.account.address.user)) {
                               report(*state, {});
                           }
                       },
                   .lost = [this](bool ended) { lost(ended); }}),
          m_commands(m_phone, m_calls, [this](const SwitchEvents& events) { publish(events); }) {}

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

    void stop() {
        if (!m_thread.joinable()) {
            return;
        }
        asio::post(m_io, [this] { beginStop(); });
        m_thread.join();
    }

    [[nodiscard]] Endpoint endpoint() const { return {m_options.listen.host, m_port}; }
    [[nodiscard]] std::string device() const { return m_calls.own().number; }

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
                                  .edition = m_options.edition},
                m_callLogs,
                CstaServer::Handlers{
                    .liveCalls = [this] { return m_calls.live(); },
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
            report(event.type == "REGISTER_OK", event.param);
        }
        publish(m_calls.process(event));
    }

    /// The first result may precede the connection to the telephone, so it is asked for, too.
    void report(bool registered, const std::string& reason) {
        if (m_registered == registered) {
            return;
        }
        m_registered = registered;
        const std::string& account = m_options.account.uri;
        if (registered) {
            logAppUni(kComponent, __FILE_NAME__, 5, __LINE__, "%s is registered", account.c_str());
        } else {
            logAppUni(kComponent, __FILE_NAME__, 3, __LINE__,
                      "%s is not registered: %s; check the account and its password", account.c_str(),
                      reason.empty() ? "the registrar refuses or does not respond" : reason.c_str());
        }
    }

    void publish(const SwitchEvents& events) {
        for (const SwitchEvent& event : events) {
            if (m_server) {
                m_server->publish(event);
            }
        }
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

    void lost(bool ended) {
        m_registered.reset();
        if (ended) {
            publish(m_calls.endAll());
            return;
        }
        m_calls.doubtAll();
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

    void beginStop() {
        m_phone.stop();
        publish(m_calls.endAll());
        m_timer.expires_after(kLinger);
        m_timer.async_wait([this](std::error_code) {
            if (m_server) {
                m_server->close();
            }
            m_work.reset();
            m_io.stop();
        });
    }

    const SipGatewayOptions m_options;
    std::promise<void> m_listening;
    std::uint16_t m_port = 0;

    // The gateway's thread only, while it runs.
    bool m_listenAttempted = false;
    std::optional<bool> m_registered;
    asio::io_context m_io;
    std::optional<asio::executor_work_guard<asio::io_context::executor_type>> m_work;
    asio::steady_timer m_timer;
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

void SipGateway::stop() {
    m_impl->stop();
}

Endpoint SipGateway::endpoint() const {
    return m_impl->endpoint();
}

std::string SipGateway::device() const {
    return m_impl->device();
}

}  // namespace host
