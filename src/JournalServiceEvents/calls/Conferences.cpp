#include "src/JournalServiceEvents/calls/Conferences.h"

#include <algorithm>
#include <utility>

#include "src/JournalService/base/Log.h"

namespace journal {

std::vector<std::string> SipConference::oldCallIds() const {
    std::vector<std::string> all = formerOldCallIds;
    all.push_back(primaryOldCallId);
    all.push_back(secondaryOldCallId);
    return all;
}

bool SipConference::continues(const std::string& conferenceCallId) const {
    return !Conferences::isEmptyCallId(conferenceCallId) &&
           (conferenceCallId == newConnectionCallId || conferenceCallId == primaryOldCallId ||
            conferenceCallId == secondaryOldCallId);
}

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

Conferences::Members Conferences::takeMembers(const std::string& conferenceCallId) {
    Members taken;
    int index = -1;
    if (searchConferenceIDIndex(conferenceCallId, index)) {
        taken.swap(members(index));
        removeConference(index);
    }
    return taken;
}

void Conferences::removeMember(int index, Members::iterator member) {
    members(index).erase(member);
    if (members(index).empty()) {
        removeConference(index);
    }
}

void Conferences::removeEndedCall(const std::string& callId) {
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
        auto& former = m_sipConference->formerOldCallIds;
        former.erase(std::remove(former.begin(), former.end(), callId), former.end());
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
