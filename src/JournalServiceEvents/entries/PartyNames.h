#pragma once

#include <string>

#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"

namespace journal {

class PlatformServices;
class JournalClock;
class PhoneSettings;

/// The names and numbers that an entry shows: those of the phonebook where the party is in it, else those
/// that the switch sent. Thread-safe. All references are borrowed and outlive this object.
class PartyNames {
public:
    PartyNames(const PlatformServices& platform, const PhoneSettings& settings, const JournalClock& clock)
        : m_platform(platform), m_settings(settings), m_clock(clock) {}

    /// Looks up the contact's search number. When it returns true, the phonebook has filled the contact in.
    [[nodiscard]] bool contactIsInPhonebook(Contact& contact) const;
    /// The contact of `number`: the phonebook's, or one with the name that the switch sent.
    [[nodiscard]] Contact contactOf(const std::string& number, const std::string& name) const;
    /// The number of the kind that the look-up matched; an empty string when it matched none.
    [[nodiscard]] std::string getPhoneNumberFromContact(const Contact& contact) const;

    void populateItemNames(CallItem& item, const Contact& contact) const;
    /// Sets the surname of a contact without a number: `remoteName` on a SIP phone, else `otherName`.
    void populateContactSurname(Contact& contact, const std::string& remoteName,
                                const std::string& otherName) const;
    /// Sets `name` as the surname if the contact has none, unless the dialled number has an entry already.
    void populateRemoteContactSurname(Contact& contact, const std::string& name, bool inDialledList) const;
    void populateDialledCallItemWithPicture(const Contact& contact, CallItemWithPicture& item) const;

    /// Fills in the numbers of a dialled occurrence and the contact of its party.
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
