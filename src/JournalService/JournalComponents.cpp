#include "src/JournalService/JournalComponents.h"

#include "platform/framework/Service.h"

namespace journal {

JournalComponents::JournalComponents(const Dependencies& dependencies)
    : notifier(dependencies.notifier),
      service(dependencies.service),
      policy(platform, settings),
      names(platform, settings, clock),
      visitorCallLog(platform, settings, service),
      persistence(adapter, [this] { visitorCallLog.setSavePending(); }),
      requests(platform, settings, &service),
      lists(settings, persistence, requests, notifier),
      loader(settings, adapter, lists),
      loadLists([this, loadCallLists = dependencies.loadLists] { loader.loadWith(loadCallLists); }),
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
      privateEvents({calls, settings, policy, readiness, callLogEvents}),
      callControl{.calls = calls, .tracker = tracker, .settings = settings, .policy = policy},
      connectionCleared(callControl, conferences, blindTransfer, privateEvents),
      qorvexRules(callControl, readiness, entries),
      sipRules(callControl, lineDevices, blindTransfer),
      callControlEvents(callControl, qorvexRules, sipRules),
      transferredEvents(callControl, blindTransfer, connectionCleared),
      callInformationEvents(callControl, entries, clock),
      conferenceEvents(callControl, conferences),
      callBackEvents({callControl, clock, names, lists, persistence, notifier, loadAtFirstNeed}),
      systemStatusEvents(callControl, conferences, readiness),
      monitors(platform, settings, &service, dependencies.eventReceiver),
      lineDeviceEvents(platform, settings, monitors, lineDevices),
      phoneValues(platform, settings, monitors, readiness),
      journalSettings(settings, adapter, lists),
      refresh(platform, settings, journalSettings, phoneValues, lists, notifier, loadLists),
      managementAgent(settings, journalSettings, phoneValues, monitors, policy, lists, refresh,
                      visitorCallLog) {}

}  // namespace journal
