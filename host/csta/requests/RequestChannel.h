#pragma once

#include <functional>
#include <string>

#include "host/csta/requests/PendingRequests.h"

namespace host {

/// Sends requests to the switch and delivers their responses, for the components of the link. Reader thread
/// only.
class RequestChannel {
public:
    RequestChannel() = default;
    RequestChannel(const RequestChannel&) = delete;
    RequestChannel& operator=(const RequestChannel&) = delete;
    virtual ~RequestChannel() = default;

    /// True if the association is open and monitors can be started.
    [[nodiscard]] virtual bool isReady() const = 0;
    /// Sends the message. `handler` is called exactly once; at once with `eLost` if the message cannot be
    /// sent.
    virtual void send(const std::string& xml, PendingRequests::Handler handler) = 0;
};

}  // namespace host
