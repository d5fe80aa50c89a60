#include "src/JournalService/base/JournalPolicy.h"

#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"

namespace journal {

bool JournalPolicy::isUCServiceRunning() const {
    auto* service = m_platform.ucService();
    return service != nullptr && service->isRunning();
}

bool JournalPolicy::isPallaxServiceRunning() const {
    auto* service = m_platform.pallaxService();
    return service != nullptr && service->isRunning();
}

bool JournalPolicy::isWsiUcJournalAllowed() const {
    auto* service = m_platform.wsiService();
    const bool ucUser = service != nullptr && service->isCurrentUserUC();
    const bool allowed = m_settings.values()->m_wsiAllowUcJournal;
    LOG_EVENTS(5, "isWsiUcJournalAllowed(): current user UC '%s' wsi-allow-uc-journal '%s'",
               ucUser ? "Yes" : "No", allowed ? "allowed" : "disabled");
    return ucUser && allowed;
}

bool JournalPolicy::ownsCallLog() const {
    if (isUCServiceRunning()) {
        return false;
    }
    if (isWsiUcJournalAllowed() || m_settings.values()->m_ringCentralSyncCallLog) {
        return false;
    }
    return !isPallaxServiceRunning();
}

bool JournalPolicy::handleCSTAEvent() const {
    const bool result = ownsCallLog();
    LOG_EVENTS(6, "handleCSTAEvent() [%s]", result ? "true" : "false");
    return result;
}

bool JournalPolicy::acceptsEvents() const {
    const auto values = m_settings.values();
    return (!values->isSip() || values->m_callLogEnabled) && handleCSTAEvent();
}

}  // namespace journal
