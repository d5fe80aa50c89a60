#include "src/JournalServiceEvents/handlers/SystemStatusEvents.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/csta/CSTASystemEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/calls/Conferences.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"

namespace journal {

namespace {

constexpr std::array kResetStates = {
    communicationsServiceTexts::systemState_disabled,
    communicationsServiceTexts::systemState_partiallyDisabled,
    communicationsServiceTexts::systemState_reset,
    communicationsServiceTexts::systemState_stopped,
};

void logStatus(const CSTASystemStatusEvent& event) {
    const auto& feature = event.getSystemStatusFeatureData();
    LOG_EVENTS(5,
               "CSTASystemStatusEvent  EVENT\n"
               "          ********** Status ***************\n"
               "          systemStatus = %s\n"
               "          statusInfo   = %s\n"
               "          ********** FeatureData **********\n"
               "          featureName  = %s\n"
               "          Action       = %s\n"
               "          DeActivation = %s\n"
               "          Status       = %s\n"
               "          Availability = %s\n"
               "          ButtonID     = %s\n",
               event.getSystemStatus().c_str(), event.getSystemStatusInfo().c_str(),
               feature.featureName.c_str(), feature.action.c_str(), feature.deActivation.c_str(),
               feature.status.c_str(), feature.availability.c_str(), feature.buttonId.c_str());
}

}  // namespace

void SystemStatusEvents::handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) {
    LOG_EVENTS(4, "handleCSTASystemStatusEvent [%s]", event->toString().c_str());
    if (!m_callControl.acceptsEvents()) {
        return;
    }
    const CallMap::Section section(m_callControl.calls.m_callMapLock);
    logStatus(*event);
    const std::string& status = event->getSystemStatus();
    if (status == communicationsServiceTexts::systemState_cleanup) {
        if (m_callControl.calls.getNumberOfCalls() > 0) {
            LOG_EVENTS(2, "Calls are out of sync. with PBX, release all existing calls");
        }
        if (m_conferences.getNumberOfConferences() > 0) {
            LOG_EVENTS(2, "Conferences are out of sync. with PBX, release all existing conferences");
        }
        resynchronise();
    } else if (std::find(kResetStates.begin(), kResetStates.end(), status) != kResetStates.end()) {
        resynchronise();
    }
}

void SystemStatusEvents::resynchronise() {
    m_callControl.calls.removeAllCalls();
    m_conferences.removeAllConferences();
    if (m_callControl.settings.values()->m_useCSTACallControlEvents) {
        m_readiness.m_callLogEventsReady = false;
    }
}

}  // namespace journal
