#pragma once

#include <string>
#include <string_view>

#include "host/framework/TextInvoker.h"

namespace host {

/// Carries out the requests of remote clients for settings (docs/messages.md, "Settings"). The target of its messages is
/// the line's `LocalManagement`.
///
/// Whatever cannot be read, or fails, is answered "failure". Every message is answered exactly once, and nothing is thrown.
///
/// Threads: any number at a time; it has no state.
class LocalMgmtInvoker final : public TextInvoker {
public:
    LocalMgmtInvoker() : TextInvoker("Settings") {}

private:
    [[nodiscard]] std::string responseTo(std::string_view message, Executable* target) const override;
};

}  // namespace host
