#include "src/JournalServiceEvents/entries/PartyNames.h"

#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"

namespace journal {

bool PartyNames::contactIsInPhonebook(Contact& contact) const {
    const std::string searched = contact.getSearchNumber();
    auto* directory = m_platform.m_directoryService;
    if (directory == nullptr || !directory->lookUpContact(contact)) {
        LOG_EVENTS(5, "contactIsInPhonebook: searched[%s] NOT found", searched.c_str());
        return false;
    }
    LOG_EVENTS(5, "contactIsInPhonebook: searched[%s] found[%s]", searched.c_str(),
               contact.serialize().c_str());
    return true;
}

Contact PartyNames::contactOf(const std::string& number, const std::string& name) const {
    Contact contact;
    contact.setSearchNumber(number);
    const bool isNamed =
        contactIsInPhonebook(contact) && !(contact.getSurname().empty() && contact.getFirstname().empty());
    if (isNamed) {
        return contact;
    }
    populateContactSurname(contact, name, name);
    if (contact.getSurname().empty()) {
        contact.setSurname(name);
    }
    return contact;
}

std::string PartyNames::getPhoneNumberFromContact(const Contact& contact) const {
    std::string number;
    switch (contact.getMatchedKind()) {
        case Contact::MatchedKind::eOffice2: number = contact.getOffice2(); break;
        case Contact::MatchedKind::eOffice: number = contact.getOffice(); break;
        case Contact::MatchedKind::eMobile: number = contact.getMobile(); break;
        case Contact::MatchedKind::ePrivate: number = contact.getPrivate(); break;
        case Contact::MatchedKind::eNone: break;
    }
    LOG_EVENTS(5, "getPhoneNumberFromContact: numberFromDb[%s]", number.c_str());
    return number;
}

void PartyNames::populateItemNames(CallItem& item, const Contact& contact) const {
    LOG_EVENTS(5, "populateItemNames: surname[%s]->[%s] firstname[%s]->[%s]", item.getSurname().c_str(),
               contact.getSurname().c_str(), item.getFirstname().c_str(), contact.getFirstname().c_str());
    item.setSurname(contact.getSurname());
    item.setFirstname(contact.getFirstname());
}

void PartyNames::populateContactSurname(Contact& contact, const std::string& remoteName,
                                        const std::string& otherName) const {
    if (contact.getSearchNumber().empty()) {
        contact.setSurname(m_settings.values()->isSip() ? remoteName : otherName);
    }
}

void PartyNames::populateRemoteContactSurname(Contact& contact, const std::string& name,
                                              bool inDialledList) const {
    const bool named = m_settings.values()->isSip() ? !contact.getSurname().empty()
                                                    : inDialledList || !contact.getSurname().empty() ||
                                                          !contact.getFirstname().empty();
    if (!named) {
        contact.setSurname(name);
    }
}

void PartyNames::populateDialledCallItemWithPicture(const Contact& contact, CallItemWithPicture& item) const {
    if (!contact.getPicture().empty()) {
        item.setPictureClip(contact.getPicture());
    }
}

void PartyNames::populateDialledCallInfo(Contact& contact, DialledCallItem::DialledCallInfo& info,
                                         std::string dialledParty, std::string remoteParty) const {
    LOG_EVENTS(5, "populateDialledCallInfo: dialledParty[%s] remoteParty[%s]", dialledParty.c_str(),
               remoteParty.c_str());
    contact.setSearchNumber(remoteParty.empty() ? dialledParty : remoteParty);
    const std::string& searched = contact.getSearchNumber();
    if (contactIsInPhonebook(contact)) {
        const std::string number = getPhoneNumberFromContact(contact);
        if (!number.empty() && searched == remoteParty) {
            remoteParty = number;
        } else if (!number.empty() && searched == dialledParty) {
            dialledParty = number;
        }
    }
    populateContactSurname(contact, {}, {});
    populateDialledCallInfoNumber(info, dialledParty, remoteParty);
}

void PartyNames::populateDialledCallInfoNumber(DialledCallItem::DialledCallInfo& info,
                                               const std::string& dialled,
                                               const std::string& connected) const {
    if (m_settings.values()->isSip()) {
        info.setNumber(connected);
        info.setFeatureAccessCode(false);
        return;
    }
    info.setNumber(dialled);
    info.setFeatureAccessCode(isaFeatureAccessCode(dialled));
    if (info.getFeatureAccessCode() && connected != dialled) {
        info.setSubstituteNumber(connected);
    }
}

void PartyNames::populateInfoConnectedNumber(DialledCallItem::DialledCallInfo& info,
                                             const std::string& connected) const {
    if (!info.getFeatureAccessCode()) {
        return;
    }
    const std::string& number = connected.empty() ? info.getSubstituteNumber() : connected;
    if (!number.empty()) {
        info.setConnectedNumber(number);
    }
}

void PartyNames::populateDialledCallInfoTimeAndDate(DialledCallItem::DialledCallInfo& info,
                                                    const std::string& timeString, long durationStart,
                                                    long timeSec, long durationEnd) const {
    info.setTimeAndDate(timeSec == -1 ? timeString : m_clock.formatTimeDate(timeSec));
    if (durationStart != -1 && durationEnd != -1) {
        info.setDuration(JournalClock::formatDuration(durationStart, durationEnd));
    }
}

bool PartyNames::isaFeatureAccessCode(const std::string& number) const {
    auto* digits = m_platform.m_digitAnalysisService;
    return digits != nullptr && digits->isFeatureAccessCode(number);
}

}  // namespace journal
