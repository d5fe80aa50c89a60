#pragma once

#include <functional>
#include <utility>

#include "platform/framework/Invoker.h"

namespace host {

/// Passes each message of a remote client to the journal's invoker, and reports those that may have changed
/// the lists without a notification of observers: requests that do not only read.
///
/// Thread-safe: constant after construction.
class ChangeReporter final : public Invoker {
public:
    /// `invoker` is borrowed and outlives this object; its owner initialises it. `listener` is called after
    /// such a request with its target, on the thread that handles it.
    ChangeReporter(Invoker& invoker, std::function<void(const Executable&)> listener)
        : m_invoker(invoker), m_listener(std::move(listener)) {}

    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;
    void initInvoker(FrameworkContext* /*context*/) override {}

private:
    Invoker& m_invoker;
    const std::function<void(const Executable&)> m_listener;
};

}  // namespace host
