#pragma once

#include <asio/io_context.hpp>
#include <exception>

#include "platform/logging/Logging.h"

namespace host {

/// Calls `handler`. Returns false if it has thrown, as in a process without free memory; that is logged.
template <typename Handler>
[[nodiscard]] bool runHandler(const Handler& handler) noexcept {
    try {
        handler();
        return true;
    } catch (const std::exception& error) {
        logAppUni("Framework", __FILE_NAME__, 2, __LINE__, "a handler failed: %s", error.what());
        return false;
    }
}

/// Runs the loop on the calling thread until it has no work or is stopped. An exception of a handler is
/// logged, and the loop continues after `repair`, because the handler may not have started its next
/// operation. An exception of `repair` is only logged.
template <typename Repair>
void runLoop(asio::io_context& loop, const Repair& repair) noexcept {
    while (!runHandler([&loop] { loop.run(); })) {
        static_cast<void>(runHandler(repair));
    }
}

/// For a loop whose handlers start their next operation before they do anything else.
inline void runLoop(asio::io_context& loop) noexcept {
    runLoop(loop, [] {});
}

}  // namespace host
