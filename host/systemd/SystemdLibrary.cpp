#include "host/systemd/SystemdLibrary.h"

#include <dlfcn.h>
#include <systemd/sd-daemon.h>
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

#include <optional>

namespace host {
namespace {

std::optional<SystemdLibrary> loaded() noexcept {
    void* const library = ::dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);  // stays loaded
    if (library == nullptr) {
        return std::nullopt;
    }
    const SystemdLibrary systemd{
        .notify = reinterpret_cast<decltype(&::sd_notify)>(::dlsym(library, "sd_notify")),
        .journalSend = reinterpret_cast<decltype(&::sd_journal_sendv)>(::dlsym(library, "sd_journal_sendv"))};
    return systemd.notify != nullptr && systemd.journalSend != nullptr ? std::optional(systemd)
                                                                       : std::nullopt;
}

}  // namespace

const SystemdLibrary* SystemdLibrary::get() noexcept {
    static const std::optional<SystemdLibrary> library = loaded();
    return library ? &*library : nullptr;
}

}  // namespace host
