#pragma once

#include <functional>
#include <memory>

#include "host/framework/HostFrameworkContext.h"
#include "platform/framework/Executable.h"
#include "platform/framework/Invoker.h"
#include "platform/framework/Proxy.h"

namespace host {

/// What a remote server serves. Everything is borrowed, and outlives the server.
struct RemoteBackend {
    /// The service that requests are for. A client subscribes with it as `JournalServiceObserverSubscriptionIfc`.
    Executable& target;
    /// Handles requests; initialised with `framework`.
    Invoker& invoker;
    /// Handles methods in the text protocol; initialised with `framework`.
    Invoker& methodInvoker;
    /// Where the invokers find the clients' proxies and the protocol.
    HostFrameworkContext& framework;
    /// Makes one client's observer proxy; may throw. Called on threads of the server's own.
    std::function<std::unique_ptr<Proxy>()> makeObserverProxy;
};

}  // namespace host
