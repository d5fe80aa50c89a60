#pragma once

#include "platform/framework/Invoker.h"

/// Turns the text messages of other processes into calls of the journal, and what the journal gives back into text
/// answers. `docs/messages.md` lists the methods by number, with their arguments and answers.
///
/// One message, step by step:
///  1. The target is looked at: it must be a `JournalServiceIfc`.
///  2. The method id is read from the message and looked up in the table of methods (`InvokerMethods.h`).
///  3. The method reads its arguments, calls one operation of the journal, and gives an answer: a text, or none.
///  4. The answer becomes the payload of the response, and the response is completed, exactly once.
///
/// A subscription names no observer: the observer is the proxy that the framework keeps for the client that asks,
/// under the interface name "JournalServiceObserverIfc".
///
/// Threads: `initInvoker` first; then any thread may call `handleMessage`, several at once: the invoker keeps
/// nothing between messages, and the journal synchronises itself.
///
/// Errors: whatever goes wrong, an unknown method and a throwing journal included, is answered with the failure
/// text. Nothing throws.
class JournalServiceInvoker final : public Invoker {
public:
    JournalServiceInvoker() = default;
    ~JournalServiceInvoker() override = default;

    /// `message` may hold any bytes, also none. A null response leaves only a log line: there is nobody to answer.
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;

    /// `context` is borrowed and outlives the invoker. Without one, nobody can subscribe.
    void initInvoker(FrameworkContext* context) override { m_context = context; }

private:
    // Written by initInvoker only, before any other thread may call.
    FrameworkContext* m_context = nullptr;
};
