#pragma once

#include <string>

/// The connection of a proxy to its remote client. Any thread may call; an implementation never blocks the
/// caller on a slow client.
class ProxyRequest {
public:
    ProxyRequest() = default;
    ProxyRequest(const ProxyRequest&) = delete;
    ProxyRequest& operator=(const ProxyRequest&) = delete;
    virtual ~ProxyRequest() = default;

    /// Selects the protocol of the requests by name ("opera_text"). An unknown name is ignored.
    virtual void selectProtocol(const std::string& protocolName) = 0;
    /// Sends one request text to the client and waits for no response. A request to a disconnected client is
    /// dropped.
    virtual void send(const std::string& request) = 0;
};
