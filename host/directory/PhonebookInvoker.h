#pragma once

#include "platform/framework/Invoker.h"

namespace host {

/// Carries out the requests of remote clients for the phonebook (docs/messages.md, "Phonebook"). The target of its messages
/// is the line's `Phonebook`.
///
/// Whatever cannot be read, or fails, is answered "failure". Every message is answered exactly once, and nothing is thrown.
///
/// Threads: any number at a time; it has no state.
class PhonebookInvoker final : public Invoker {
public:
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;
    /// Needs nothing of the framework.
    void initInvoker(FrameworkContext* /*context*/) override {}
};

}  // namespace host
