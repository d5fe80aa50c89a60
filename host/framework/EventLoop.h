#pragma once

#include <asio/io_context.hpp>
#include <exception>

#include "platform/logging/Logging.h"

namespace host {

/// Runs the loop on the calling thread until it has no work or is stopped. An exception of a handler, as that
/// of a process without free memory, is logged, and the loop continues.
inline void runLoop(asio::io_context& loop) noexcept {
    for (bool ended = false; !ended;) {
        try {
            loop.run();
            ended = true;
        } catch (const std::exception& error) {
            logAppUni("Framework", __FILE_NAME__, 2, __LINE__, "a handler failed: %s", error.what());
        }
    }
}

}  // namespace host
