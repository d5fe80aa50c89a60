#include "src/JournalService/base/PhoneSettings.h"

#include "platform/texts/SoftwareTypes.h"

namespace journal {

bool SettingsSnapshot::isSip() const {
    return m_softwareType == softwaretypes::sip;
}

bool SettingsSnapshot::isQorvex() const {
    return m_softwareType == softwaretypes::qorvex;
}

void SettingsSnapshot::deriveEventModes() {
    m_useCSTACallControlEvents = m_systemIdentifier != 2;
    m_serverBasedCallLog = m_systemIdentifier == 2;
    m_enterMarkedMissedCall = m_systemIdentifier == 1;
}

}  // namespace journal
