#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "host/data/CallRows.h"
#include "host/data/ContactRows.h"
#include "host/database/Database.h"
#include "journal-items/ListTraits.h"

class DigitAnalysisServiceIfc;

namespace host {

class NumberTexts;

/// Reads stored entries of one line as JSON objects (`StoredLists`).
///
/// Use it inside one `Database::readAside` call. Every operation throws if the database fails.
class EntryReader {
public:
    using Json = nlohmann::ordered_json;

    /// All are borrowed. Without `digits` numbers are matched with contacts as they are written, without
    /// `texts` they are shown as they are stored.
    struct Source {
        const std::string& line;
        DigitAnalysisServiceIfc* digits = nullptr;
        NumberTexts* texts = nullptr;
    };
    EntryReader(Database::Session& session, const Source& source);

    /// The entry of a row; std::nullopt if the list has no such row.
    [[nodiscard]] std::optional<Json> entry(ListName list, std::int64_t id);
    /// The entry with that unique id or entry id; null if the list has none.
    [[nodiscard]] Json entryOf(ListName list, const std::string& id);
    [[nodiscard]] Json entry(const CallBackItem& item) const;

private:
    template <typename Item>
    [[nodiscard]] std::optional<Json> entryOfRow(std::int64_t id);
    [[nodiscard]] std::string contactName(const std::string& number);
    void writeNumberText(Json& json) const;
    void markApproximateEnds(std::int64_t id, Json& occurrences);

    Database::Session& m_session;
    NumberTexts* const m_texts;
    const HistoryRows::Context m_context;
    CallRows m_rows;
    ContactRows m_contacts;
    const bool m_hasContacts;
};

}  // namespace host
