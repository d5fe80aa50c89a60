#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "host/data/SqliteDataAccess.h"
#include "host/digits/DigitAnalysis.h"
#include "journal-items/ListTraits.h"
#include "journal-items/Occurrences.h"
#include "tests/support/ItemTexts.h"

namespace journaltest {

/// The journals of the lines "2001" and "3001" with one database. A script is a list of steps, separated by
/// ";"; steps of line "3001" begin with that number.
///
///     missed|dialled|received|forwarded NAME HOUR    writes an item with a call from NAME; options:
///         id=NAME|TEXT (its unique id), calls=NUMBER, entry=TEXT (the end of its entry id)
///     callback NAME HOUR            writes a callback; its entry id is the name
///     knows NAME NUMBER             adds a contact to the phonebook
///     read LIST [LIMIT [OFFSET]]    a list, "all" for the four lists together, or "contacts"
///     remove LIST KEY...            one request; a key is a NAME, or TEXT:NAME for another unique id
///     empty LIST
class DataAccessFixture {
public:
    /// The database is borrowed.
    explicit DataAccessFixture(host::Database& database) : m_database(database) {}

    /// Returns the result of the last step: the items that were read, "missed b a*2" for an item of b and an
    /// older one of a with two calls; or the name of the item whose unique id was returned, "new" for an id
    /// that no item had before; or "failed".
    std::string plays(const std::string& script);
    /// The lists of both lines, and a remark if there is an occurrence without an item.
    std::string contents();

    /// Sends items of line "2001" in one request; returns the response.
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

    /// An item with one call from `name`, which is also its surname.
    template <typename Item>
    static Item call(const std::string& name, const std::string& hour) {
        Item item;
        std::list<typename ListTraits<Item>::Info> occurrences(1);
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
    /// The name of the item whose unique id the response has.
    [[nodiscard]] std::string named(const std::string& response) const;

    host::Database& m_database;
    host::DigitAnalysis m_digits{"DE", {}};
    host::SqliteDataAccess m_access{m_database, "2001", &m_digits};
    host::SqliteDataAccess m_other{m_database, "3001", &m_digits};
    std::map<std::string, Ids> m_items;
    std::map<std::string, std::string> m_names;
};

template <typename Item>
std::string DataAccessFixture::writeTo(host::SqliteDataAccess& access, const std::vector<Item>& items) {
    using Helper = CallListDatabaseAdapterHelper;
    std::string body = Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST);
    for (const Item& item : items) {
        body += Helper::createXMLElement(Helper::ENTRY, ItemTexts<Item>::kBody(item, Helper::WRITEREQUEST));
    }
    return access.processRequest(Helper::addXMLHeaderFooter(body, ItemTexts<Item>::kTable));
}

}  // namespace journaltest
