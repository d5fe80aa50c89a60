#pragma once

#include <string>
#include <type_traits>

#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/JournalClock.h"
#include "src/JournalServiceEvents/EntryCreation.h"
#include "src/JournalServiceEvents/ForwardedMissedRule.h"
#include "src/JournalServiceEvents/PartyNames.h"
#include "tests/journal-lists/JournalRig.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeDirectory.h"

namespace journaltest {

/// The far end of a call as the switch names it.
struct Party {
    std::string number;
    std::string name{};
};

template <typename Item>
struct DetailsFor;
template <>
struct DetailsFor<MissedCallItem> {
    using Type = journal::MissedEntryDetails;
};
template <>
struct DetailsFor<DialledCallItem> {
    using Type = journal::DialledEntryDetails;
};
template <>
struct DetailsFor<ReceivedCallItem> {
    using Type = journal::ReceivedEntryDetails;
};
template <>
struct DetailsFor<ForwardedCallItem> {
    using Type = journal::ForwardedEntryDetails;
};

/// The lists and the parts that file calls in them, on a Qorvex phone until a test says otherwise. The operations file
/// a finished call that began now; each call has the next number as its id, "1" first.
class EntryRig : public JournalRig {
public:
    EntryRig() {
        collaborators.m_directoryService = &phonebook;
        collaborators.m_digitAnalysisService = &digits;
        clock.adoptClock(&time);
        phoneIs(softwareTypes::qorvex);
    }

    template <typename Details>
    [[nodiscard]] Details callWith(const Party& party) {
        Details details;
        details.callId = std::to_string(++m_calls);
        details.remoteParty = party.number;
        details.remotePartyName = party.name;
        details.timeSec = time.getSeconds();
        if constexpr (std::is_same_v<Details, journal::DialledEntryDetails>) {
            details.dialledParty = party.number;
        }
        return details;
    }

    template <typename Details>
    bool file(const Details& details) {
        return file(entries, details);
    }
    static bool file(journal::EntryCreation& by, const journal::MissedEntryDetails& details) {
        return by.newMissedCallEntry(details);
    }
    static bool file(journal::EntryCreation& by, const journal::DialledEntryDetails& details) {
        return by.newDialledCallEntry(details);
    }
    static bool file(journal::EntryCreation& by, const journal::ReceivedEntryDetails& details) {
        return by.newReceivedCallEntry(details);
    }
    static bool file(journal::EntryCreation& by, const journal::ForwardedEntryDetails& details) {
        return by.newForwardedCallEntry(details);
    }

    /// A call of that list, from or to that party.
    template <typename Item>
    bool files(const Party& party) {
        return file(callWith<typename DetailsFor<Item>::Type>(party));
    }
    bool misses(const Party& party) { return files<MissedCallItem>(party); }
    bool receives(const Party& party) { return files<ReceivedCallItem>(party); }
    bool forwards(const Party& party) { return files<ForwardedCallItem>(party); }

    FakeClock time;
    FakeDirectory phonebook;
    FakeDigits digits;
    journal::JournalClock clock;
    journal::PartyNames names{collaborators, settings, clock};
    journal::ForwardedMissedRule rule{clock, lists, mirror, notifier};
    journal::EntryCreation entries{{settings, clock, names, lists, mirror, requests, notifier, rule, {}}};

private:
    int m_calls = 0;
};

}  // namespace journaltest
