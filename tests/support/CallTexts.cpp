#include "tests/support/CallTexts.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace journaltest {

using journal::Call;

namespace {
const std::map<std::string, Call::states_t> kStates = {{"Unknown", Call::eUnknown},
                                                       {"Originated", Call::eOriginated},
                                                       {"Offered", Call::eOffered},
                                                       {"Delivered", Call::eDelivered},
                                                       {"Established", Call::eEstablished},
                                                       {"Forwarded", Call::eForwarded},
                                                       {"Cleared", Call::eCleared},
                                                       {"Failed", Call::eFailed},
                                                       {"CallInformation", Call::eCallInformation}};
}

std::string nameOf(Call::states_t state) {
    const auto found = std::find_if(kStates.begin(), kStates.end(),
                                    [state](const auto& named) { return named.second == state; });
    return found == kStates.end() ? "Unknown" : found->first;
}

Call::states_t stateOf(const std::string& name) {
    return kStates.at(name);
}

CSTADevice deviceOf(const std::string& word) {
    if (word == "-" || word.empty()) {
        return {};
    }
    if (word == "here") {
        return {CSTADevice::kLocalDevice, {}};
    }
    const auto colon = word.find(':');
    std::string name = colon == std::string::npos ? "" : word.substr(colon + 1);
    std::replace(name.begin(), name.end(), '_', ' ');
    return {word.substr(0, colon), name};
}

std::string partiesText(const Call& call) {
    std::vector<std::pair<std::string, std::string>> parties;
    const auto add = [&parties](const char* role, const std::string& number, const std::string& name) {
        const std::string party = name.empty() ? number : number + " " + name;
        const auto same = std::find_if(parties.begin(), parties.end(),
                                       [&party](const auto& known) { return known.second == party; });
        if (same != parties.end()) {
            same->first += std::string("+") + role;
        } else if (!party.empty()) {
            parties.emplace_back(role, party);
        }
    };
    add("dialled", call.m_sDialledParty, call.m_sDialledPartyName);
    add("called", call.m_sCalledParty, call.m_sCalledPartyName);
    add("remote", call.m_sRemoteParty, call.m_sRemotePartyName);
    add("connected", call.m_sConnectedParty, call.m_sConnectedPartyName);
    add("redirecting", call.m_sRedirectingParty, call.m_sRedirectingPartyName);
    add("first", call.m_sFirstForwardedParty, call.m_sFirstForwardedPartyName);
    std::string text;
    for (const auto& [roles, party] : parties) {
        text += (text.empty() ? "" : " ") + roles + "[" + party + "]";
    }
    return text;
}

}  // namespace journaltest
