#include "journalservice/JournalService.h"
#include "src/JournalService/JournalComponents.h"

// --- CSTAEventObserverBase ---

void JournalService::handleCSTAOriginatedEvent(CSTAOriginatedEvent* event) {
    m_components->callControlEvents.handleCSTAOriginatedEvent(event);
}

void JournalService::handleCSTAOfferedEvent(CSTAOfferedEvent* event) {
    m_components->callControlEvents.handleCSTAOfferedEvent(event);
}

void JournalService::handleCSTAQueuedEvent(CSTAQueuedEvent* event) {
    m_components->callControlEvents.handleCSTAQueuedEvent(event);
}

void JournalService::handleCSTADeliveredEvent(CSTADeliveredEvent* event) {
    m_components->callControlEvents.handleCSTADeliveredEvent(event);
}

void JournalService::handleCSTADivertedEvent(CSTADivertedEvent* event) {
    m_components->callControlEvents.handleCSTADivertedEvent(event);
}

void JournalService::handleCSTAEstablishedEvent(CSTAEstablishedEvent* event) {
    m_components->callControlEvents.handleCSTAEstablishedEvent(event);
}

void JournalService::handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) {
    m_components->connectionCleared.handleCSTAConnectionClearedEvent(event);
}

void JournalService::handleCSTAFailedEvent(CSTAFailedEvent* event) {
    m_components->callControlEvents.handleCSTAFailedEvent(event);
}

void JournalService::handleCSTAHookswitchEvent(CSTAHookswitchEvent* /*event*/) {}

void JournalService::handleCSTAConferencedEvent(CSTAConferencedEvent* event) {
    m_components->conferenceEvents.handleCSTAConferencedEvent(event);
}

void JournalService::handleCSTACallInformationEvent(CSTACallInformationEvent* event) {
    m_components->callInformationEvents.handleCSTACallInformationEvent(event);
}

void JournalService::handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) {
    m_components->systemStatusEvents.handleCSTASystemStatusEvent(event);
}

void JournalService::handleCSTAPrivateEvent(CSTAPrivateEvent* event) {
    m_components->privateEvents.handleCSTAPrivateEvent(event);
}

void JournalService::handleCSTATransferredEvent(CSTATransferredEvent* event) {
    m_components->transferredEvents.handleCSTATransferredEvent(event);
}

void JournalService::handleCSTACallBackEvent(CSTACallBackEvent* event) {
    m_components->callBackEvents.handleCSTACallBackEvent(event);
}

void JournalService::handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* event) {
    m_components->lineDeviceEvents.handleCSTASwitchingFunctionDevices(event);
}

void JournalService::handleCSTAConferenceMembershipEvent(CSTAConferenceMembershipEvent* event) {
    m_components->conferenceEvents.handleCSTAConferenceMembershipEvent(event);
}

void JournalService::handleCSTAHeldEvent(CSTAHeldEvent* event) {
    m_components->blindTransfer.handleCSTAHeldEvent(*event);
}

void JournalService::handleCSTARetrievedEvent(CSTARetrievedEvent* event) {
    m_components->callControlEvents.handleCSTARetrievedEvent(event);
}
