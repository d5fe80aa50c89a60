#pragma once

#include <string>
#include <string_view>

#include "host/framework/TextInvoker.h"

namespace host {

/// Carries out the requests of remote clients for the phonebook (docs/messages.md, "Phonebook"). The target of its messages
/// is the line's `Phonebook`.
///
/// Whatever cannot be read, or fails, is answered "failure". Every message is answered exactly once, and nothing is thrown.
///
/// Threads: any number at a time; it has no state.
class PhonebookInvoker final : public TextInvoker {
public:
    PhonebookInvoker() : TextInvoker("Phonebook") {}

private:
    [[nodiscard]] std::string responseTo(std::string_view message, Executable* target) const override;
};

}  // namespace host
