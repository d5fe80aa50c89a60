#pragma once

#include <string>

#include "platform/framework/Invoker.h"

/// Lets other processes ask for the contacts that came with the call lists, each with the entries that refer to it.
/// `docs/messages.md` shows the method and the list.
///
/// One message, step by step:
///  1. The target is looked at: it must be a `ContactGetterIfc`.
///  2. The framework's adapter for the message's protocol decodes it; its method must be "getContactList".
///  3. The first 200 contacts become the parameter "contactList" of the answer, which the same adapter encodes.
///  4. The answer becomes the payload of the response, and the response is completed, exactly once.
///
/// Threads: `initInvoker` first; then any thread may call `handleMessage`, several at once: the invoker keeps
/// nothing between messages, and the journal synchronises itself.
///
/// Errors: whatever goes wrong is answered with the text "fail". Nothing throws.
class ContactGetterInvoker final : public Invoker {
public:
    ContactGetterInvoker() = default;
    ~ContactGetterInvoker() override = default;

    /// `message` may hold any bytes, also none. A null response leaves only a log line: there is nobody to answer.
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override;

    /// `context` is borrowed and outlives the invoker. Without one, no message can be read.
    void initInvoker(FrameworkContext* context) override { m_context = context; }

    /// `<name>value</name>`, the value escaped, the name as it is.
    [[nodiscard]] std::string buildXmlElement(const std::string& name, const std::string& value) const;

private:
    // Written by initInvoker only, before any other thread may call.
    FrameworkContext* m_context = nullptr;
};
