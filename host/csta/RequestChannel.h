#pragma once

#include <functional>
#include <string>

#include "host/csta/PendingRequests.h"

namespace host {

/// The way of a request to the switch and of its answer back, as the parts of the link use it. Reader thread only.
class RequestChannel {
public:
    RequestChannel() = default;
    RequestChannel(const RequestChannel&) = delete;
    RequestChannel& operator=(const RequestChannel&) = delete;
    virtual ~RequestChannel() = default;

    /// True when the association with the switch stands and monitors may be started.
    [[nodiscard]] virtual bool isReady() const = 0;
    /// Sends the message; `handler` is called exactly once, at once with `eLost` when it cannot be sent.
    virtual void send(const std::string& xml, PendingRequests::Handler handler) = 0;
};

}  // namespace host
