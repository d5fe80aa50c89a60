#pragma once

#include <string>

#include "src/JournalServiceEvents/Call.h"

namespace journaltest {

/// The parties of a record in one line, those that are empty left out: "remote[4711 Ann] connected[4712]".
inline std::string partiesText(const journal::Call& call) {
    std::string text;
    const auto add = [&text](const char* role, const std::string& number, const std::string& name) {
        if (number.empty() && name.empty()) {
            return;
        }
        text += std::string(text.empty() ? "" : " ") + role + "[" + number +
                (name.empty() ? "" : " " + name) + "]";
    };
    add("dialled", call.m_sDialledParty, call.m_sDialledPartyName);
    add("called", call.m_sCalledParty, call.m_sCalledPartyName);
    add("remote", call.m_sRemoteParty, call.m_sRemotePartyName);
    add("connected", call.m_sConnectedParty, call.m_sConnectedPartyName);
    add("redirecting", call.m_sRedirectingParty, call.m_sRedirectingPartyName);
    return text;
}

}  // namespace journaltest
