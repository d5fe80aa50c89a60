#include "host/csta/CallLogEchoes.h"

#include <algorithm>

namespace host {

namespace {

using Entry = CallLogEntryEvent;

/// The log that the number on the wire stands for.
Entry::_LogTarget logOf(Entry::_LogTarget target) {
    switch (target) {
        case Entry::eMissedMarked: return Entry::eMissed;
        case Entry::eDialledForwarded:
        case Entry::eDialledUnanswered: return Entry::eDialled;
        default: return target;
    }
}

/// Times of one form are ordered like their texts; those of different forms are not compared.
bool isNotLater(const std::string& time, const std::string& limit) {
    return time.size() == limit.size() && time <= limit;
}

}  // namespace

void CallLogEchoes::requested(const CallLogEntryRequest& request, Clock::time_point now) {
    const bool ofGroup = request.logTarget == Entry::eMissedGroupRequest;
    if (request.action != CallLogEntryRequest::eDeleteOne && !ofGroup) {
        return;
    }
    removeOld(now);
    const Addition entry{request.subscriberNumber, request.entryTime};
    const bool isSwitchTime = std::find(m_additions.begin(), m_additions.end(), entry) != m_additions.end();
    m_deletions.push_back({.log = logOf(request.logTarget),
                           .number = request.subscriberNumber,
                           .time = request.entryTime,
                           .group = request.further.back().text,
                           .mayBeOfGroup = ofGroup || (request.logTarget == Entry::eMissed && !isSwitchTime),
                           .end = now + kLifetime});
}

bool CallLogEchoes::isEcho(const Entry& event, Clock::time_point now) {
    removeOld(now);
    if (event.action == Entry::eAdd) {
        remember(event);
        return false;
    }
    return std::any_of(m_deletions.begin(), m_deletions.end(),
                       [&event](const Deletion& deletion) { return reports(event, deletion); });
}

void CallLogEchoes::removeOld(Clock::time_point now) {
    while (!m_deletions.empty() && m_deletions.front().end < now) {
        m_deletions.pop_front();
    }
}

void CallLogEchoes::remember(const Entry& added) {
    if (logOf(added.logTarget) != Entry::eMissed) {
        return;
    }
    m_additions.push_back({added.subscriberNumber, added.entryTime});
    if (m_additions.size() > kKeptAdditions) {
        m_additions.pop_front();
    }
}

bool CallLogEchoes::reports(const Entry& event, const Deletion& deletion) {
    if (event.subscriberNumber != deletion.number) {
        return false;
    }
    if (event.logTarget == Entry::eMissedGroup) {
        return deletion.mayBeOfGroup &&
               (event.textF.empty() || deletion.group.empty() || event.textF == deletion.group);
    }
    return event.action == Entry::eDelete && logOf(event.logTarget) == deletion.log &&
           isNotLater(event.entryTime, deletion.time);
}

}  // namespace host
