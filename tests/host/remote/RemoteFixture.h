#pragma once

#include <sys/socket.h>
#include <sys/time.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <latch>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "host/framework/FileDescriptor.h"
#include "host/framework/HostFrameworkContext.h"
#include "host/remote/RemoteFrame.h"
#include "host/remote/RemoteServer.h"
#include "host/remote/ServerSocket.h"
#include "host/remote/SocketAddress.h"
#include "journalservice/JournalServiceObserverIfc.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/framework/ProxyRequest.h"
#include "tests/support/TemporaryDirectory.h"

namespace remotetest {

/// A client that writes any bytes and reads frames. A wait of 30 s throws.
class RawClient {
public:
    explicit RawClient(const std::filesystem::path& dataDirectory)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const timeval limit{30, 0};
        ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        const sockaddr_un address = host::socketAddressIn(dataDirectory);
        if (::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            throw std::runtime_error("cannot connect");
        }
    }

    /// Ignores errors: a closed connection shows in `read`.
    void write(std::string_view bytes) const {
        static_cast<void>(::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
    }
    void request(std::uint32_t id, std::string_view text) const {
        write(host::RemoteFrame::encode(host::RemoteFrame::Kind::eRequest, id, text));
    }

    /// Returns the next frame, its kind, id and text: "A7 text". Empty if the server has closed the
    /// connection.
    [[nodiscard]] std::string read() const {
        const std::string head = receive(4);
        if (head.size() < 4) {
            return {};
        }
        const auto length = host::RemoteFrame::readLength({head[0], head[1], head[2], head[3]});
        const auto frame = host::RemoteFrame::readBody(receive(length.value()));
        return frame ? static_cast<char>(frame->kind) + std::to_string(frame->id) + ' ' + frame->text : "";
    }
    /// Returns the next frame that begins with that, or an empty text.
    [[nodiscard]] std::string readUntil(char kind) const {
        std::string frame;
        do {
            frame = read();
        } while (!frame.empty() && frame.front() != kind);
        return frame;
    }
    /// Reads until the server closes the connection.
    void awaitClosed() const { static_cast<void>(readUntil('-')); }

private:
    [[nodiscard]] std::string receive(std::size_t count) const {
        std::string bytes(count, '\0');
        const ssize_t got = ::recv(m_socket.get(), bytes.data(), count, MSG_WAITALL);
        if (got < 0 && errno != ECONNRESET) {
            throw std::runtime_error("no data from the server");
        }
        bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
        return bytes;
    }

    host::FileDescriptor m_socket;
};

/// A service that has only subscribers.
class SubscriptionService final : public Executable, public JournalServiceObserverSubscriptionIfc {
public:
    bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        const std::lock_guard lock(m_mutex);
        return observer != nullptr && *m_observers.insert(observer) == observer;
    }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        const std::lock_guard lock(m_mutex);
        return !m_observers.extract(observer).empty();
    }
    /// Notifies every subscriber, once per subscription, under the lock, as the journal does.
    void notifyAll(int count) {
        const std::lock_guard lock(m_mutex);
        for (JournalServiceObserverIfc* observer : m_observers) {
            observer->missedCallsCountUpdate(count);
        }
    }
    [[nodiscard]] std::size_t subscriptions() const {
        const std::lock_guard lock(m_mutex);
        return m_observers.size();
    }

private:
    mutable std::mutex m_mutex;
    std::multiset<JournalServiceObserverIfc*> m_observers;
};

/// Sends "count N" for a count callback. `alive` counts the proxies.
class CountProxy final : public Proxy, public JournalServiceObserverIfc {
public:
    explicit CountProxy(std::atomic<int>& alive) : m_alive(alive) { ++m_alive; }
    ~CountProxy() override { --m_alive; }

    void initProxy(ProxyRequest& request) override {
        m_request = &request;
        request.selectProtocol("opera_text");
    }
    void missedCallsCountUpdate(int count) override { m_request->send("count " + std::to_string(count)); }
    void missedCallsUpdate(MissedCallItem, std::string, ActionType) override {}
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override {}
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override {}
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override {}
    void callBacksUpdate(CallBackItem, std::string, ActionType) override {}
    void callBacksCountUpdate(int) override {}

private:
    std::atomic<int>& m_alive;
    ProxyRequest* m_request = nullptr;
};

