#include "src/JournalService/StartUp.h"

#include <string>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/framework/Service.h"
#include "platform/management/LocalMgmtIfc.h"
#include "src/JournalService/JournalComponents.h"

namespace journal {

namespace {

constexpr const char* kAgentIdentifier = "JournalMgmtId";
constexpr int kAgentVersion = 1;

}  // namespace

void startUp(JournalComponents& components, Context& context, MgmtAgentIfc& agent,
             JournalServiceIfc& service) {
    PlatformServices& platform = components.platform;
    platform.findAll(context);
    components.adapter.init(platform.m_dataAccessService);
    components.clock.setClock(platform.m_clockService);

    components.visitorCallLog.createFirstTimer(components.phoneValues);
    components.blindTransfer.start(context, components.service);

    // The notifier reads the lists through the service, so it is initialised without a software type, too.
    std::string softwareType;
    components.phoneValues.getUlmoValue("software-type", softwareType);
    components.settings.change(
        [&softwareType](SettingsSnapshot& values) { values.m_softwareType = softwareType; });
    components.notifier.init(&service, softwareType);

    if (platform.m_cstaService != nullptr) {
        components.phoneValues.initEvents(agent);
        components.monitors.start();
    }
    components.journalSettings.readConfigItemsFromDB();
    components.settings.change([](SettingsSnapshot& values) { values.deriveEventModes(); });
    components.visitorCallLog.clearSavePending();
    if (platform.m_localMgmt != nullptr) {
        platform.m_localMgmt->registerAgent(kAgentIdentifier, agent, kAgentVersion);
    }
}

}  // namespace journal
