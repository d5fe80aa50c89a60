#include "host/systemd/ServiceManager.h"

#include <unistd.h>

#include <cstdlib>
#include <exception>

#include "host/systemd/SystemdLibrary.h"

namespace host {
namespace {

void notify(const char* state) noexcept {
    if (std::getenv("NOTIFY_SOCKET") == nullptr) {
        return;
    }
    if (const SystemdLibrary* const systemd = SystemdLibrary::get()) {
        systemd->notify(0, state);
    }
}

}  // namespace

void ServiceManager::ready(const std::string& status) noexcept {
    try {
        notify(("READY=1\nSTATUS=" + status).c_str());
    } catch (const std::exception&) {  // no memory
        notify("READY=1");
    }
}

void ServiceManager::reloading() noexcept {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(now).count();
    try {
        notify(("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(microseconds)).c_str());
    } catch (const std::exception&) {  // no memory
        notify("RELOADING=1");
    }
}

void ServiceManager::stopping() noexcept {
    notify("STOPPING=1\nSTATUS=ends");
}

void ServiceManager::alive() noexcept {
    notify("WATCHDOG=1");
}

std::optional<std::chrono::microseconds> ServiceManager::watchdogInterval() noexcept {
    const char* const interval = std::getenv("WATCHDOG_USEC");
    const char* const process = std::getenv("WATCHDOG_PID");
    if (interval == nullptr || (process != nullptr && std::atol(process) != ::getpid())) {
        return std::nullopt;
    }
    const long long microseconds = std::atoll(interval);
    return microseconds > 0 ? std::optional(std::chrono::microseconds(microseconds)) : std::nullopt;
}

}  // namespace host
