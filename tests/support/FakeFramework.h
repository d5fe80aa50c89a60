#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/framework/FrameworkContext.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/framework/ProxyRequest.h"

namespace journaltest {

/// The framework's side of remote requests: proxies and protocol adapters that a test registers. All are borrowed.
/// Set up before calls may come; then any thread may ask.
class FakeFrameworkContext final : public FrameworkContext {
public:
    void addProxy(const std::string& interfaceName, const std::string& clientName, Proxy* proxy) {
        m_proxies[{interfaceName, clientName}] = proxy;
    }
    void addProtocolAdapter(const std::string& protocolName, ProtocolAdapter* adapter) {
        m_adapters[protocolName] = adapter;
    }

    [[nodiscard]] Proxy* findProxy(std::string& interfaceName, std::string& clientName) override {
        const auto found = m_proxies.find({interfaceName, clientName});
        return found == m_proxies.end() ? nullptr : found->second;
    }
    [[nodiscard]] ProtocolAdapter* findProtocolAdapter(std::string& protocolName) override {
        const auto found = m_adapters.find(protocolName);
        return found == m_adapters.end() ? nullptr : found->second;
    }

private:
    std::map<std::pair<std::string, std::string>, Proxy*> m_proxies;
    std::map<std::string, ProtocolAdapter*> m_adapters;
};

/// The answer to one message, as the framework would send it. One thread.
class RecordingResponse final : public InvokerResponse {
public:
    explicit RecordingResponse(std::string requester = "client", std::string protocol = "opera_text")
        : m_requester(std::move(requester)), m_protocol(std::move(protocol)) {}

    [[nodiscard]] bool hasPayload() const noexcept { return !m_payloads.empty(); }
    /// The payload that counts, the one that was set last; empty without one.
    [[nodiscard]] std::string payload() const {
        return m_payloads.empty() ? std::string() : m_payloads.back();
    }
    [[nodiscard]] int completions() const noexcept { return m_completions; }
    /// Whether anything was called after the completion, which ends the response's life.
    [[nodiscard]] bool usedAfterCompletion() const noexcept { return m_usedAfterCompletion; }

    void setPayload(const char* text, int length) override {
        touch();
        m_payloads.emplace_back(text, static_cast<std::size_t>(length));
    }
    void complete() override {
        touch();
        ++m_completions;
    }
    [[nodiscard]] std::string getRequester() const override {
        touch();
        return m_requester;
    }
    [[nodiscard]] std::string getRequestedProtocol() const override {
        touch();
        return m_protocol;
    }

private:
    void touch() const noexcept { m_usedAfterCompletion = m_usedAfterCompletion || m_completions > 0; }

    const std::string m_requester;
    const std::string m_protocol;
    std::vector<std::string> m_payloads;
    int m_completions = 0;
    mutable bool m_usedAfterCompletion = false;
};

/// A way to a remote client that keeps what is sent. Any thread may send.
class RecordingProxyRequest final : public ProxyRequest {
public:
    [[nodiscard]] std::vector<std::string> protocols() const {
        const std::lock_guard lock(m_mutex);
        return m_protocols;
    }
    [[nodiscard]] std::vector<std::string> sent() const {
        const std::lock_guard lock(m_mutex);
        return m_sent;
    }

    void selectProtocol(const std::string& protocolName) override {
        const std::lock_guard lock(m_mutex);
        m_protocols.push_back(protocolName);
    }
    void send(const std::string& request) override {
        const std::lock_guard lock(m_mutex);
        m_sent.push_back(request);
    }

private:
    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::vector<std::string> m_protocols;
    std::vector<std::string> m_sent;
};

}  // namespace journaltest
