#include "src/JournalService/JournalParts.h"

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/framework/Context.h"
#include "platform/framework/Service.h"
#include "platform/management/LocalMgmtIfc.h"

namespace journal {

namespace {

constexpr const char* kAgentIdentifier = "JournalMgmtId";
constexpr int kAgentVersion = 1;

}  // namespace

JournalParts::JournalParts(const Outside& outside)
    : notifier(outside.notifier),
      self(outside.self),
      gate(collaborators, settings),
      names(collaborators, settings, clock),
      mirror(adapter),
      requests(collaborators, settings),
      lists(settings, mirror, requests, notifier),
      loader(settings, adapter, lists),
      loadLists([this, loadCallLists = outside.loadLists] { loader.loadWith(loadCallLists); }),
      subscription(lists, loader, notifier, loadLists),
      forwardedMissed(clock, lists, mirror, notifier),
      loadAtFirstNeed([this] {
          if (!loader.hasLoaded()) {
              loadLists();
          }
      }),
      entries({settings, clock, names, lists, mirror, requests, notifier, forwardedMissed, loadAtFirstNeed}),
      completion(calls, settings, entries),
      tracker(calls, settings, clock, completion),
      callLogRemoval({settings, clock, lists, mirror, notifier, loadAtFirstNeed}),
      callLogEvents({calls, settings, clock, entries, callLogRemoval, lists, notifier}),
      privateEvents({calls, settings, gate, readiness, callLogEvents}),
      callControl{calls, tracker, settings, gate},
      blindTransfer(connectionCleared),
      connectionCleared(callControl, conferences, blindTransfer, privateEvents),
      qorvexRules(callControl, readiness, entries),
      sipRules(callControl, lineDevices, blindTransfer),
      callControlEvents(callControl, qorvexRules, sipRules),
      transferredEvents(callControl, blindTransfer, connectionCleared),
      callInformationEvents(callControl, entries, clock),
      conferenceEvents(callControl, conferences),
      callBackEvents({callControl, clock, names, lists, mirror, notifier, loadAtFirstNeed}),
      systemStatusEvents(callControl, conferences, readiness),
      monitors(collaborators, settings, outside.eventReceiver),
      lineDeviceEvents(collaborators, settings, monitors, lineDevices),
      management(collaborators, settings, monitors, readiness),
      ownSettings(settings, adapter, lists),
      refresh({collaborators, settings, ownSettings, management, lists, notifier}, loadLists),
      agent({settings, ownSettings, management, monitors, gate, lists, refresh,
             mirror.m_visitorCallLogSavePending}),
      visitorCallLog(collaborators, settings, management, mirror.m_visitorCallLogSavePending, outside.self) {}

void JournalParts::start(Context& context, MgmtAgentIfc& managementAgent, JournalServiceIfc& service) {
    collaborators.m_self = &self;
    collaborators.findAll(context);
    adapter.init(collaborators.m_dataAccessService);
    clock.adoptClock(collaborators.m_clockService);

    visitorCallLog.createFirstTimer();
    blindTransfer.start(context, self);

    // The notifier reads the lists through the service, so it gets it in any case; no software type is one, too.
    std::string softwareType;
    management.getUlmoValue("software-type", softwareType);
    settings.change([&softwareType](SettingValues& values) { values.m_softwareType = softwareType; });
    notifier.init(&service, softwareType);

    if (collaborators.m_cstaService != nullptr) {
        management.initEvents(managementAgent);
        if (!settings.values()->isSip()) {
            monitors.startQorvexEvents();
        }
        monitors.CSTASystemRegister();
    }
    ownSettings.readConfigItemsFromDB();
    settings.change([](SettingValues& values) { values.deriveEventModes(); });
    mirror.m_visitorCallLogSavePending = false;
    if (collaborators.m_localMgmt != nullptr) {
        collaborators.m_localMgmt->registerAgent(kAgentIdentifier, managementAgent, kAgentVersion);
    }
}

}  // namespace journal
