#pragma once

#include <sys/uio.h>

namespace host {

/// The functions of libsystemd that the program uses. The library is loaded at the first use, since a
/// program that no service manager has started does not need it.
struct SystemdLibrary {
    int (*notify)(int unsetEnvironment, const char* state);
    int (*journalSend)(const iovec* fields, int count);

    /// nullptr if the library is not installed. Thread-safe.
    [[nodiscard]] static const SystemdLibrary* get() noexcept;
};

}  // namespace host
