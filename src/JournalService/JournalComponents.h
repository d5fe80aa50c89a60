#pragma once

#include <functional>

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalService/list-changes/EntryReplacement.h"
#include "src/JournalService/list-changes/ListDeletion.h"
#include "src/JournalService/list-changes/MissedCallUpdates.h"
#include "src/JournalService/lists/CallLogRequests.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListLoader.h"
#include "src/JournalService/lists/ListPersistence.h"
#include "src/JournalService/lists/ListQueries.h"
#include "src/JournalService/lists/Subscription.h"
#include "src/JournalServiceEvents/calls/CallCompletion.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/calls/CallTracker.h"
#include "src/JournalServiceEvents/calls/Conferences.h"
#include "src/JournalServiceEvents/calls/LineDevices.h"
#include "src/JournalServiceEvents/configuration/JournalRefresh.h"
#include "src/JournalServiceEvents/configuration/JournalSettings.h"
#include "src/JournalServiceEvents/configuration/ManagementAgent.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"
#include "src/JournalServiceEvents/configuration/VisitorCallLog.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/ForwardedMissedRule.h"
#include "src/JournalServiceEvents/entries/PartyNames.h"
#include "src/JournalServiceEvents/handlers/BlindTransfer.h"
#include "src/JournalServiceEvents/handlers/CallBackEvents.h"
#include "src/JournalServiceEvents/handlers/CallControlEvents.h"
#include "src/JournalServiceEvents/handlers/CallControlRulesQorvex.h"
#include "src/JournalServiceEvents/handlers/CallControlRulesSip.h"
#include "src/JournalServiceEvents/handlers/CallInformationEvents.h"
#include "src/JournalServiceEvents/handlers/ConferenceEvents.h"
#include "src/JournalServiceEvents/handlers/ConnectionClearedEvents.h"
#include "src/JournalServiceEvents/handlers/SystemStatusEvents.h"
#include "src/JournalServiceEvents/handlers/TransferredEvents.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"
#include "src/JournalServiceEvents/monitoring/LineDeviceEvents.h"
#include "src/JournalServiceEvents/switch-log/CallLogEvents.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"
#include "src/JournalServiceEvents/switch-log/CallLogRemoval.h"
#include "src/JournalServiceEvents/switch-log/PrivateEvents.h"

class CSTAEventIfc;
class ObserverNotifierIfc;
class Service;

namespace journal {

/// The composition root: all components of the journal as members in dependency order. A component refers to
/// components above it in this list only. `JournalService` owns one of these; a test can create one without
/// the facade. `startUp` (StartUp.h) connects the components to the platform.
///
/// Threads: each component documents its own.
struct JournalComponents {
    /// Everything that the components need from outside. All of it is borrowed and outlives them.
    struct Dependencies {
        ObserverNotifierIfc& notifier;
        /// The source of requests to the switch, and the owner of timers.
        Service& service;
        /// Receives the events of the journal's monitors.
        CSTAEventIfc& eventReceiver;
        /// The load method of the service variant: loads all lists.
        std::function<void()> loadLists;
    };

    explicit JournalComponents(const Dependencies& dependencies);
    JournalComponents(const JournalComponents&) = delete;
    JournalComponents& operator=(const JournalComponents&) = delete;
    ~JournalComponents() = default;

    ObserverNotifierIfc& notifier;
    Service& service;

    PhoneSettings settings;
    PlatformServices platform;
    JournalClock clock;
    JournalPolicy policy;
    PartyNames names;

    CallListDatabaseAdapter adapter;
    VisitorCallLog visitorCallLog;
    ListPersistence persistence;
    CallLogRequests requests;

    JournalLists lists;
    ListQueries queries;
    ListDeletion deletion;
    EntryReplacement replacement;
    MissedCallUpdates missedCallUpdates;
    ListLoader loader;
    Subscription subscription;

    ForwardedMissedRule forwardedMissed;
    EntryCreation entries;

    CallMap calls;
    CallCompletion completion;
    CallTracker tracker;
    Conferences conferences;
    LineDevices lineDevices;
    CallLogReadiness readiness;
    CallLogRemoval callLogRemoval;
    CallLogEvents callLogEvents;
    PrivateEvents privateEvents;

    CallControlContext callControl;
    BlindTransfer blindTransfer;
    ConnectionClearedEvents connectionCleared;
    CallControlRulesQorvex qorvexRules;
    CallControlRulesSip sipRules;
    CallControlEvents callControlEvents;
    TransferredEvents transferredEvents;
    CallInformationEvents callInformationEvents;
    ConferenceEvents conferenceEvents;
    CallBackEvents callBackEvents;
    SystemStatusEvents systemStatusEvents;

    CstaMonitors monitors;
    LineDeviceEvents lineDeviceEvents;
    PhoneValues phoneValues;
    JournalSettings journalSettings;
    JournalRefresh refresh;
    ManagementAgent managementAgent;
};

}  // namespace journal
