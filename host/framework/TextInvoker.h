#pragma once

#include <string>
#include <string_view>

#include "platform/framework/Invoker.h"

namespace host {

/// An invoker whose response depends only on the text of the message and on the target.
///
/// Completes the response of every message exactly once and never throws. If the response cannot be built, it
/// is "failure" and the log has the reason.
///
/// Thread-safe; stateless.
class TextInvoker : public Invoker {
public:
    void handleMessage(Executable* target, const char* message, int length, InvokerResponse* response) final;
    /// Has no effect: the invoker does not use the framework.
    void initInvoker(FrameworkContext* /*context*/) override {}

protected:
    /// `component` is the invoker's name in the log. Requires: it is a string literal.
    explicit TextInvoker(const char* component) : m_component(component) {}

private:
    /// Returns the response. May throw. `target` may be null or a service of another kind.
    [[nodiscard]] virtual std::string responseTo(std::string_view message, Executable* target) const = 0;

    const char* const m_component;
};

}  // namespace host
