#include "host/stored-lists/PartyErasure.h"

#include <array>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/data/CallBackRows.h"
#include "host/journal-events/EventQueue.h"
#include "journal-items/Occurrences.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

// ?1 is the line, ?2 the number as numbers are compared.
constexpr const char* kOfRedirecting = R"sql(
SELECT DISTINCT list, item FROM call WHERE item IS NOT NULL AND line = ?1
    AND redirecting IN (SELECT id FROM party WHERE line = ?1 AND lookup = ?2)
)sql";

constexpr const char* kEraseRedirecting = R"sql(
UPDATE call SET redirecting = NULL
WHERE redirecting IN (SELECT id FROM party WHERE line = ?1 AND lookup = ?2)
)sql";

// The index has only the calls that reached another party.
constexpr const char* kEraseConnected = R"sql(
UPDATE call SET connected = NULL
WHERE connected <> party AND connected IN (SELECT id FROM party WHERE line = ?1 AND lookup = ?2)
)sql";

constexpr const char* kEraseConnectedParty = R"sql(
UPDATE call SET connected = NULL
WHERE connected = party AND party IN (SELECT id FROM party WHERE line = ?1 AND lookup = ?2)
)sql";

constexpr const char* kEraseNote = "DELETE FROM party_note WHERE line = ?1 AND number = ?2";

/// The columns of a call that hold a number as it was written, in any spelling.
constexpr std::array kNumberColumns{"connected_number", "forwarded_to_number", "substitute_number"};

template <typename Info>
void eraseIn(Info& info, const std::function<bool(const std::string&)>& matches) {
    if (matches(info.getRedirectingNumber())) {
        info.setRedirectingNumber({});
        info.setRedirectingName({});
    }
    if (matches(info.getConnectedNumber())) {
        info.setConnectedNumber({});
    }
    if constexpr (std::is_same_v<Info, DialledCallItem::DialledCallInfo>) {
        if (matches(info.getSubstituteNumber())) {
            info.setSubstituteNumber({});
        }
    } else if constexpr (std::is_same_v<Info, ForwardedCallItem::ForwardedCallInfo>) {
        if (matches(info.getForwardedToNumber())) {
            info.setForwardedToNumber({});
        }
    }
}

}  // namespace

std::string PartyErasure::lookupOf(std::string number) const {
    if (m_entries.sources().digits != nullptr) {
        m_entries.sources().digits->normalise(number);
    }
    return number;
}

/// Calls `action` with each column and each text in it that is a spelling of the number.
void PartyErasure::forEachText(
    Database::Session& session, const std::string& lookup,
    const std::function<void(const std::string&, const std::string&)>& action) const {
    for (const std::string column : kNumberColumns) {
        std::vector<std::string> texts;
        {
            std::string sql = "SELECT DISTINCT " + column;
            sql += " FROM call WHERE line = ? AND " + column;
            sql += " <> ''";
            Query query = session.query(sql.c_str());
            query.bind(m_entries.sources().line);
            while (query.next()) {
                texts.push_back(query.text());
            }
        }
        for (const std::string& text : texts) {
            if (lookupOf(text) == lookup) {
                action(column, text);
            }
        }
    }
}

bool PartyErasure::erase(const std::string& number) {
    const std::string lookup = lookupOf(number);
    return eraseFromEntries(lookup) && eraseRows(lookup) && eraseCallBacks(lookup);
}

bool PartyErasure::eraseFromEntries(const std::string& lookup) {
    const StoredEntries::Sources& sources = m_entries.sources();
    std::vector<std::pair<ListName, std::int64_t>> affected;
    if (!sources.database.readAside("finding entries", [&](Database::Session& session) {
            affected.clear();
            const auto add = [&affected](Query& query) {
                while (query.next()) {
                    const auto list = static_cast<ListName>(query.smallNumber());
                    affected.emplace_back(list, query.number());
                }
            };
            add(session.query(kOfRedirecting).bind(sources.line).bind(lookup));
            forEachText(session, lookup, [&](const std::string& column, const std::string& text) {
                add(session
                        .query(
                            ("SELECT DISTINCT list, item FROM call WHERE item IS NOT NULL AND line = ? AND " +
                             column + " = ?")
                                .c_str())
                        .bind(sources.line)
                        .bind(text));
            });
        })) {
        return false;
    }
    const auto matches = [&](const std::string& number) {
        return !number.empty() && lookupOf(number) == lookup;
    };
    for (const auto& [list, id] : affected) {
        const bool done = withItemOf(list, [&, id = id]<typename Item>() {
            if constexpr (std::is_same_v<Item, CallBackItem>) {
                return true;
            } else {
                return m_entries.change<Item>(id, false,
                                              [&](auto& /*session*/, auto& /*context*/, Item& item) {
                                                  auto occurrences = occurrencesOf(item);
                                                  for (auto& info : occurrences) {
                                                      eraseIn(info, matches);
                                                  }
                                                  const bool changes = !(occurrences == occurrencesOf(item));
                                                  setOccurrences(item, occurrences);
                                                  return changes;
                                              });
            }
        });
        if (!done) {
            return false;
        }
    }
    return true;
}

bool PartyErasure::eraseRows(const std::string& lookup) {
    const StoredEntries::Sources& sources = m_entries.sources();
    const bool done = sources.database.write("erasing a party", [&](Database::Session& session) {
        for (const char* const sql : {kEraseRedirecting, kEraseConnected, kEraseConnectedParty, kEraseNote}) {
            session.query(sql).bind(sources.line).bind(lookup).run();
        }
        forEachText(session, lookup, [&](const std::string& column, const std::string& text) {
            session
                .query(("UPDATE call SET " + column + " = '' WHERE line = ? AND " + column + " = ?").c_str())
                .bind(sources.line)
                .bind(text)
                .run();
        });
        eraseFromEvents(session, sources.line,
                        [&](const std::string& number) { return lookupOf(number) == lookup; });
        PartyRows(session, sources.line, sources.digits).removeUnused();
    });
    sources.database.truncateLog();
    return done;
}

bool PartyErasure::eraseCallBacks(const std::string& lookup) {
    const StoredEntries::Sources& sources = m_entries.sources();
    std::set<std::string> entryIds;
    if (!sources.database.readAside("reading the callbacks", [&](Database::Session& session) {
            entryIds.clear();
            for (const CallBackItem& item : CallBackRows(session, sources.line).all()) {
                if (lookupOf(item.getNumber()) == lookup) {
                    entryIds.insert(item.getEntryId());
                }
            }
        })) {
        return false;
    }
    return entryIds.empty() || m_entries.remove(ListName::eCallbacks, entryIds).has_value();
}

}  // namespace host
