#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "host/framework/HostFrameworkContext.h"
#include "host/remote/NotificationFrames.h"
#include "platform/framework/Executable.h"
#include "platform/framework/Invoker.h"
#include "platform/framework/Proxy.h"

namespace host {

/// A line as its remote clients use it.
struct RemoteLine {
    RemoteLine(Executable& journal, NotificationFrames::Unviewed unviewed)
        : target(journal), frames(std::move(unviewed)) {}

    /// The target of requests. Clients subscribe to it through `JournalServiceObserverSubscriptionIfc`.
    Executable& target;
    /// The frames that its clients share.
    NotificationFrames frames;
};

/// The lines, the invokers and the context that a remote server uses. Requires: all outlive the server.
struct RemoteBackend {
    /// A line by its device, the first one for an empty text; nullptr if there is none. It is not stopped
    /// while the result lives. The server calls it on threads of its own.
    std::function<std::shared_ptr<RemoteLine>(const std::string&)> line;
    /// Handles requests. Requires: initialised with `framework`.
    Invoker& invoker;
    /// Handles methods in the text protocol. Requires: initialised with `framework`.
    Invoker& methodInvoker;
    /// Provides the client proxies and the text protocol to the invokers.
    HostFrameworkContext& framework;
    /// Creates the observer proxy of one client. May throw. The server calls it on threads of its own.
    std::function<std::unique_ptr<Proxy>()> makeObserverProxy;
};

}  // namespace host
