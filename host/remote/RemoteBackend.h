#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "host/framework/HostFrameworkContext.h"
#include "platform/framework/Executable.h"
#include "platform/framework/Invoker.h"
#include "platform/framework/Proxy.h"

namespace host {

/// The service, the invokers and the context that a remote server uses. Requires: all outlive the server.
struct RemoteBackend {
    /// The target of requests. Clients subscribe to it through `JournalServiceObserverSubscriptionIfc`.
    Executable& target;
    /// Handles requests. Requires: initialised with `framework`.
    Invoker& invoker;
    /// Handles methods in the text protocol. Requires: initialised with `framework`.
    Invoker& methodInvoker;
    /// Provides the client proxies and the text protocol to the invokers.
    HostFrameworkContext& framework;
    /// Creates the observer proxy of one client. May throw. The server calls it on threads of its own.
    std::function<std::unique_ptr<Proxy>()> makeObserverProxy;
    /// The number of all stored unviewed missed entries, which clients get in place of that of the loaded
    /// ones. May be empty; std::nullopt if the database fails. Any thread calls it.
    std::function<std::optional<std::size_t>()> unviewed{};
};

}  // namespace host
