#include "host/stored-lists/EntryNames.h"

#include <type_traits>
#include <vector>

#include "host/data/ContactRows.h"
#include "journal-items/Occurrences.h"

namespace host {
namespace {

constexpr const char* kFiledName = R"sql(
SELECT name FROM call JOIN party ON party.id = call.party WHERE item = ? ORDER BY item_order DESC LIMIT 1
)sql";

struct Names {
    std::string firstName;
    std::string surname;
    std::string picture;

    [[nodiscard]] bool operator==(const Names&) const = default;
};

/// The names that an entry with that newest number has now.
Names namesOf(Database::Session& session, const HistoryRows::Context& context, std::int64_t item,
              const std::string& number) {
    ContactRows contacts(session, context.line, context.digits);
    const auto match = number.empty() ? std::nullopt : contacts.lookUp(contacts.indexed(number));
    if (const auto contact = match ? contacts.find(match->id) : std::nullopt) {
        return {contact->getFirstname(), contact->getSurname(), contact->getPicture()};
    }
    Query filed = session.query(kFiledName);
    return {{}, filed.bind(item).next() ? filed.text() : std::string(), {}};
}

/// True if the names differ in what is shown: a filed name is one text.
bool differ(const Names& before, const Names& after) {
    const auto shown = [](const Names& names) {
        const bool both = !names.firstName.empty() && !names.surname.empty();
        return names.firstName + (both ? " " : "") + names.surname;
    };
    return shown(before) != shown(after) || before.picture != after.picture;
}

}  // namespace

void EntryNames::refresh() {
    refreshList<MissedCallItem>();
    refreshList<DialledCallItem>();
    refreshList<ReceivedCallItem>();
    refreshList<ForwardedCallItem>();
}

template <typename Item>
void EntryNames::refreshList() {
    const StoredEntries::Sources& sources = m_entries.sources();
    std::vector<std::int64_t> ids;
    static_cast<void>(sources.database.readAside("reading a list", [&](Database::Session& session) {
        ids.clear();
        Query rows = session.query("SELECT id FROM call_item WHERE line = ? AND list = ?");
        rows.bind(sources.line).bind(static_cast<std::int32_t>(ListTraits<Item>::kList));
        while (rows.next()) {
            ids.push_back(rows.number());
        }
    }));
    for (const std::int64_t id : ids) {
        const auto rename = [id](Database::Session& session, const HistoryRows::Context& context,
                                 Item& item) {
            const auto& occurrences = occurrencesOf(item);
            const Names before{item.getFirstname(), item.getSurname(), item.getPictureClip()};
            if (occurrences.empty()) {
                return false;
            }
            const Names after = namesOf(session, context, id, occurrences.front().getNumber());
            if (!differ(before, after)) {
                return false;
            }
            item.setFirstname(after.firstName);
            item.setSurname(after.surname);
            item.setPictureClip(after.picture);
            return true;
        };
        static_cast<void>(m_entries.change<Item>(id, false, rename));
    }
}

}  // namespace host
