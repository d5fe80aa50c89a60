#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "host/data/SqliteDataAccess.h"
#include "host/digits/DigitAnalysis.h"
#include "journal-items/Occurrences.h"
#include "tests/support/ItemTexts.h"

namespace journaltest {

/// The journals of the lines "2001" and "3001", which speak to one database in requests. What they ask for is a script: steps
/// stand between ";", and those of line "3001" begin with that number.
///
///     missed|dialled|received|forwarded NAME HOUR    writes an item with a call from NAME at that hour of one day; options:
///         id=NAME|TEXT (the unique id that it brings along), calls=NUMBER, entry=TEXT (the end of its entry id)
///     callback NAME HOUR            writes a call-back whose entry id is the name
///     knows NAME NUMBER             puts a contact into the phonebook
///     read LIST [LIMIT [OFFSET]]    a list, "all" for the four lists together, or "contacts"
///     remove LIST KEY...            in one request; a key is a NAME, whose ids are sent, or TEXT:NAME with another unique id
///     empty LIST
class Store {
public:
    /// The database is borrowed.
    explicit Store(host::Database& database) : m_database(database) {}

    /// Answers what the last step brought: what was read, "missed b a*2" for an item of b and an older one of a with two
    /// calls; the name of the item whose unique id was answered, or "new" for an id that no item had before; "failed".
    std::string plays(const std::string& script);
    /// Everything in the lists of both lines, and whether an occurrence is left over that belongs to no item.
    std::string contents();

    /// Sends items of line "2001" in one request; answers the whole answer.
    template <typename Item>
    std::string write(const std::vector<Item>& items) {
        return writeTo<Item>(m_access, items);
    }
    template <typename Item>
    std::deque<Item> read() {
        std::deque<Item> items;
        ItemTexts<Item>::kParseList(
            sends(CallListDatabaseAdapterHelper::readCallList(ItemTexts<Item>::kTable)), items);
        return items;
    }
    /// Sends any text as a request of line "2001".
    std::string sends(const std::string& request) { return m_access.processRequest(request); }
    [[nodiscard]] bool healthy() const { return m_access.healthy(); }

    /// An item with one call from `name`, which is its surname too.
    template <typename Item>
    static Item call(const std::string& name, const std::string& hour) {
        Item item;
        std::decay_t<decltype(occurrencesOf(item))> occurrences(1);
        occurrences.front().setNumber(name);
        occurrences.front().setTimeAndDate("2026-11-21T" + hour + ":00:00Z");
        setOccurrences(item, occurrences);
        item.setEntryId(sortKeyOf(item) + "0000002A");
        item.setSurname(name);
        return item;
    }

private:
    using Words = std::vector<std::string>;
    struct Ids {
        std::string uniqueId;
        std::string entryId;
    };

    template <typename Item>
    static std::string writeTo(host::SqliteDataAccess& access, const std::vector<Item>& items);
    template <typename Item>
    std::string writesCall(host::SqliteDataAccess& access, const Words& words);
    std::string writes(host::SqliteDataAccess& access, const Words& words);
    std::string does(Words words);
    [[nodiscard]] std::string keysOf(const Words& words) const;
    /// The name of the item whose unique id was answered.
    [[nodiscard]] std::string named(const std::string& answer) const;

    host::Database& m_database;
    host::DigitAnalysis m_digits{"DE", {}};
    host::SqliteDataAccess m_access{m_database, "2001", &m_digits};
    host::SqliteDataAccess m_other{m_database, "3001", &m_digits};
    std::map<std::string, Ids> m_items;
    std::map<std::string, std::string> m_names;
};

template <typename Item>
std::string Store::writeTo(host::SqliteDataAccess& access, const std::vector<Item>& items) {
    using Helper = CallListDatabaseAdapterHelper;
    std::string body = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST);
    for (const Item& item : items) {
        body += Helper::createXMLElement(Helper::ENTRY, ItemTexts<Item>::kBody(item, Helper::WRITEREQUEST));
    }
    return access.processRequest(Helper::addXMLHeaderFooter(body, ItemTexts<Item>::kTable));
}

}  // namespace journaltest
