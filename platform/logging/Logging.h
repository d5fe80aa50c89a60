#pragma once

/// The platform's logger, as seen by everything that a framework loads.
///
/// The process that loads a service provides both functions (exported from the program, or from a shared library
/// that it links); `host/log` is such a provider. Any thread may call them at any time. Levels: 2 error,
/// 3 warning, 4 and 5 information and decisions, 6 detail.

/// Whether a line of `level` for `component` would be written. Ask before building costly arguments.
[[nodiscard]] __attribute__((visibility("default"))) bool loggingOnAppUni(const char* component,
                                                                          int level) noexcept;

/// Writes one line; `format` and what follows are those of `printf`. A level that is off costs no formatting.
/// Line breaks and control characters in the text cannot forge a line: the provider shows them escaped.
void logAppUni(const char* component, const char* sourceFile, int level, int line, const char* format,
               ...) noexcept __attribute__((visibility("default"), format(printf, 5, 6)));
