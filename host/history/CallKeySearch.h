#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/database/Database.h"
#include "host/history/CallFilter.h"
#include "host/history/CallKey.h"
#include "host/history/CallSelection.h"

namespace host {

/// Finds the calls of one page by their keys. Its time does not grow with the history: each page is read from
/// ranges of the indexes that have the calls in their order ("streams"), and merged.
///
///  1. `search` and `number` select parties first; there are far fewer of them than calls.
///  2. Few parties: one stream for each party. Many: the calls in the order of time, until the page is full;
///     if it is not full after many calls, one stream for each party.
///  3. Without parties: one stream for each list that the filter allows. Unviewed calls are found by their
///     entries.
///  4. The conditions that no index has are tested for each call of a stream.
///
/// Use it inside one `Database::read`. Every operation throws if the database fails.
class CallKeySearch {
public:
    /// Everything is borrowed. Without `digits` numbers are compared as they are written. Requires: the
    /// cursor of the query is empty or readable.
    CallKeySearch(Database::Session& session, const std::string& line, const CallQuery& query,
                  DigitAnalysisServiceIfc* digits);

    /// The keys of the page in its order, and of one call more if there is a further page.
    [[nodiscard]] std::vector<CallKey> find();

private:
    using Keys = std::vector<CallKey>;
    enum class Index { eList, eParty };
    struct Stream {
        Index index;
        /// The list or the party.
        std::int64_t of;
    };

    [[nodiscard]] std::vector<Stream> streamsOfLists() const;
    /// The parties that the filter selects, sorted.
    [[nodiscard]] std::vector<std::int64_t> parties();
    [[nodiscard]] bool hasFewUnviewed();
    [[nodiscard]] Keys ofUnviewedEntries();
    [[nodiscard]] Keys ofParties(const std::vector<std::int64_t>& parties);
    /// Tests calls in the order of time; false if the page was not full after many.
    [[nodiscard]] bool scan(const std::vector<std::int64_t>& parties, Keys& keys);
    [[nodiscard]] Keys merge(const std::vector<Stream>& streams);
    [[nodiscard]] Keys read(const Stream& stream, std::size_t limit);
    /// True if the first key comes earlier on the page.
    [[nodiscard]] bool precedes(const CallKey& first, const CallKey& second) const {
        return m_oldestFirst ? first < second : second < first;
    }
    /// The condition of the searched range, with the values of `bindRange`.
    [[nodiscard]] static const char* range() noexcept;
    /// The order of rows whose first columns are the start and the id.
    [[nodiscard]] const char* order() const noexcept;
    void bindRange(Query& query) const;

    Database::Session& m_session;
    const std::string& m_line;
    const CallFilter& m_filter;
    const bool m_oldestFirst;
    const std::size_t m_wanted;
    // Empty if the filter has no such conditions.
    const CallSelection m_parties;
    const CallSelection m_kind;
    /// The range that is still searched, both exclusive.
    CallKey m_lower;
    CallKey m_upper;
};

}  // namespace host
