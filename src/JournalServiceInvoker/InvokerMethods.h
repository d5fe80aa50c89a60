#pragma once

#include <optional>
#include <string>

class FrameworkContext;
class InvokerResponse;
class JournalServiceIfc;

namespace journal {

/// One message for a journal. Everything is borrowed for the call of one method.
struct InvokerRequest {
    JournalServiceIfc& service;
    const std::string& message;
    /// Finds the observer proxy of a client; may be null.
    FrameworkContext* context = nullptr;
    /// Names the client that sent the message.
    const InvokerResponse& response;
};

/// The text for the client; std::nullopt for a method that sends none.
using InvokerResponseText = std::optional<std::string>;

/// Runs one method of the remote interface. May throw what the journal or the framework throws.
using InvokerMethod = InvokerResponseText (*)(const InvokerRequest& request);

/// Returns the method with that number, or null. Thread-safe.
[[nodiscard]] InvokerMethod invokerMethodOf(int id) noexcept;

/// Returns the failure text: the response to a method that did not run or did not succeed.
[[nodiscard]] InvokerResponseText invokerFailure();

}  // namespace journal
