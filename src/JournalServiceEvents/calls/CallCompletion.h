#pragma once

#include <optional>

#include "src/JournalServiceEvents/calls/FinishedCallsIfc.h"
#include "src/JournalServiceEvents/entries/EntryDetails.h"

namespace journal {

class CallMap;
class EntryCreation;
class PhoneSettings;

/// Decides which list a finished call goes to, hands it to `EntryCreation` and removes its record.
///
/// The decision is a table for each flavour, `kQorvexRules` and `kSipRules` in the source: the first row that
/// fits direction and state names the filing, and a call that no row fits is dropped with a log line. A SIP
/// call that is to be treated as incoming goes through the incoming rows.
///
/// Threads: every operation is called with the call-map lock held. The parts are borrowed and outlive this one.
class CallCompletion final : public FinishedCallsIfc {
public:
    CallCompletion(CallMap& calls, const PhoneSettings& settings, EntryCreation& entries)
        : m_calls(calls), m_settings(settings), m_entries(entries) {}

    bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) override;
    /// A call without any number or name settles nothing, so that it cannot take an anonymous entry away.
    void findAndDeleteMissedEntryWhenCalled(Call* call) override;

    /// Where the switch marks missed calls, a delivered call waits for the mark; only a call on a Bluetooth telephone,
    /// which the switch does not know, is saved at once.
    [[nodiscard]] bool shouldSaveDeliveredCallAsMissed(const Call* call) const;

private:
    enum class Record { eRemoved, eKept };
    using Filing = Record (CallCompletion::*)(const Call& call);

    struct Rule {
        Call::directions_t direction = Call::eDirectionUnknown;
        /// Nothing: any state but `eUnknown`.
        std::optional<Call::states_t> state{};
        Filing file = nullptr;
    };

    static const Rule kQorvexRules[];
    static const Rule kSipRules[];

    [[nodiscard]] const Rule* ruleFor(const Call& call, Call::states_t state) const;

    // What the rows say. Those of one flavour only stand under its name.
    Record fileDialled(const Call& call);
    Record fileForwarded(const Call& call);

    Record fileQorvexDialledForwarded(const Call& call);
    Record fileQorvexDelivered(const Call& call);
    Record fileQorvexMissed(const Call& call);
    Record fileQorvexReceived(const Call& call);

    Record fileSipDialledForwarded(const Call& call);
    Record fileSipMissed(const Call& call);
    Record fileSipReceived(const Call& call);

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
