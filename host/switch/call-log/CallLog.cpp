#include "host/switch/call-log/CallLog.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <utility>

namespace host {

namespace {

using Entry = CallLogEntryEvent;
using std::chrono::seconds;
using std::chrono::sys_seconds;

// Above this number of stored times, those in the past are removed.
constexpr std::size_t kManyTimes = 2000;
constexpr const char* kTimeForm = "%Y-%m-%dT%H:%M:%SZ";

sys_seconds now() {
    return std::chrono::time_point_cast<seconds>(std::chrono::system_clock::now());
}

std::string textOf(sys_seconds time) {
    const std::time_t counted = std::chrono::system_clock::to_time_t(time);
    std::tm fields{};
    gmtime_r(&counted, &fields);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), kTimeForm, &fields);
    return text.data();
}

Entry::_PresentationValue presented(const std::string& text) {
    return text.empty() ? Entry::eNotPresented : Entry::ePresented;
}

sys_seconds timeOf(const std::string& text) {
    std::tm fields{};
    strptime(text.c_str(), kTimeForm, &fields);
    return std::chrono::time_point_cast<seconds>(std::chrono::system_clock::from_time_t(timegm(&fields)));
}

bool isOfParty(const Entry& entry, const CallLog::Party& party) {
    return entry.subscriberNumber == party.number && entry.textF == party.group;
}

}  // namespace

CallLog::Events CallLog::add(Entry::_LogTarget log, const Party& party) {
    Entry entry;
    entry.logTarget = log;
    entry.subscriberNumber = party.number;
    entry.presentationA = presented(party.number);
    entry.name = party.name;
    entry.presentationB = presented(party.name);
    entry.textE = party.group;
    entry.textF = party.group;
    entry.entryTime = nextTime(party.number);

    Parties& parties = m_logs[log];
    auto known = std::find_if(parties.begin(), parties.end(),
                              [&party](const Entries& all) { return isOfParty(all.front(), party); });
    if (known == parties.end()) {
        known = parties.emplace(parties.begin());
    }
    parties.splice(parties.begin(), parties, known);
    known->push_front(entry);
    if (known->size() > kMaxEntries) {
        known->pop_back();
    }
    Events events = {std::move(entry)};
    if (parties.size() > kMaxParties) {
        // Of several parties with the same time, the last one in the list.
        const auto found = std::min_element(
            parties.rbegin(), parties.rend(),
            [](const Entries& a, const Entries& b) { return a.front().entryTime < b.front().entryTime; });
        const auto oldest = std::prev(found.base());
        std::transform(oldest->begin(), oldest->end(), std::back_inserter(events),
                       [this](const Entry& dropped) { return deletionOf(dropped); });
        parties.erase(oldest);
    }
    return events;
}

CallLog::Events CallLog::remove(Entry::_LogTarget log, const std::string& number) {
    const Parties& parties = m_logs[log];
    const auto known = std::find_if(parties.begin(), parties.end(), [&number](const Entries& all) {
        return all.front().subscriberNumber == number;
    });
    if (known == parties.end()) {
        return {};
    }
    const Entry* const newest = &known->front();
    return removeIf(log, [newest](const Entry& entry) { return &entry == newest; });
}

CallLog::Events CallLog::clear(Entry::_LogTarget log) {
    if (log == Entry::eMissedGroup) {
        return removeIf(log, [](const Entry& /*entry*/) { return true; });
    }
    bool wasEmpty = std::exchange(m_logs[log], {}).empty();
    if (log == Entry::eMissed) {
        wasEmpty = std::exchange(m_logs[Entry::eMissedGroup], {}).empty() && wasEmpty;
    }
    if (wasEmpty) {
        return {};
    }
    Entry event;
    event.action = Entry::eDeleteAll;
    event.logTarget = log;
    return {std::move(event)};
}

std::optional<CallLog::Events> CallLog::apply(const CallLogEntryRequest& request) {
    const bool one = request.action == CallLogEntryRequest::eDeleteOne;
    switch (request.logTarget) {
        case Entry::eReceived:
        case Entry::eMissed:
        case Entry::eDialled: return one ? removeUpTo(request) : clear(request.logTarget);
        case Entry::eMissedGroupRequest: return one ? std::nullopt : std::optional(removeGroup(request));
        default: return std::nullopt;
    }
}

CallLog::Events CallLog::entries() const {
    Events all;
    for (const auto& [log, parties] : m_logs) {
        for (const Entries& entries : parties) {
            all.insert(all.end(), entries.begin(), entries.end());
        }
    }
    return all;
}

