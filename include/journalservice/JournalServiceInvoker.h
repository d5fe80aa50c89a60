#pragma once

#include "platform/framework/Invoker.h"

/// Dispatches the text messages of other processes to the operations of the journal, and returns the results
/// as texts. `docs/messages.md` lists the methods by number, with their arguments and responses.
///
/// One message is handled in these steps:
///  1. The target must be a `JournalServiceIfc`.
///  2. The method id is read from the message and looked up in the table of methods (`InvokerMethods.h`).
///  3. The method reads its arguments, calls one operation of the journal, and returns a text or none.
///  4. The text becomes the payload of the response, and the response is completed, exactly once.
///
/// A subscription names no observer: the observer is the proxy that the framework has for the requesting
/// client under the interface name "JournalServiceObserverIfc".
///
/// Threads: call `initInvoker` first. `handleMessage` is then thread-safe: the invoker has no state between
/// messages.
///
/// Errors: the response to every failure, including an unknown method and an exception of the journal, is the
/// failure text. No operation throws.
class JournalServiceInvoker final : public Invoker {
public:
    JournalServiceInvoker() = default;
    ~JournalServiceInvoker() override = default;

    /// `message` may contain any bytes and may be null; `length` is in bytes. A null response is logged only.
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;

    /// `context` is borrowed and outlives the invoker. Without one, no client can subscribe.
    void initInvoker(FrameworkContext* context) override { m_context = context; }

private:
    // Written by initInvoker only, before any other thread may call.
    FrameworkContext* m_context = nullptr;
};