/// Handles four requests: "subscribe", "who" (name and protocol), "big N" (a response of N bytes) and
/// "silent" (no response). Echoes any other request.
class SmallInvoker final : public Invoker {
public:
    void initInvoker(FrameworkContext* context) override { m_context = context; }
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override {
        const std::string request(message, static_cast<std::size_t>(length));
        m_meanwhile(request);
        std::string text = request;
        if (request == "subscribe") {
            std::string name = "JournalServiceObserverIfc";
            std::string client = response->getRequester();
            auto* observer = dynamic_cast<CountProxy*>(m_context->findProxy(name, client));
            auto& service = dynamic_cast<SubscriptionService&>(*target);
            text = service.subscribeForJournalEvents(observer) ? "yes" : "failure";
        } else if (request == "who") {
            text = response->getRequester() + " " + response->getRequestedProtocol();
        } else if (request.rfind("big ", 0) == 0) {
            text = std::string(std::stoul(request.substr(4)), 'x');
        } else if (request == "silent") {
            return;
        }
        response->setPayload(text.data(), static_cast<int>(text.size()));
        response->complete();
    }

    /// Runs inside each request. Set it before the first request.
    std::function<void(const std::string&)> m_meanwhile = [](const std::string&) {};

private:
    FrameworkContext* m_context = nullptr;
};

/// A server of the classes above, in a temporary directory.
class RemoteFixture : public ::testing::Test {
protected:
    void serve(host::RemoteLimits limits = {}) {
        m_invoker.initInvoker(&m_framework);
        m_socket = std::make_unique<host::ServerSocket>(m_directory.path());
        host::RemoteBackend backend{[this](const std::string& device) { return lineOf(device); }, m_invoker,
                                    m_invoker, m_framework, m_makeProxy};
        m_server = std::make_unique<host::RemoteServer>(*m_socket, backend, limits);
        m_server->start();
    }
    /// Any line but "none" is the one there is.
    [[nodiscard]] std::shared_ptr<host::RemoteLine> lineOf(const std::string& device) {
        return device == "none" ? nullptr : m_line;
    }
    /// Blocks every request `held` until `m_released`, and counts `begun` down when it starts.
    void block(const std::string& held, std::latch& begun) {
        m_invoker.m_meanwhile = [this, held, &begun](const std::string& request) {
            if (request == held) {
                begun.count_down();
                m_released.wait();
            }
        };
    }

    [[nodiscard]] RawClient connect() const { return RawClient(m_directory.path()); }
    /// Returns a client that has subscribed `times` times.
    [[nodiscard]] RawClient subscribed(int times = 1) const {
        RawClient client = connect();
        for (int turn = 0; turn < times; ++turn) {
            client.request(1, "subscribe");
            EXPECT_EQ(client.readUntil('A'), "A1 yes");
        }
        return client;
    }
    /// True if the server still responds.
    [[nodiscard]] static bool responds(const RawClient& client) {
        client.request(99, "are you there");
        return client.readUntil('A') == "A99 are you there";
    }
    /// Stops the server. No client may remain.
    void expectNoClientLeftAtStop() {
        m_server->stop();
        EXPECT_EQ(m_service.subscriptions(), 0U);
        EXPECT_EQ(m_proxies, 0);
    }

    TemporaryDirectory m_directory;
    std::latch m_released{1};
    std::atomic<int> m_proxies{0};
    SubscriptionService m_service;
    std::shared_ptr<host::RemoteLine> m_line = std::make_shared<host::RemoteLine>(m_service, nullptr);
    SmallInvoker m_invoker;
    host::HostFrameworkContext m_framework;
    std::function<std::unique_ptr<Proxy>()> m_makeProxy = [this] {
        return std::make_unique<CountProxy>(m_proxies);
    };
    std::unique_ptr<host::ServerSocket> m_socket;
    std::unique_ptr<host::RemoteServer> m_server;
};

}  // namespace remotetest
