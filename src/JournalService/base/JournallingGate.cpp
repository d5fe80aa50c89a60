#include "src/JournalService/base/JournallingGate.h"

#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"
#include "src/JournalService/base/Collaborators.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"

namespace journal {

bool JournallingGate::isUCServiceRunning() const {
    auto* service = m_collaborators.ucService();
    return service != nullptr && service->isRunning();
}

bool JournallingGate::isPallaxServiceRunning() const {
    auto* service = m_collaborators.pallaxService();
    return service != nullptr && service->isRunning();
}

bool JournallingGate::isWsiUcJournalAllowed() const {
    auto* service = m_collaborators.wsiService();
    const bool ucUser = service != nullptr && service->isCurrentUserUC();
    const bool allowed = m_settings.values()->m_wsiAllowUcJournal;
    LOG_EVENTS(5, "isWsiUcJournalAllowed(): current user UC '%s' wsi-allow-uc-journal '%s'",
               ucUser ? "Yes" : "No", allowed ? "allowed" : "disabled");
    return ucUser && allowed;
}

bool JournallingGate::isJournalOurs() const {
    if (isUCServiceRunning()) {
        return false;
    }
    if (isWsiUcJournalAllowed() || m_settings.values()->m_ringCentralSyncCallLog) {
        return false;
    }
    return !isPallaxServiceRunning();
}

bool JournallingGate::handleCSTAEvent() const {
    const bool result = isJournalOurs();
    LOG_EVENTS(6, "handleCSTAEvent() [%s]", result ? "true" : "false");
    return result;
}

}  // namespace journal
