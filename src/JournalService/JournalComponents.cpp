#include "src/JournalService/JournalComponents.h"

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/framework/Context.h"
#include "platform/framework/Service.h"
#include "platform/management/LocalMgmtIfc.h"

namespace journal {

namespace {

constexpr const char* kAgentIdentifier = "JournalMgmtId";
constexpr int kAgentVersion = 1;

}  // namespace

JournalComponents::JournalComponents(const Outside& outside)
    : notifier(outside.notifier),
      self(outside.self),
      gate(platform, settings),
      names(platform, settings, clock),
      persistence(adapter),
      requests(platform, settings),
      lists(settings, persistence, requests, notifier),
      loader(settings, adapter, lists),
      loadLists([this, loadCallLists = outside.loadLists] { loader.loadWith(loadCallLists); }),
      subscription(lists, loader, notifier, loadLists),
      forwardedMissed(clock, lists, persistence, notifier),
      loadAtFirstNeed([this] {
          if (!loader.hasLoaded()) {
              loadLists();
          }
      }),
      entries(
          {settings, clock, names, lists, persistence, requests, notifier, forwardedMissed, loadAtFirstNeed}),
      completion(calls, settings, entries),
      tracker(calls, settings, clock, completion),
      callLogRemoval({settings, clock, lists, persistence, notifier, loadAtFirstNeed}),
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
      callBackEvents({callControl, clock, names, lists, persistence, notifier, loadAtFirstNeed}),
      systemStatusEvents(callControl, conferences, readiness),
      monitors(platform, settings, outside.eventReceiver),
      lineDeviceEvents(platform, settings, monitors, lineDevices),
      management(platform, settings, monitors, readiness),
      ownSettings(settings, adapter, lists),
      refresh({platform, settings, ownSettings, management, lists, notifier}, loadLists),
      agent({settings, ownSettings, management, monitors, gate, lists, refresh,
             persistence.m_visitorCallLogSavePending}),
      visitorCallLog(platform, settings, management, persistence.m_visitorCallLogSavePending, outside.self) {}

void JournalComponents::start(Context& context, MgmtAgentIfc& managementAgent, JournalServiceIfc& service) {
    platform.m_self = &self;
    platform.findAll(context);
    adapter.init(platform.m_dataAccessService);
    clock.adoptClock(platform.m_clockService);

    visitorCallLog.createFirstTimer();
    blindTransfer.start(context, self);

    // The notifier reads the lists through the service, so it gets it in any case; no software type is one, too.
    std::string softwareType;
    management.getUlmoValue("software-type", softwareType);
    settings.change([&softwareType](SettingsSnapshot& values) { values.m_softwareType = softwareType; });
    notifier.init(&service, softwareType);

    if (platform.m_cstaService != nullptr) {
        management.initEvents(managementAgent);
        if (!settings.values()->isSip()) {
            monitors.startQorvexEvents();
        }
        monitors.CSTASystemRegister();
    }
    ownSettings.readConfigItemsFromDB();
    settings.change([](SettingsSnapshot& values) { values.deriveEventModes(); });
    persistence.m_visitorCallLogSavePending = false;
    if (platform.m_localMgmt != nullptr) {
        platform.m_localMgmt->registerAgent(kAgentIdentifier, managementAgent, kAgentVersion);
    }
}

}  // namespace journal
