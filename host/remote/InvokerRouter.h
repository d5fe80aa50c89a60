#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "platform/framework/Invoker.h"

namespace host {

/// Lets remote clients speak more than one vocabulary: a message goes to the invoker of its outermost element, with that
/// invoker's own target; every other message goes to the one for the fallback, with the target that the server named.
///
/// Everything is borrowed and outlives the router; the invokers are initialised by whoever made them.
///
/// Threads: `add` and `setChangeListener` before the first message; then any number at a time, as the invokers themselves.
class InvokerRouter final : public Invoker {
public:
    explicit InvokerRouter(Invoker& fallback) : m_fallback(fallback) {}

    void add(const std::string& rootName, Invoker& invoker, Executable& target);

    /// `listener` is called behind every request that may have changed the journal's lists without a word to its observers:
    /// all of the journal's own but those that read, and those that set a setting. On the thread that handles the request.
    void setChangeListener(std::function<void()> listener) { m_changeListener = std::move(listener); }

    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;
    void initInvoker(FrameworkContext* /*context*/) override {}

private:
    struct Destination {
        Invoker& invoker;
        Executable& target;
    };

    // Constant once messages come.
    Invoker& m_fallback;
    std::map<std::string, Destination, std::less<>> m_destinations;
    std::function<void()> m_changeListener;
};

}  // namespace host
