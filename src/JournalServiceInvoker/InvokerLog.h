#pragma once

#include "src/JournalService/base/Log.h"

/// The remote interface.
#define LOG_INVOKER(level, ...) \
    JOURNAL_LOG_LINE("Journal Service Invoker", "./src/JournalServiceInvoker", level, __VA_ARGS__)
