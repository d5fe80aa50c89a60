#pragma once

#include <deque>
#include <string>
#include <vector>

#include "host/data/SqliteDataAccess.h"
#include "journal-items/Occurrences.h"
#include "tests/support/ItemTexts.h"

namespace journaltest {

/// An item with one call from `number` at `time` ("05:22:05" of one day).
template <typename Item>
Item call(const std::string& number, const std::string& time) {
    Item item;
    auto occurrences = occurrencesOf(item);
    auto& occurrence = occurrences.emplace_back();
    occurrence.setNumber(number);
    occurrence.setTimeAndDate("2026-11-21T" + time + "Z");
    setOccurrences(item, occurrences);
    item.setEntryId(occurrence.getTimeAndDate() + "0000002A");
    item.setSurname(number);
    return item;
}

inline CallBackItem callBack(const std::string& entryId, const std::string& time) {
    return {entryId,
            "Ada",
            "Miller",
            "4711",
            NumberType::NT::eOffice,
            "2026-11-21T" + time,
            CallBackItem::CallBackType::eOnBusy,
            CallBackItem::CallBackState::eRequested,
            "2001"};
}

/// The journal's side of the data access: speaks in requests as the journal does.
class Client {
public:
    explicit Client(host::SqliteDataAccess& access) : m_access(access) {}

    /// Sends the items in one request; answers the whole answer.
    template <typename Item>
    std::string write(const std::vector<Item>& items) {
        return change<Item>(items, CallListDatabaseAdapterHelper::WRITEREQUEST);
    }
    /// Writes one item; answers the unique id, or "failed".
    template <typename Item>
    std::string writeOne(const Item& item) {
        const std::string answer = write<Item>({item});
        return answer == "failed" ? answer : JournalServiceHelper::parseLastUniqueId(answer);
    }
    /// Writes one item and gives it the unique id that the database answered, as the journal does.
    template <typename Item>
    void file(Item& item) {
        item.setUniqueId(writeOne(item));
    }
    template <typename Item>
    std::string remove(const std::vector<Item>& items) {
        return change<Item>(items, CallListDatabaseAdapterHelper::DELETEREQUEST);
    }
    template <typename Item>
    std::string removeAll() {
        return send(CallListDatabaseAdapterHelper::DELETEREQUEST, CallListDatabaseAdapterHelper::allEntries(),
                    ItemTexts<Item>::kTable);
    }
    /// A list as the database gives it.
    template <typename Item>
    std::deque<Item> read(unsigned rows = CallListDatabaseAdapterHelper::kListRows) {
        std::deque<Item> items;
        ItemTexts<Item>::kParseList(m_access.processRequest(CallListDatabaseAdapterHelper::readCallList(
                                        ItemTexts<Item>::kTable, rows)),
                                    items);
        return items;
    }
    std::string send(const std::string& reason, const std::string& body, const std::string& schema) {
        using Words = CallListDatabaseAdapterHelper;
        return m_access.processRequest(
            Words::addXMLHeaderFooter(Words::createXMLField(Words::REASONFORMESSAGE, reason) + body, schema));
    }

private:
    template <typename Item>
    std::string change(const std::vector<Item>& items, const char* reason) {
        std::string entries;
        for (const Item& item : items) {
            entries += CallListDatabaseAdapterHelper::createXMLElement(CallListDatabaseAdapterHelper::ENTRY,
                                                                       ItemTexts<Item>::kBody(item, reason));
        }
        return send(reason, entries, ItemTexts<Item>::kTable);
    }

    host::SqliteDataAccess& m_access;
};

/// The surnames of a list, in order.
template <typename Item>
std::vector<std::string> surnames(const std::deque<Item>& items) {
    std::vector<std::string> names;
    for (const Item& item : items) {
        names.push_back(item.getSurname());
    }
    return names;
}

}  // namespace journaltest
