#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/data/PartyRows.h"
#include "host/database/Database.h"
#include "host/history/Call.h"

namespace host {

/// Adds calls of a file to the history, each without an entry.
///
/// A call is known if the history has one of the same call id and number that began in the same second;
/// without a call id, one of the same direction, number, start and duration. A conference has a call for each
/// party. Calls of one request with different ids, or of one call id in different lists, are different calls.
///
/// Use it inside one `Database::write` call. Every operation throws if the database fails.
class CallInsertion {
public:
    /// The ids of the calls that were added for one file: in the history, and in the file.
    using Added = std::map<std::int64_t, std::int64_t>;

    /// Everything is borrowed. `added` are the calls of the same file that were added before.
    CallInsertion(Database::Session& session, const std::string& line, DigitAnalysisServiceIfc* digits,
                  Added& added)
        : m_session(session), m_line(line), m_parties(session, line, digits), m_added(added) {}

    /// Adds the call and returns its id: the one in the file if no other call has it. std::nullopt if the
    /// call is known.
    [[nodiscard]] std::optional<std::int64_t> add(const Call& call);

    /// The greatest id that a call has had.
    [[nodiscard]] std::int64_t lastId();

private:
    /// The stored calls of the identity of `call`.
    struct Identity {
        bool isKnown = false;
        std::int64_t nextPart = 0;
    };
    [[nodiscard]] Identity identityOf(const Call& call);
    [[nodiscard]] std::optional<std::int64_t> freeId(std::int64_t id);
    [[nodiscard]] std::optional<std::int64_t> partyOf(const std::optional<Party>& party);

    Database::Session& m_session;
    const std::string& m_line;
    PartyRows m_parties;
    Added& m_added;
};

}  // namespace host
