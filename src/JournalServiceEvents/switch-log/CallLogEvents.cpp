#include "src/JournalServiceEvents/switch-log/CallLogEvents.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/list-changes/ListDeletion.h"
#include "src/JournalService/lists/ListTransaction.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/switch-log/CallLogRemoval.h"
#include "src/JournalServiceEvents/switch-log/GenerateCallId.h"
#include "src/JournalServiceEvents/switch-log/LoweredPriority.h"
#include "src/JournalServiceEvents/switch-log/SwitchTime.h"

namespace journal {

using Entry = CallLogEntryEvent;

namespace {

constexpr const char* kLogName = "handleCallLogEntryEvent";

/// Suspends server call-log mode for its life. When the management changes the mode meanwhile, that change
/// stays.
class ScopedSuspendReporting {
public:
    explicit ScopedSuspendReporting(PhoneSettings& settings) : m_settings(settings) {
        m_settings.change([this](SettingsSnapshot& values) {
            m_systemIdentifier = values.m_systemIdentifier;
            m_serverBasedCallLog = values.m_serverBasedCallLog;
            values.m_serverBasedCallLog = false;
        });
    }
    ScopedSuspendReporting(const ScopedSuspendReporting&) = delete;
    ScopedSuspendReporting& operator=(const ScopedSuspendReporting&) = delete;
    ~ScopedSuspendReporting() {
        m_settings.change([this](SettingsSnapshot& values) {
            if (values.m_systemIdentifier == m_systemIdentifier) {
                values.m_serverBasedCallLog = m_serverBasedCallLog;
            }
        });
    }

private:
    PhoneSettings& m_settings;
    std::int32_t m_systemIdentifier = 0;
    bool m_serverBasedCallLog = false;
};

template <typename Details>
Details detailsOf(const Entry& event) {
    Details details;
    details.callId = generateCallId();
    details.remoteParty = event.subscriberNumber;
    details.remotePartyName = event.name;
    details.timeText = event.entryTime;
    details.timeFormat = event.entryTimeFormat;
    details.logTarget = event.logTarget;
    details.presentationA = event.presentationA;
    details.presentationB = event.presentationB;
    return details;
}

template <typename Details>
Details detailsWithTextsOf(const Entry& event) {
    auto details = detailsOf<Details>(event);
    details.presentationC = event.presentationC;
    details.textC = event.textC;
    details.presentationD = event.presentationD;
    details.textD = event.textD;
    return details;
}

}  // namespace

struct CallLogEvents::Rule {
    Entry::Action action;
    Entry::_LogTarget target;
    void (CallLogEvents::*apply)(const Entry& event);
};

const CallLogEvents::Rule CallLogEvents::kRules[] = {
    {Entry::eAdd, Entry::eReceived, &CallLogEvents::addReceived},
    {Entry::eAdd, Entry::eMissed, &CallLogEvents::addMissed},
    {Entry::eAdd, Entry::eMissedMarked, &CallLogEvents::addMissed},
    {Entry::eAdd, Entry::eMissedGroup, &CallLogEvents::addMissedGroup},
    {Entry::eAdd, Entry::eDialled, &CallLogEvents::addDialled},
    {Entry::eAdd, Entry::eDialledForwarded, &CallLogEvents::addDialled},
    {Entry::eAdd, Entry::eDialledUnanswered, &CallLogEvents::addDialled},

    {Entry::eDelete, Entry::eReceived, &CallLogEvents::removeReceived},
    {Entry::eDelete, Entry::eMissed, &CallLogEvents::removeMissed},
    {Entry::eDelete, Entry::eMissedMarked, &CallLogEvents::removeMissed},
    {Entry::eDelete, Entry::eMissedGroup, &CallLogEvents::removeMissed},
    {Entry::eDelete, Entry::eDialled, &CallLogEvents::removeDialled},
    {Entry::eDelete, Entry::eDialledForwarded, &CallLogEvents::removeDialled},
    {Entry::eDelete, Entry::eDialledUnanswered, &CallLogEvents::removeDialled},

    {Entry::eDeleteAll, Entry::eReceived, &CallLogEvents::clearReceived},
    {Entry::eDeleteAll, Entry::eMissed, &CallLogEvents::clearMissed},
    {Entry::eDeleteAll, Entry::eMissedMarked, &CallLogEvents::clearMissed},
    // A log of groups is deleted group by group.
    {Entry::eDeleteAll, Entry::eMissedGroup, &CallLogEvents::removeMissedGroup},
    {Entry::eDeleteAll, Entry::eDialled, &CallLogEvents::clearDialled},
    {Entry::eDeleteAll, Entry::eDialledForwarded, &CallLogEvents::clearDialled},
    {Entry::eDeleteAll, Entry::eDialledUnanswered, &CallLogEvents::clearDialled},
};

void CallLogEvents::handleCallLogEntryEvent(const Entry* event) {
    LOG_EVENTS(5, "%s():TargetLog: %d, SubscriberNumber: %s, Action: %d, entryTime:%s", kLogName,
               static_cast<int>(event->logTarget), event->subscriberNumber.c_str(), event->action,
               event->entryTime.c_str());
    // Outlives the lock, so that the priority is restored after the lock is released.
    const LoweredPriority priority(kLogName);
    const CallMap::Section section(m_calls.m_callMapLock);
    apply(*event);
}

void CallLogEvents::apply(const Entry& event) {
    const auto* const rule = std::find_if(std::begin(kRules), std::end(kRules), [&event](const Rule& row) {
        return row.action == event.action && row.target == event.logTarget;
    });
    if (rule == std::end(kRules)) {
        return;
    }
    if (event.action != Entry::eDeleteAll) {
        (this->*rule->apply)(event);
        return;
    }
    const ListTransaction transaction(m_lists);
    const ScopedSuspendReporting suspended(m_settings);
    (this->*rule->apply)(event);
}

// --- an entry added ---

void CallLogEvents::addMissed(const Entry& event) {
    if (!m_settings.values()->m_xsiConfigured) {
        m_entries.newMissedCallEntry(detailsWithTextsOf<MissedEntryDetails>(event));
    }
}

// The time of a group's entry is the time of the event.
void CallLogEvents::addMissedGroup(const Entry& event) {
    if (m_settings.values()->m_xsiConfigured) {
        return;
    }
    auto details = detailsWithTextsOf<MissedEntryDetails>(event);
    details.timeSec = m_clock.getCurrentTimeSec();
    details.timeText = m_clock.getCurrentTime();
    details.timeFormat = Entry::eTimeIso8601;
    details.groupText = event.textF;
    details.lineKey = event.textE;
    m_entries.newMissedCallEntry(details);
}

void CallLogEvents::addReceived(const Entry& event) {
    m_entries.newReceivedCallEntry(detailsWithTextsOf<ReceivedEntryDetails>(event));
}

void CallLogEvents::addDialled(const Entry& event) {
    auto details = detailsOf<DialledEntryDetails>(event);
    details.dialledParty = event.subscriberNumber;
    m_entries.fileDialledCall(details);
}

// --- an entry deleted ---

std::string CallLogEvents::entryTimeOf(const Entry& event) const {
    return comparableTime(event.entryTime, event.entryTimeFormat, *m_settings.values());
}

void CallLogEvents::removeMissed(const Entry& event) {
    m_removal.removeMissedCallEntry(event.subscriberNumber, entryTimeOf(event));
}

void CallLogEvents::removeMissedGroup(const Entry& event) {
    m_removal.removeMissedGroupCallEntry(event.subscriberNumber, entryTimeOf(event));
}

void CallLogEvents::removeReceived(const Entry& event) {
    m_removal.removeReceivedCallEntry(event.subscriberNumber, entryTimeOf(event));
}

void CallLogEvents::removeDialled(const Entry& event) {
    m_removal.removeDialledCallEntry(event.subscriberNumber, entryTimeOf(event));
}

// --- a whole log deleted ---

// `ListDeletion` notifies the observers of a cleared dialled list only, since the client that clears another
// one knows it.

void CallLogEvents::clearMissed(const Entry& /*event*/) {
    ListTransaction transaction(m_lists);
    m_deletion.deleteMissedCallList();
    transaction.commit([](ObserverNotifierIfc& notifier) {
        notifier.updateMissedCallCountAndCalls(JournalServiceObserverIfc::eListCleared);
    });
}

void CallLogEvents::clearReceived(const Entry& /*event*/) {
    ListTransaction transaction(m_lists);
    m_deletion.deleteReceivedCallList();
    transaction.commit([](ObserverNotifierIfc& notifier) {
        notifier.updateReceivedCalls(JournalServiceObserverIfc::eListCleared);
    });
}

void CallLogEvents::clearDialled(const Entry& /*event*/) {
    m_deletion.deleteDialledCallList();
}

}  // namespace journal
