#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace host {

/// Reports the state of the program to the service manager that has started it (`Type=notify`). Each report
/// has no effect without one. Thread-safe.
class ServiceManager {
public:
    ServiceManager() = delete;

    /// The service can be used, for the first time or after `reloading`; `status` is for the user.
    static void ready(const std::string& status) noexcept;
    static void reloading() noexcept;
    static void stopping() noexcept;
    /// The service works; at least once in each `watchdogInterval`.
    static void alive() noexcept;

    /// The time after which the manager restarts a service that is not alive; std::nullopt if it does not.
    [[nodiscard]] static std::optional<std::chrono::microseconds> watchdogInterval() noexcept;
};

}  // namespace host
