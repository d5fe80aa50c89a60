#pragma once

#include <string>

/// The way from a proxy to its remote client. Any thread may call; an implementation never blocks the caller on
/// a slow client.
class ProxyRequest {
public:
    ProxyRequest() = default;
    ProxyRequest(const ProxyRequest&) = delete;
    ProxyRequest& operator=(const ProxyRequest&) = delete;
    virtual ~ProxyRequest() = default;

    /// Selects how requests are written, by protocol name ("opera_text"). An unknown name is ignored.
    virtual void selectProtocol(const std::string& protocolName) = 0;
    /// Sends one request text to the client; no answer is awaited. A client that is gone loses it silently.
    virtual void send(const std::string& request) = 0;
};
