#pragma once

#include <string>
#include <string_view>

#include "host/framework/TextInvoker.h"

namespace host {

/// Carries out the phonebook requests of remote clients (docs/messages.md, "Phonebook"). The target of its
/// messages is the line's `Phonebook`.
///
/// A request that cannot be read, or fails, gets the response "failure". Every message gets exactly one
/// response; it never throws.
///
/// Thread-safe: it has no state.
class PhonebookInvoker final : public TextInvoker {
public:
    PhonebookInvoker() : TextInvoker("Phonebook") {}

private:
    [[nodiscard]] std::string responseTo(std::string_view message, Executable* target) const override;
};

}  // namespace host
