#pragma once

#include <string>

#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"

namespace journal {

class PlatformServices;
class JournalClock;
class PhoneSettings;

/// Which names and numbers an entry shows: the phonebook's where the party is in it, else what the switch sent.
/// Any thread may call; the parts are borrowed and outlive this one.
class PartyNames {
public:
    PartyNames(const PlatformServices& platform, const PhoneSettings& settings, const JournalClock& clock)
        : m_platform(platform), m_settings(settings), m_clock(clock) {}

    /// Looks the contact's search number up; found, the phonebook has filled the contact in.
    [[nodiscard]] bool contactIsInPhonebook(Contact& contact) const;
    /// The contact of `number`: the phonebook's, or one that shows the name that the switch sent.
    [[nodiscard]] Contact contactOf(const std::string& number, const std::string& remoteName,
                                    const std::string& otherName) const;
    /// The number of the kind that the look-up matched; empty for none.
    [[nodiscard]] std::string getPhoneNumberFromContact(const Contact& contact) const;

    void populateItemNames(CallItem& item, const Contact& contact) const;
    /// A contact without a number takes the name that the software type prefers as its surname.
    void populateContactSurname(Contact& contact, const std::string& remoteName,
                                const std::string& otherName) const;
    /// A dialled party without a name takes `name`, unless the number has an entry already.
    void populateRemoteContactSurname(Contact& contact, const std::string& name, bool inDialledList) const;
    void populateDialledCallItemWithPicture(const Contact& contact, CallItemWithPicture& item) const;

    /// Fills in the numbers of a dialled occurrence and the contact that it belongs to.
    void populateDialledCallInfo(Contact& contact, DialledCallItem::DialledCallInfo& info,
                                 std::string dialledParty, std::string remoteParty) const;
    void populateDialledCallInfoNumber(DialledCallItem::DialledCallInfo& info, const std::string& dialled,
                                       const std::string& connected) const;
    void populateInfoConnectedNumber(DialledCallItem::DialledCallInfo& info,
                                     const std::string& connected) const;
    void populateDialledCallInfoTimeAndDate(DialledCallItem::DialledCallInfo& info,
                                            const std::string& timeString, long durationStart, long timeSec,
                                            long durationEnd) const;
    [[nodiscard]] bool isaFeatureAccessCode(const std::string& number) const;

private:
    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    const JournalClock& m_clock;
};

}  // namespace journal
