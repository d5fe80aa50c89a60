#pragma once

#include "src/JournalService/base/Log.h"

namespace journal {
inline constexpr const char* kInvokerComponent = "Journal Service Invoker";
inline constexpr const char* kInvokerSource = "./src/JournalServiceInvoker";
}  // namespace journal

/// Log texts of the remote interface.
#define LOG_INVOKER(level, ...) \
    JOURNAL_LOG(journal::kInvokerComponent, journal::kInvokerSource, level, __VA_ARGS__)
