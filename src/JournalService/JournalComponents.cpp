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
      lists(persistence, requests, notifier),
      queries(lists),
      deletion(settings, lists),
      replacement(settings, lists),
      missedCallUpdates(lists),
      loader(settings, adapter, lists, dependencies.loadLists),
      subscription(lists, loader, notifier),
      forwardedMissed(clock, lists),
      entries(settings, clock, names, lists, forwardedMissed),
      completion(calls, settings, entries),
      tracker(calls, settings, clock, completion),
      callLogRemoval(settings, clock, lists),
      callLogEvents(calls, settings, clock, entries, callLogRemoval, lists, deletion),
      privateEvents(calls, settings, policy, readiness, callLogEvents),
      callControl{.calls = calls, .tracker = tracker, .settings = settings, .policy = policy},
      connectionCleared(callControl, conferences, blindTransfer, privateEvents),
      qorvexRules(callControl, readiness, entries),
      sipRules(callControl, lineDevices, blindTransfer),
      callControlEvents(callControl, qorvexRules, sipRules),
      transferredEvents(callControl, blindTransfer, connectionCleared),
      callInformationEvents(callControl, entries, clock),
      conferenceEvents(callControl, conferences),
      callBackEvents(callControl, clock, names, lists),
      systemStatusEvents(callControl, conferences, readiness),
      monitors(platform, settings, &service, dependencies.eventReceiver),
      lineDeviceEvents(platform, settings, monitors, lineDevices),
      phoneValues(platform, settings, monitors, readiness),
      journalSettings(settings, adapter, deletion),
      refresh(platform, settings, journalSettings, phoneValues, lists, deletion, loader),
      managementAgent(settings, journalSettings, phoneValues, monitors, policy, deletion, refresh,
                      visitorCallLog) {
    lists.setSource(loader);
}

}  // namespace journal
