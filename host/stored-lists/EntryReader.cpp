#include "host/stored-lists/EntryReader.h"

#include <algorithm>
#include <type_traits>

#include "host/data/CallBackRows.h"
#include "host/digits/NumberTexts.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace host {
namespace {

constexpr std::int64_t kShownCalls = CallItemWithPicture::kMaxOccurrences;

bool hasContacts(Database::Session& session, const std::string& line) {
    return session.query("SELECT 1 FROM contact WHERE line IN (?, '') LIMIT 1").bind(line).next();
}

}  // namespace

EntryReader::EntryReader(Database::Session& session, const Source& source)
    : m_session(session),
      m_texts(source.texts),
      m_context{source.line, source.digits},
      m_rows(session, m_context),
      m_contacts(session, source.line, source.digits),
      m_hasContacts(hasContacts(session, source.line)) {}

template <typename Item>
std::optional<EntryReader::Json> EntryReader::entryOfRow(std::int64_t id) {
    Item item;
    if (!m_rows.findWithNewest(id, item)) {
        return std::nullopt;
    }
    Json json = itemJson(item);
    Query calls = m_session.query("SELECT calls FROM call_item WHERE id = ?");
    json["calls"] = calls.bind(id).next() ? calls.number() : 0;
    const std::string contact = contactName(json["number"].get<std::string>());
    if (!contact.empty()) {
        json["displayName"] = contact;
    }
    writeNumberText(json);
    markApproximateEnds(id, json["occurrences"]);
    return json;
}

std::optional<EntryReader::Json> EntryReader::entry(ListName list, std::int64_t id) {
    return withItemOf(list, [&]<typename Item>() -> std::optional<Json> {
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            return std::nullopt;
        } else {
            return entryOfRow<Item>(id);
        }
    });
}

EntryReader::Json EntryReader::entryOf(ListName list, const std::string& id) {
    if (list == ListName::eCallbacks) {
        const auto all = CallBackRows(m_session, m_context.line).all();
        const auto one =
            std::find_if(all.begin(), all.end(), [&id](const auto& each) { return each.getEntryId() == id; });
        return one == all.end() ? Json() : entry(*one);
    }
    const auto row = m_rows.idOf(list, id);
    return row ? entry(list, *row).value_or(Json()) : Json();
}

EntryReader::Json EntryReader::entry(const CallBackItem& item) const {
    Json json = itemJson(item);
    writeNumberText(json);
    return json;
}

void EntryReader::writeNumberText(Json& json) const {
    if (m_texts != nullptr) {
        json["numberText"] = m_texts->text(json["number"].get<std::string>());
    }
}

std::string EntryReader::contactName(const std::string& number) {
    if (number.empty() || !m_hasContacts) {
        return {};
    }
    const auto match = m_contacts.lookUp(m_contacts.indexed(number));
    const std::optional<Contact> contact = match ? m_contacts.find(match->id) : std::nullopt;
    return contact ? fullName(contact->getFirstname(), contact->getSurname()) : std::string();
}

void EntryReader::markApproximateEnds(std::int64_t id, Json& occurrences) {
    Query rows =
        m_session.query("SELECT end_approximate FROM call WHERE item = ? ORDER BY item_order DESC LIMIT ?");
    rows.bind(id).bind(kShownCalls);
    for (auto each = occurrences.begin(); each != occurrences.end() && rows.next(); ++each) {
        (*each)["endApproximate"] = rows.flag();
    }
}

}  // namespace host
