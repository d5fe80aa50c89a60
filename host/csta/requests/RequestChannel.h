#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/PendingRequests.h"

namespace host {

/// The two kinds of cross references by which the switch names what a message belongs to.
enum class ReferenceKind {
    eMonitor,  ///< monitorCrossRefID, of events
    eService,  ///< serviceCrossRefID, of the segments of a long response
};

/// Sends the requests of one line to the switch and delivers their responses, and the messages that belong to
/// them. Reader thread only.
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

    /// From now on the line receives the messages with this cross reference, until `drop` or the end of the
    /// connection. Returns those that came before, oldest first. Ignores a claim that is repeated.
    [[nodiscard]] virtual std::vector<WireDocument> claim(ReferenceKind kind, const std::string& id) = 0;
    virtual void drop(ReferenceKind kind, const std::string& id) = 0;
};

}  // namespace host
