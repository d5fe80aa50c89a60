#pragma once

#include <mutex>
#include <string>

namespace host {

/// The state of the telephone, for those who want to place a call. A plain value.
struct PhoneState {
    enum class Kind {
        eNotRunning,     ///< the telephone starts, or has failed
        eRegistering,    ///< it has no response of the registrar yet
        eNotRegistered,  ///< the registrar refuses or does not respond
        eReady,          ///< it is registered, or needs no registrar
    };

    Kind kind = Kind::eNotRunning;
    /// Why it is not ready, such as "401 Unauthorized"; may be empty.
    std::string reason{};

    [[nodiscard]] bool operator==(const PhoneState&) const = default;
};

/// "ready", "registering", "not-registered" or "not-running".
[[nodiscard]] const char* wordOf(PhoneState::Kind kind) noexcept;

/// Follows the state of the telephone, and logs its changes. Any thread may call `state`, the gateway's
/// thread only may call the others.
class PhoneStatus {
public:
    /// `account` is the address for the log. `mustRegister`: calls need a registrar.
    PhoneStatus(std::string account, bool mustRegister)
        : m_account(std::move(account)), m_mustRegister(mustRegister) {}

    void connected();
    /// The telephone has ended, or is not connected.
    void failed(const std::string& reason);
    /// An empty reason leaves the one that is known.
    void registered(bool isRegistered, const std::string& reason);
    /// The registrar takes longer than a person would wait.
    void overdue();

    [[nodiscard]] PhoneState state() const;

private:
    void set(const PhoneState& state);

    const std::string m_account;
    const bool m_mustRegister;
    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    PhoneState m_state;
};

}  // namespace host
