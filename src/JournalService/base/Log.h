#pragma once

#include "platform/logging/Logging.h"

// The log macros of the journal library, one for each component. They are macros because a level that is off
// must not evaluate the arguments, and a log entry carries its source line number. Levels: 2 error, 3
// warning, 4 and 5 information and decisions, 6 detail. The texts are a contract with support engineers and
// do not change.

#define JOURNAL_LOG(component, source, level, ...)                      \
    do {                                                                \
        if (loggingOnAppUni(component, level)) {                        \
            logAppUni(component, source, level, __LINE__, __VA_ARGS__); \
        }                                                               \
    } while (false)

/// The facade, the lists and the loading.
#define LOG_JOURNAL(level, ...) JOURNAL_LOG("Journal Service", "./src/JournalService", level, __VA_ARGS__)
/// Events, entry creation, configuration and synchronisation.
#define LOG_EVENTS(level, ...) \
    JOURNAL_LOG("Journal Service Events", "./src/JournalServiceEvents", level, __VA_ARGS__)
