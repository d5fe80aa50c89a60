#pragma once

#include <functional>

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalService/lists/CallLogRequests.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListLoader.h"
#include "src/JournalService/lists/ListPersistence.h"
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

class Context;
class CSTAEventIfc;
class JournalServiceIfc;
class MgmtAgentIfc;
class ObserverNotifierIfc;
class Service;

namespace journal {

/// Every part of the journal, made in dependency order: a part knows those above it in this list and none below; only
/// `blindTransfer` is given the rules of cleared connections, which are made after it, by reference. The face owns one of
/// these; a test may, without the face.
struct JournalComponents {
    /// What the parts need from outside; all of it is borrowed and outlives them.
    struct Outside {
        ObserverNotifierIfc& notifier;
        /// The journal as the source of requests to the switch, and as the owner of timers.
        Service& self;
        /// Gets the events of the journal's monitors.
        CSTAEventIfc& eventReceiver;
        /// Loads all lists in the way of the service variant.
        std::function<void()> loadLists;
    };

    explicit JournalComponents(const Outside& outside);
    JournalComponents(const JournalComponents&) = delete;
    JournalComponents& operator=(const JournalComponents&) = delete;
    ~JournalComponents() = default;

    /// Start-up, once, on the line's strand: finds the services, makes the timers, reads the settings, starts the
    /// monitor of the own line. What fails is logged, and the rest goes on.
    void start(Context& context, MgmtAgentIfc& agent, JournalServiceIfc& service);

    ObserverNotifierIfc& notifier;
    Service& self;

    PhoneSettings settings;
    PlatformServices platform;
    JournalClock clock;
    JournalPolicy gate;
    PartyNames names;

    CallListDatabaseAdapter adapter;
    ListPersistence persistence;
    CallLogRequests requests;

    JournalLists lists;
    ListLoader loader;
    /// Loads the lists in the way of the service variant, with everything that belongs to a load.
    std::function<void()> loadLists;
    Subscription subscription;

    ForwardedMissedRule forwardedMissed;
    /// Loads the lists unless they were loaded once.
    std::function<void()> loadAtFirstNeed;
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
    PhoneValues management;
    JournalSettings ownSettings;
    JournalRefresh refresh;
    ManagementAgent agent;
    VisitorCallLog visitorCallLog;
};

}  // namespace journal
