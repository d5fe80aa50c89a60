#pragma once

#include "platform/logging/Logging.h"

namespace host {
inline constexpr const char* kLinkComponent = "CSTA Link";
}

// One line of the link's log. The arguments are not evaluated when the level is off.
#define CSTA_LINK_LOG(level, ...)                                                           \
    do {                                                                                    \
        if (loggingOnAppUni(::host::kLinkComponent, level)) {                               \
            logAppUni(::host::kLinkComponent, __FILE_NAME__, level, __LINE__, __VA_ARGS__); \
        }                                                                                   \
    } while (false)
