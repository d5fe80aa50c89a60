#pragma once

#include <string>
#include <string_view>

#include "host/framework/TextInvoker.h"

namespace host {

/// Executes the settings requests of remote clients (docs/messages.md, "Settings"). The target of its
/// messages is the line's `LocalManagement`. The response to a request that is invalid or fails is "failure".
///
/// Thread-safe; stateless.
class LocalMgmtInvoker final : public TextInvoker {
public:
    LocalMgmtInvoker() : TextInvoker("Settings") {}

private:
    [[nodiscard]] std::string responseTo(std::string_view message, Executable* target) const override;
};

}  // namespace host
