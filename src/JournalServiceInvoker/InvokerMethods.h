#pragma once

#include <optional>
#include <string>

class FrameworkContext;
class InvokerResponse;
class JournalServiceIfc;

namespace journal {

/// One message that has found its journal. Everything is borrowed for the call of one method.
struct InvokerRequest {
    JournalServiceIfc& service;
    const std::string& message;
    /// Where a client's observer proxy is found; may be null.
    FrameworkContext* context = nullptr;
    /// Knows which client asks.
    const InvokerResponse& response;
};

/// What the client is told: a text, or nothing where a method has nothing to say.
using InvokerResponseText = std::optional<std::string>;

/// Carries out one method of the remote interface. May throw what the journal or the framework throws.
using InvokerMethod = InvokerResponseText (*)(const InvokerRequest& request);

/// The method with that number, or null when there is none. Any thread may call.
[[nodiscard]] InvokerMethod invokerMethodOf(int id) noexcept;

/// The answer to everything that did not run or did not succeed.
[[nodiscard]] InvokerResponseText invokerFailure();

}  // namespace journal
