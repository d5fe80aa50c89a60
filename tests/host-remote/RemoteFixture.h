#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/framework/HostFrameworkContext.h"
#include "host/remote/RemoteServer.h"
#include "host/remote/ServerSocket.h"
#include "include/JournalServiceObserverIfc.h"
#include "include/JournalServiceObserverSubscriptionIfc.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/framework/ProxyRequest.h"
#include "tests/host-remote/RawClient.h"
#include "tests/support/TemporaryDirectory.h"

namespace remotetest {

/// A service that knows its subscribers and nothing else.
class SubscriptionService final : public Executable, public JournalServiceObserverSubscriptionIfc {
public:
    bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        const std::lock_guard lock(m_mutex);
        m_observers.push_back(observer);
        return observer != nullptr;
    }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find(m_observers.begin(), m_observers.end(), observer);
        const bool known = found != m_observers.end();
        if (known) {
            m_observers.erase(found);
        }
        return known;
    }
    /// Tells every subscriber, once for each of its subscriptions, as the journal does: under its lock.
    void tellAll(int count) {
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
    std::vector<JournalServiceObserverIfc*> m_observers;
};

/// Sends "count N" for a count callback. Counts how many live.
class CountProxy final : public Proxy, public JournalServiceObserverIfc {
public:
    explicit CountProxy(std::atomic<int>& alive, std::size_t padding) : m_alive(alive), m_padding(padding) {
        ++m_alive;
    }
    ~CountProxy() override { --m_alive; }

    void initProxy(ProxyRequest& request) override {
        m_request = &request;
        request.selectProtocol("opera_text");
    }
    void missedCallsCountUpdate(int count) override {
        m_request->send("count " + std::to_string(count) + std::string(m_padding, ' '));
    }
    void missedCallsUpdate(MissedCallItem, std::string, ActionType) override {}
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override {}
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override {}
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override {}
    void callBacksUpdate(CallBackItem, std::string, ActionType) override {}
    void callBacksCountUpdate(int) override {}

private:
    std::atomic<int>& m_alive;
    const std::size_t m_padding;
    ProxyRequest* m_request = nullptr;
};

/// Knows four requests: "subscribe", "who", "big N" (an answer of N bytes) and "silent" (no answer); anything else is
/// echoed, after what the test wants done meanwhile.
class SmallInvoker final : public Invoker {
public:
    void initInvoker(FrameworkContext* context) override { m_context = context; }
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;

    /// Set before requests come.
    std::function<void(const std::string&)> m_meanwhile = [](const std::string&) {};

private:
    std::string subscribe(Executable* target, const std::string& requester);

    FrameworkContext* m_context = nullptr;
};

/// Answers a method with what it was, and in which protocol it came.
class MethodInvoker final : public Invoker {
public:
    void initInvoker(FrameworkContext* /*context*/) override {}
    void handleMessage(Executable* /*target*/, const char* message, int length,
                       InvokerResponse* response) override {
        const std::string answer =
            response->getRequestedProtocol() + ": " + std::string(message, static_cast<std::size_t>(length));
        response->setPayload(answer.data(), static_cast<int>(answer.size()));
        response->complete();
    }
};

/// A server in front of these, in a directory of its own.
class RemoteFixture : public ::testing::Test {
protected:
    void serve(host::RemoteLimits limits = {});

    [[nodiscard]] RawClient connect() const { return RawClient(m_directory.path()); }
    /// A client that has subscribed `times` times.
    [[nodiscard]] RawClient subscribed(int times = 1) const;
    /// Whether the server still answers.
    [[nodiscard]] static bool answers(RawClient& client);

    TemporaryDirectory m_directory;
    std::atomic<int> m_proxies{0};
    std::size_t m_padding = 0;
    SubscriptionService m_service;
    SmallInvoker m_invoker;
    MethodInvoker m_methodInvoker;
    host::HostFrameworkContext m_framework;
    std::function<std::unique_ptr<Proxy>()> m_makeProxy = [this] {
        return std::make_unique<CountProxy>(m_proxies, m_padding);
    };
    std::unique_ptr<host::ServerSocket> m_socket;
    std::unique_ptr<host::RemoteServer> m_server;
};

inline void SmallInvoker::handleMessage(Executable* target, const char* message, int length,
                                        InvokerResponse* response) {
    const std::string request(message, static_cast<std::size_t>(length));
    m_meanwhile(request);
    std::string answer = request;
    if (request == "subscribe") {
        answer = subscribe(target, response->getRequester());
    } else if (request == "who") {
        answer = response->getRequester();
    } else if (request.rfind("big ", 0) == 0) {
        answer = std::string(std::stoul(request.substr(4)), 'x');
    } else if (request == "silent") {
        return;
    }
    if (!answer.empty()) {
        response->setPayload(answer.data(), static_cast<int>(answer.size()));
    }
    response->complete();
}

inline std::string SmallInvoker::subscribe(Executable* target, const std::string& requester) {
    std::string interfaceName = "JournalServiceObserverIfc";
    std::string clientName = requester;
    auto* observer =
        dynamic_cast<JournalServiceObserverIfc*>(m_context->findProxy(interfaceName, clientName));
    auto* service = dynamic_cast<JournalServiceObserverSubscriptionIfc*>(target);
    return observer != nullptr && service->subscribeForJournalEvents(observer) ? "yes" : "failure";
}

inline void RemoteFixture::serve(host::RemoteLimits limits) {
    m_invoker.initInvoker(&m_framework);
    m_socket = std::make_unique<host::ServerSocket>(m_directory.path());
    m_server = std::make_unique<host::RemoteServer>(
        *m_socket, host::RemoteBackend{m_service, m_invoker, m_methodInvoker, m_framework, m_makeProxy},
        limits);
    m_server->start();
}

inline RawClient RemoteFixture::subscribed(int times) const {
    RawClient client = connect();
    for (int turn = 0; turn < times; ++turn) {
        client.request(1, "subscribe");
        EXPECT_EQ(client.readAnswer().value().text, "yes");
    }
    return client;
}

inline bool RemoteFixture::answers(RawClient& client) {
    client.request(99, "are you there");
    const auto answer = client.readAnswer();
    return answer && answer->id == 99 && answer->text == "are you there";
}

}  // namespace remotetest
