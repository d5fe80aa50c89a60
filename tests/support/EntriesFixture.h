#pragma once

#include <string>
#include <type_traits>

#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/ForwardedMissedRule.h"
#include "src/JournalServiceEvents/entries/PartyNames.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeDirectory.h"
#include "tests/support/ListsFixture.h"

namespace journaltest {

/// The operation that files a call in a list.
template <typename DetailsType, bool (journal::EntryCreation::*operation)(const DetailsType&)>
struct FilingWith {
    using Details = DetailsType;
    static constexpr auto kFile = operation;
};
template <typename Item>
struct Filing;
template <>
struct Filing<MissedCallItem>
    : FilingWith<journal::MissedEntryDetails, &journal::EntryCreation::newMissedCallEntry> {};
template <>
struct Filing<DialledCallItem>
    : FilingWith<journal::DialledEntryDetails, &journal::EntryCreation::newDialledCallEntry> {};
template <>
struct Filing<ReceivedCallItem>
    : FilingWith<journal::ReceivedEntryDetails, &journal::EntryCreation::newReceivedCallEntry> {};
template <>
struct Filing<ForwardedCallItem>
    : FilingWith<journal::ForwardedEntryDetails, &journal::EntryCreation::newForwardedCallEntry> {};

/// The lists and the parts that file calls in them, on a Qorvex phone until a test says otherwise. The
/// operations file a finished call that began now; each call has the next number as its id, "1" first.
class EntriesFixture : public ListsFixture {
public:
    EntriesFixture() {
        platform.m_directoryService = &phonebook;
        platform.m_digitAnalysisService = &digits;
        clock.setClock(&time);
        phoneIs(softwaretypes::qorvex);
    }

    template <typename Item>
    [[nodiscard]] auto callFrom(const std::string& number, const std::string& name = {}) {
        typename Filing<Item>::Details details;
        details.callId = std::to_string(++m_calls);
        details.remoteParty = number;
        details.remotePartyName = name;
        details.timeSec = time.getSeconds();
        if constexpr (std::is_same_v<Item, DialledCallItem>) {
            details.dialledParty = number;
        }
        return details;
    }
    template <typename Item>
    bool file(const typename Filing<Item>::Details& details) {
        return (entries.*Filing<Item>::kFile)(details);
    }
    /// A call of that list, from or to that party.
    template <typename Item>
    bool files(const std::string& number, const std::string& name = {}) {
        return file<Item>(callFrom<Item>(number, name));
    }

    FakeClock time;
    FakeDirectory phonebook;
    FakeDigits digits;
    journal::JournalClock clock;
    journal::PartyNames names{platform, settings, clock};
    journal::ForwardedMissedRule rule{clock, lists};
    journal::EntryCreation entries{settings, clock, names, lists, rule};

private:
    int m_calls = 0;
};

}  // namespace journaltest
