#pragma once

#include "platform/logging/Logging.h"

namespace host {
inline constexpr const char* kLinkComponent = "CSTA Link";
}

// Writes one message to the link's log. The arguments are evaluated only if the level is enabled.
#define CSTA_LINK_LOG(level, ...)                                                           \
    do {                                                                                    \
        if (loggingOnAppUni(::host::kLinkComponent, level)) {                               \
            logAppUni(::host::kLinkComponent, __FILE_NAME__, level, __LINE__, __VA_ARGS__); \
        }                                                                                   \
    } while (false)
