#pragma once

#include <string>
#include <string_view>

#include "platform/framework/Invoker.h"

namespace host {

/// An invoker whose answer is made of the message's text and the target alone.
///
/// Every message is answered exactly once, and nothing is thrown: when making the answer fails it is "failure", and a line in
/// the log says why.
///
/// Threads: any number at a time; it has no state of its own.
class TextInvoker : public Invoker {
public:
    void handleMessage(Executable* target, const char* message, int length, InvokerResponse* response) final;
    /// Needs nothing of the framework.
    void initInvoker(FrameworkContext* /*context*/) override {}

protected:
    /// `component` names the invoker in the log: a literal, kept as it is.
    explicit TextInvoker(const char* component) : m_component(component) {}

private:
    /// May throw. `target` may be null or another kind of service than is meant.
    [[nodiscard]] virtual std::string responseTo(std::string_view message, Executable* target) const = 0;

    template <typename Step>
    void survives(const char* what, Step step) const noexcept;

    const char* const m_component;
};

}  // namespace host
