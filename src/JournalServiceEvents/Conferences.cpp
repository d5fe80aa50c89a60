#include "src/JournalServiceEvents/Conferences.h"

#include <algorithm>
#include <utility>

#include "src/JournalService/Log.h"

namespace journal {

int Conferences::getNumberOfConferences() const {
    return static_cast<int>(std::count_if(m_conferences.begin(), m_conferences.end(),
                                          [](const auto& conference) { return conference != nullptr; }));
}

bool Conferences::searchConferenceIDIndex(const std::string& conferenceCallId, int& index) const {
    for (std::size_t slot = 0; slot < kMaxConferences; ++slot) {
        if (m_conferences[slot] != nullptr && m_conferences[slot]->callId == conferenceCallId) {
            index = static_cast<int>(slot);
            return true;
        }
    }
    index = -1;
    return false;
}

bool Conferences::getNewConferenceIDIndex(int& index) const {
    for (std::size_t slot = 0; slot < kMaxConferences; ++slot) {
        if (m_conferences[slot] == nullptr) {
            index = static_cast<int>(slot);
            return true;
        }
    }
    index = -1;
    return false;
}

bool Conferences::searchDeviceIDInConference(int index, const std::string& deviceId,
                                             Members::iterator& member) {
    Members& all = members(index);
    member = std::find_if(all.begin(), all.end(),
                          [&deviceId](const auto& one) { return one.deviceId == deviceId; });
    return member != all.end();
}

void Conferences::addConference(int index, const std::string& conferenceCallId) {
    auto conference = std::make_unique<Conference>();
    conference->callId = conferenceCallId;
    m_conferences[static_cast<std::size_t>(index)] = std::move(conference);
}

void Conferences::removeMember(int index, Members::iterator member) {
    members(index).erase(member);
    if (members(index).empty()) {
        removeConference(index);
    }
}

void Conferences::forgetCall(const std::string& callId) {
    for (auto& conference : m_conferences) {
        if (conference != nullptr) {
            conference->members.remove_if([&callId](const auto& member) { return member.callId == callId; });
            if (conference->members.empty()) {
                conference.reset();
            }
        }
    }
    if (m_sipConference) {
        for (std::string* member :
             {&m_sipConference->primaryOldCallId, &m_sipConference->secondaryOldCallId}) {
            if (*member == callId) {
                member->clear();
            }
        }
    }
}

void Conferences::removeAllConferences() {
    for (auto& conference : m_conferences) {
        if (conference != nullptr) {
            LOG_EVENTS(5, "%s():Conference removed", "removeAllConferences");
            conference.reset();
        }
    }
    m_sipConference.reset();
}

}  // namespace journal
