#pragma once

#include <string>

/// The response to one message of an `Invoker`. Borrowed for one `handleMessage` call; that thread only.
class InvokerResponse {
public:
    InvokerResponse() = default;
    InvokerResponse(const InvokerResponse&) = delete;
    InvokerResponse& operator=(const InvokerResponse&) = delete;
    virtual ~InvokerResponse() = default;

    /// Sets the response text; copied. Without a call the response has no payload.
    virtual void setPayload(const char* text, int length) = 0;
    /// Ends the request. No operation may be called afterwards.
    virtual void complete() = 0;
    /// The name of the client that sent the message, unique among the connected clients.
    [[nodiscard]] virtual std::string getRequester() const = 0;
    /// The protocol of the message, a name for `FrameworkContext::findProtocolAdapter`.
    [[nodiscard]] virtual std::string getRequestedProtocol() const = 0;
};