bool CallLog::isOfWholeLog(const Entry& event) {
    return event.action == Entry::eDeleteAll && event.logTarget != Entry::eMissedGroup;
}

std::string CallLog::nextTime(const std::string& number) {
    if (m_lastTimes.size() > kManyTimes) {
        std::erase_if(m_lastTimes, [present = now()](const auto& last) { return last.second < present; });
    }
    const auto [last, first] = m_lastTimes.try_emplace(number, now());
    last->second = first ? last->second : std::max(now(), last->second + seconds(1));
    return textOf(last->second);
}

CallLog::Events CallLog::removeUpTo(const CallLogEntryRequest& request) {
    const std::optional<Entry> ofGroup = groupEntryOf(request);
    const Party party{request.subscriberNumber, {}, ofGroup ? ofGroup->textF : std::string()};
    const std::string limit = ofGroup ? std::max(ofGroup->entryTime, request.entryTime) : request.entryTime;
    return removeIf(ofGroup ? Entry::eMissedGroup : request.logTarget,
                    [&](const Entry& entry) { return isOfParty(entry, party) && entry.entryTime <= limit; });
}

/// Returns the group's entry that the request is about; `std::nullopt` if it is about another entry.
///
/// It is about a group's entry if no missed call of the number has its time: the phone assigns its own time
/// to the entries of groups, and its request does not distinguish them. That time is the one at which the
/// phone got the entry, so it is the newest entry that is not later; if all are later, the oldest one.
std::optional<CallLog::Entry> CallLog::groupEntryOf(const CallLogEntryRequest& request) const {
    const Events missed = entriesOf(Entry::eMissed, request.subscriberNumber);
    const Events ofGroups = entriesOf(Entry::eMissedGroup, request.subscriberNumber);
    const bool isMissed = std::any_of(missed.begin(), missed.end(), [&request](const Entry& entry) {
        return entry.entryTime == request.entryTime;
    });
    if (request.logTarget != Entry::eMissed || isMissed || ofGroups.empty()) {
        return std::nullopt;
    }
    const auto later = std::find_if(ofGroups.begin(), ofGroups.end(), [&request](const Entry& entry) {
        return entry.entryTime > request.entryTime;
    });
    return later == ofGroups.begin() ? *later : *std::prev(later);
}

CallLog::Events CallLog::entriesOf(Entry::_LogTarget log, const std::string& number) const {
    Events found;
    const auto parties = m_logs.find(log);
    if (parties == m_logs.end()) {
        return found;
    }
    for (const Entries& entries : parties->second) {
        if (!entries.empty() && entries.front().subscriberNumber == number) {
            found.insert(found.end(), entries.begin(), entries.end());
        }
    }
    std::sort(found.begin(), found.end(),
              [](const Entry& a, const Entry& b) { return a.entryTime < b.entryTime; });
    return found;
}

CallLog::Events CallLog::removeGroup(const CallLogEntryRequest& request) {
    const Party party{request.subscriberNumber, {}, request.further.back().text};
    return removeIf(Entry::eMissedGroup, [&party](const Entry& entry) { return isOfParty(entry, party); });
}

template <typename Predicate>
CallLog::Events CallLog::removeIf(Entry::_LogTarget log, Predicate matches) {
    Events events;
    Parties& parties = m_logs[log];
    for (Entries& entries : parties) {
        Entries kept;
        for (const Entry& entry : entries) {
            if (matches(entry)) {
                events.push_back(deletionOf(entry));
            } else {
                kept.push_back(entry);
            }
        }
        entries.swap(kept);
    }
    parties.remove_if([](const Entries& entries) { return entries.empty(); });
    return events;
}

/// The phone assigns its own time to a group's entries: not later than now, and before the next entry of the
/// number, if there is one.
Entry CallLog::deletionOf(const Entry& entry) const {
    Entry event;
    event.action = Entry::eDelete;
    event.logTarget = entry.logTarget;
    event.subscriberNumber = entry.subscriberNumber;
    event.entryTime = entry.entryTime;
    if (entry.logTarget == Entry::eMissedGroup) {
        event.action = Entry::eDeleteAll;
        event.textE = entry.textE;
        event.textF = entry.textF;
        const Events ofNumber = entriesOf(Entry::eMissedGroup, entry.subscriberNumber);
        const auto next = std::find_if(ofNumber.begin(), ofNumber.end(), [&entry](const Entry& other) {
            return other.entryTime > entry.entryTime;
        });
        event.entryTime =
            next == ofNumber.end() ? textOf(now()) : textOf(timeOf(next->entryTime) - seconds(1));
    }
    return event;
}

}  // namespace host
