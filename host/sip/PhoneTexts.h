#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// The texts of the telephone's responses, which are written for people. Pure functions.

/// A call of the telephone, as `callstat` reports it.
struct SipCallState {
    enum class State { eDialling, eRinging, eTalking };

    std::string id;
    bool outgoing = false;
    std::string peerUri;
    std::string peerName;
    State state = State::eDialling;
};

/// The numbers of the lines in the response to `listcalls`.
[[nodiscard]] std::vector<int> readLineNumbers(std::string_view text);

/// The state of the account with that address in the response to `reginfo`: true if it is registered, false
/// if the registrar refuses or does not respond; `std::nullopt` if it is neither, or there is no registrar.
[[nodiscard]] std::optional<bool> readRegistration(std::string_view text, std::string_view address);

/// The reason for which the account is not registered, in a line of the telephone's output: "403 Forbidden".
/// `std::nullopt` for any other line.
[[nodiscard]] std::optional<std::string> readRegistrationFault(std::string_view line,
                                                               std::string_view address);

/// The response to `callstat`; `std::nullopt` if there is no call, or the call has ended.
[[nodiscard]] std::optional<SipCallState> readCallState(std::string_view text);

}  // namespace host
