#pragma once

#include <string>

#include "platform/framework/Invoker.h"

/// Sends the contacts of the call lists, each with the entries that refer to it, to other processes.
/// `docs/messages.md` describes the method and the list.
///
/// One message is handled in these steps:
///  1. The target must be a `ContactGetterIfc`.
///  2. The framework's adapter for the protocol of the message decodes it; the method must be
///     "getContactList".
///  3. The first 200 contacts become the parameter "contactList" of the response, which the same adapter
///     encodes.
///  4. The encoded text becomes the payload of the response, and the response is completed, exactly once.
///
/// Threads: call `initInvoker` first. `handleMessage` is then thread-safe: the invoker has no state between
/// messages.
///
/// Errors: the response to every failure is the text "fail". No operation throws.
class ContactGetterInvoker final : public Invoker {
public:
    ContactGetterInvoker() = default;
    ~ContactGetterInvoker() override = default;

    /// `message` may contain any bytes and may be null; `length` is in bytes. A null response is logged only.
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;

    /// `context` is borrowed and outlives the invoker. Without one, no message can be decoded.
    void initInvoker(FrameworkContext* context) override { m_context = context; }

    /// Returns `<name>value</name>`, with the value escaped and the name unchanged.
    [[nodiscard]] std::string buildXmlElement(const std::string& name, const std::string& value) const;

private:
    // Written by initInvoker only, before any other thread may call.
    FrameworkContext* m_context = nullptr;
};
