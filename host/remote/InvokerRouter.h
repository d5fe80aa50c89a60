#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "platform/framework/Invoker.h"

namespace host {

/// Routes each message of a remote client to the invoker that is registered for its root element, with that
/// invoker's own target. All other messages go to the fallback invoker, with the target of the server.
///
/// Thread-safe after set-up: call `add` and `setChangeListener` before the first message.
/// Lifetime: the invokers and targets outlive the router. Their owner initialises the invokers.
class InvokerRouter final : public Invoker {
public:
    explicit InvokerRouter(Invoker& fallback) : m_fallback(fallback) {}

    void add(const std::string& rootName, Invoker& invoker, Executable& target);

    /// The router calls `listener` after every request that may have changed the journal's lists without
    /// notifying its observers: a request to the journal that does not only read, a deletion, or one that
    /// changes a setting. It calls on the thread that handles the request.
    void setChangeListener(std::function<void()> listener) { m_changeListener = std::move(listener); }

    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;
    void initInvoker(FrameworkContext* /*context*/) override {}

private:
    struct Destination {
        Invoker& invoker;
        Executable& target;
    };

    // Constant after set-up.
    Invoker& m_fallback;
    std::map<std::string, Destination, std::less<>> m_destinations;
    std::function<void()> m_changeListener;
};

}  // namespace host
