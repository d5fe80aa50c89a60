#pragma once

#include <string>

#include "src/JournalServiceEvents/entries/EntryDetails.h"

class Contact;

namespace journal {

class ForwardedMissedRule;
class JournalClock;
class JournalLists;
class PartyNames;
class PhoneSettings;

/// Files a finished call in its list. The sequence is the same for every list (`OccurrenceFiling`):
///  1. log the inputs and build the occurrence;
///  2. look the party up in the phonebook;
///  3. in one `ListTransaction`: find the party's item, ignore a call that is recorded already, merge the
///     occurrence into the item or create a new one, insert it at the front, write it to the database,
///     drop the oldest items beyond the limit;
///  4. report to a switch that keeps the log what the list has lost;
///  5. notify the observers.
///
/// Any thread may call; the caller may hold the call-map lock, no other lock.
class EntryCreation {
public:
    /// All references are borrowed and outlive this object.
    EntryCreation(const PhoneSettings& settings, const JournalClock& clock, const PartyNames& names,
                  JournalLists& lists, ForwardedMissedRule& forwardedMissed)
        : m_settings(settings),
          m_clock(clock),
          m_names(names),
          m_lists(lists),
          m_forwardedMissed(forwardedMissed) {}

    // Each returns true when the occurrence was filed, false when it was ignored.
    bool newMissedCallEntry(const MissedEntryDetails& details);
    bool newReceivedCallEntry(const ReceivedEntryDetails& details);
    bool newDialledCallEntry(const DialledEntryDetails& details);
    bool newForwardedCallEntry(const ForwardedEntryDetails& details);

    /// Calls `newDialledCallEntry`, which never shortens the list, and then limits the list to `kMaxItems`:
    /// deletes the oldest items in memory, in the database and in the log of a switch that keeps one. Use it
    /// for every finished dialled call.
    bool fileDialledCall(const DialledEntryDetails& details);

    /// Deletes the first missed entry of the party that an outgoing call has just reached, if there is one.
    /// The name matches a party that has no number or is not in the phonebook.
    void deleteMissedEntryOf(const std::string& calledParty, const std::string& calledPartyName);

private:
    /// Looks up the party of a received or a forwarded call and logs the inputs.
    [[nodiscard]] Contact lookUpParty(const char* logName, const EntryDetails& details) const;

    const PhoneSettings& m_settings;
    const JournalClock& m_clock;
    const PartyNames& m_names;
    JournalLists& m_lists;
    ForwardedMissedRule& m_forwardedMissed;
};

}  // namespace journal
