#pragma once

#include <exception>
#include <type_traits>
#include <utility>

#include "platform/logging/Logging.h"

/// The place that a log text names as its origin; the arguments of `logAppUni` with the same names. The texts
/// are borrowed; use literals.
struct LogOrigin {
    const char* component;
    const char* sourceFile;
    int line;
};

/// Runs `work`. An exception ends here with one log text of level 2, "OPERATION failed: REASON". Returns
/// false if `work` threw.
template <typename Work>
bool logExceptions(const LogOrigin& origin, const char* operation, Work&& work) noexcept {
    try {
        std::forward<Work>(work)();
        return true;
    } catch (const std::exception& error) {
        logAppUni(origin.component, origin.sourceFile, 2, origin.line, "%s failed: %s", operation,
                  error.what());
    } catch (...) {
        logAppUni(origin.component, origin.sourceFile, 2, origin.line, "%s failed", operation);
    }
    return false;
}

/// As `logExceptions`, for work with a result: returns that result, or `fallback` if `work` threw.
template <typename Work, typename Result = std::invoke_result_t<Work>>
Result logExceptionsOr(const LogOrigin& origin, const char* operation, Result fallback,
                       Work&& work) noexcept {
    logExceptions(origin, operation, [&] { fallback = std::forward<Work>(work)(); });
    return fallback;
}
