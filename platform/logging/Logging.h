#pragma once

/// The platform's logger for everything that a framework loads.
///
/// The process that loads a service provides both functions (exported from the program, or from a shared
/// library that it links); `host/log` is such a provider. Thread-safe. Levels: 2 error, 3 warning, 4 and 5
/// information and decisions, 6 detail.

/// True if a text of `level` for `component` would be written. Check before building costly arguments.
[[nodiscard]] __attribute__((visibility("default"))) bool loggingOnAppUni(const char* component,
                                                                          int level) noexcept;

/// Writes one log text; `format` and the arguments are those of `printf`. A level that is off costs no
/// formatting. The provider escapes line breaks and control characters, so a log text cannot imitate several.
void logAppUni(const char* component, const char* sourceFile, int level, int line, const char* format,
               ...) noexcept __attribute__((visibility("default"), format(printf, 5, 6)));
