#pragma once

#include <optional>

#include "src/JournalServiceEvents/calls/FinishedCallsIfc.h"
#include "src/JournalServiceEvents/entries/EntryDetails.h"

namespace journal {

class CallMap;
class EntryCreation;
class PhoneSettings;

/// Decides which list gets the entry of a finished call, creates it through `EntryCreation` and removes the
/// record.
///
/// The decision is one table for each phone type (SIP or Qorvex): `kQorvexRules` and `kSipRules` in the
/// source. The first row that matches direction and state names the operation that files the call; a call
/// without a row is removed with a log text. A SIP call that is treated as incoming uses the incoming rows.
///
/// Requires: the call-map lock is held. The components are borrowed and outlive this one.
class CallCompletion final : public FinishedCallsIfc {
public:
    CallCompletion(CallMap& calls, const PhoneSettings& settings, EntryCreation& entries)
        : m_calls(calls), m_settings(settings), m_entries(entries) {}

    bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) override;
    /// Has no effect for a call without number and name, so that it cannot delete an anonymous entry.
    void findAndDeleteMissedEntryWhenCalled(Call* call) override;

    /// If the switch marks missed calls, a delivered call needs the mark to be saved; except a call on a
    /// Bluetooth telephone, which the switch does not have.
    [[nodiscard]] bool shouldSaveDeliveredCallAsMissed(const Call* call) const;

private:
    enum class CallDisposition { eRemoved, eKept };
    using EntryHandler = CallDisposition (CallCompletion::*)(const Call& call);

    struct Rule {
        Call::directions_t direction = Call::eDirectionUnknown;
        /// std::nullopt: any state but `eUnknown`.
        std::optional<Call::states_t> state{};
        EntryHandler file = nullptr;
    };

    static const Rule kQorvexRules[];
    static const Rule kSipRules[];

    [[nodiscard]] const Rule* ruleFor(const Call& call, Call::states_t state) const;

    // The operations of the rows. Those for one phone type only have its name.
    CallDisposition fileDialled(const Call& call);
    CallDisposition fileForwarded(const Call& call);

    CallDisposition fileQorvexDialledForwarded(const Call& call);
    CallDisposition fileQorvexDelivered(const Call& call);
    CallDisposition fileQorvexMissed(const Call& call);
    CallDisposition fileQorvexReceived(const Call& call);

    CallDisposition fileSipDialledForwarded(const Call& call);
    CallDisposition fileSipMissed(const Call& call);
    CallDisposition fileSipReceived(const Call& call);

    void newDialledEntry(const Call& call, CallLogEntryEvent::_LogTarget target);
    void newReceivedEntry(const Call& call);
    [[nodiscard]] static MissedEntryDetails missedDetails(const Call& call);
    [[nodiscard]] DialledEntryDetails dialledDetails(const Call& call,
                                                     CallLogEntryEvent::_LogTarget target) const;
    [[nodiscard]] bool showsFirstForwardedParty(const Call& call) const;

    CallMap& m_calls;
    const PhoneSettings& m_settings;
    EntryCreation& m_entries;
};

}  // namespace journal
