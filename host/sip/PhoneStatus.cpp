#include "host/sip/PhoneStatus.h"

#include <string_view>
#include <utility>

#include "platform/logging/Logging.h"

namespace host {

namespace {

using Kind = PhoneState::Kind;

constexpr const char* kComponent = "SIP Gateway";

/// The registrar refuses the user or the password.
bool isOfTheAccount(std::string_view reason) {
    return reason.starts_with("401") || reason.starts_with("403") || reason.starts_with("407");
}

}  // namespace

const char* wordOf(PhoneState::Kind kind) noexcept {
    switch (kind) {
        case Kind::eNotRunning: return "not-running";
        case Kind::eRegistering: return "registering";
        case Kind::eNotRegistered: return "not-registered";
        case Kind::eReady: return "ready";
    }
    return "";
}

void PhoneStatus::connected() {
    // The registrar may have refused before.
    if (state().kind == Kind::eNotRunning) {
        set({.kind = m_mustRegister ? Kind::eRegistering : Kind::eReady});
    }
}

void PhoneStatus::failed(const std::string& reason) {
    set({.kind = Kind::eNotRunning, .reason = reason});
}

void PhoneStatus::registered(bool isRegistered, const std::string& reason) {
    if (isRegistered) {
        const bool isNews = m_mustRegister && state().kind != Kind::eReady;
        set({.kind = Kind::eReady});
        if (isNews) {
            logAppUni(kComponent, __FILE_NAME__, 5, __LINE__, "%s is registered", m_account.c_str());
        }
    } else if (!reason.empty() || state().kind != Kind::eNotRegistered) {
        set({.kind = Kind::eNotRegistered, .reason = reason.empty() ? "the registrar refuses it" : reason});
    }
}

void PhoneStatus::overdue() {
    if (state().kind == Kind::eRegistering) {
        set({.kind = Kind::eNotRegistered, .reason = "the registrar does not respond yet"});
    }
}

PhoneState PhoneStatus::state() const {
    const std::lock_guard lock(m_mutex);
    return m_state;
}

void PhoneStatus::set(const PhoneState& state) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_state == state) {
            return;
        }
        m_state = state;
    }
    if (state.kind == Kind::eNotRegistered) {
        logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "%s is not registered: %s%s", m_account.c_str(),
                  state.reason.c_str(),
                  isOfTheAccount(state.reason) ? "; check the account and its password" : "");
    }
}

}  // namespace host
