#pragma once

#include <deque>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "host/data/ContactRows.h"
#include "host/data/SqliteDataAccess.h"
#include "host/digits/DigitAnalysis.h"
#include "journal-items/ListTraits.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/ItemTexts.h"
#include "tests/support/Table.h"

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
    std::string plays(const std::string& script) {
        std::string response;
        for (const std::string& step : split(script, ';')) {
            response = does(split(step, ' '));
        }
        return response;
    }
    /// The lists of both lines.
    std::string contents() {
        std::string all;
        for (const std::string line : {"", "3001 "}) {
            for (const char* const list : {"missed", "dialled", "received", "forwarded", "callback"}) {
                const std::string texts = plays(line + "read " + list);
                all += texts.empty() ? "" : (all.empty() ? line : ", " + line) + texts;
            }
        }
        return all;
    }

    /// Sends items of line "2001" in one request; returns the response.
    template <typename Item>
    std::string write(const std::vector<Item>& items) {
        return write(m_access, items);
    }
    template <typename Item>
    std::deque<Item> read() {
        std::deque<Item> items;
        ItemTexts<Item>::kParseList(sends(Helper::readCallList(ItemTexts<Item>::kTable)), items);
        return items;
    }
    /// Sends any text as a request of line "2001".
    std::string sends(const std::string& request) { return m_access.processRequest(request); }
    [[nodiscard]] bool healthy() const { return m_access.healthy(); }

private:
    using Helper = CallListDatabaseAdapterHelper;

    template <typename Item>
    static std::string write(host::SqliteDataAccess& access, const std::vector<Item>& items) {
        std::string entries;
        for (const Item& item : items) {
            entries +=
                Helper::createXMLElement(Helper::ENTRY, ItemTexts<Item>::kBody(item, Helper::WRITEREQUEST));
        }
        return send(access, Helper::WRITEREQUEST, ItemTexts<Item>::kTable, entries);
    }
    static std::string send(host::SqliteDataAccess& access, const char* reason, const char* table,
                            const std::string& body) {
        return access.processRequest(Helper::addXMLHeaderFooter(
            Helper::createXMLField(Helper::REASONFORMESSAGE, reason) + body, table));
    }

    std::string does(Texts words) {
        const bool isOther = words.at(0) == "3001";
        words.erase(words.begin(), words.begin() + (isOther ? 1 : 0));
        host::SqliteDataAccess& access = isOther ? m_other : m_access;
        const std::string& verb = words.at(0);
        if (verb == "knows") {
            Contact contact;
            contact.setSurname(words.at(1));
            contact.setMobile(words.at(2));
            m_database.write("test", [&](host::Database::Session& session) {
                host::ContactRows(session, isOther ? "3001" : "2001", &m_digits).insert(contact);
            });
            return {};
        }
        const char* const table = tableOf(words.at(1));
        if (verb == "read") {
            std::string fields = words.size() > 3 ? Helper::createXMLField(Helper::OFFSET, words[3]) : "";
            fields += words.size() > 2 ? Helper::createXMLField(Helper::ROWLIMIT, words[2]) : "";
            return shown(send(access, Helper::READREQUEST, table, fields));
        }
        if (verb == "remove" || verb == "empty") {
            const std::string keys = verb == "empty" ? Helper::allEntries() : keysOf(words);
            return named(send(access, Helper::DELETEREQUEST, table, keys));
        }
        return withItemOf(listNamed(verb).value_or(ListName::eCallbacks),
                          [&]<typename Item>() { return writesItem<Item>(access, words); });
    }
    static const char* tableOf(const std::string& list) {
        if (const auto name = listNamed(list == "callback" ? "callbacks" : list)) {
            return withItemOf(*name, []<typename Item>() { return ListTraits<Item>::kTable; });
        }
        return list == "all" ? Helper::CONVERSATIONS_SCHEMA : Helper::CALLLOGPHONEBOOK_SCHEMA;
    }

    template <typename Item>
    std::string writesItem(host::SqliteDataAccess& access, const Texts& words) {
        const std::string& name = words.at(1);
        const std::string time = "2026-11-21T" + words.at(2) + ":00:00Z";
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            Item item;
            item.setEntryId(name);
            item.setTimeDate(time);
            return named(write<Item>(access, {item}));
        } else {
            std::map<std::string, std::string> options{{"calls", "1"}, {"entry", "0000002A"}};
            for (std::size_t at = 3; at < words.size(); ++at) {
                const auto option = split(words[at], '=');
                options[option.at(0)] = option.at(1);
            }
            const std::string& id = options["id"];
            auto item =
                itemOf<Item>(time + options["entry"], m_items.contains(id) ? m_items[id].getUniqueId() : id,
                             {std::stoul(options["calls"]), {name, time}});
            item.setSurname(name);
            const std::string response = write<Item>(access, {item});
            std::string itsName = named(response);
            item.setUniqueId(JournalServiceHelper::parseLastUniqueId(response));
            m_items[name] = itemOf<MissedCallItem>(item.getEntryId(), item.getUniqueId(), {});
            m_names.emplace(item.getUniqueId(), name);
            return itsName;
        }
    }
    std::string keysOf(const Texts& words) {
        std::string entries;
        for (auto word = words.begin() + 2; word != words.end(); ++word) {
            const Texts key = split(*word, ':');
            const bool isKnown = m_items.contains(key.back());
            const std::string uniqueId = isKnown ? m_items[key.back()].getUniqueId() : "";
            entries += Helper::createXMLElement(
                Helper::ENTRY,
                Helper::createXMLField(Helper::UNIQUEID, key.size() == 2 ? key[0] : uniqueId) +
                    Helper::createXMLField(Helper::ENTRYID,
                                           isKnown ? m_items[key.back()].getEntryId() : key.back()));
        }
        return entries;
    }
    /// The name of the item whose unique id the response has.
    [[nodiscard]] std::string named(const std::string& response) const {
        if (response == Helper::FAILED) {
            return response;
        }
        const std::string id = JournalServiceHelper::parseLastUniqueId(response);
        const auto found = m_names.find(id);
        return id.empty() ? id : found == m_names.end() ? "new" : found->second;
    }

    /// The content of a response, in the order of the lists.
    static std::string shown(const std::string& response) {
        if (response == Helper::FAILED) {
            return response;
        }
        std::deque<MissedCallItem> missed;
        std::deque<DialledCallItem> dialled;
        std::deque<ReceivedCallItem> received;
        std::deque<ForwardedCallItem> forwarded;
        std::vector<Contact> contacts;
        std::deque<CallBackItem> callBacks;
        JournalServiceHelper::parseXMLdata(response, missed, dialled, received, forwarded, contacts);
        JournalServiceHelper::parseXMLCallBackList(response, callBacks);
        return joined(
            {shown("missed", missed), shown("dialled", dialled), shown("received", received),
             shown("forwarded", forwarded), shown("callback", callBacks), shown("contacts", contacts)},
            ", ");
    }
    template <typename Items>
    static std::string shown(const char* title, const Items& items) {
        std::string text = items.empty() ? "" : title;
        for (const auto& item : items) {
            using Item = std::decay_t<decltype(item)>;
            text += " ";
            if constexpr (std::is_same_v<Item, CallBackItem>) {
                text += item.getEntryId();
            } else if constexpr (std::is_same_v<Item, Contact>) {
                text += item.getSurname();
                for (const Contact::CallRecord& record : item.getCallRecords()) {
                    text += "/" + record.type + record.entryId.substr(11, 2);
                }
            } else {
                const std::size_t calls = occurrencesOf(item).size();
                text += item.getSurname() + (calls == 1 ? "" : "*" + std::to_string(calls));
            }
        }
        return text;
    }

    host::Database& m_database;
    host::DigitAnalysis m_digits{"DE", {}};
    host::SqliteDataAccess m_access{m_database, "2001", &m_digits};
    host::SqliteDataAccess m_other{m_database, "3001", &m_digits};
    /// The unique id and the entry id of each item by its name.
    std::map<std::string, MissedCallItem> m_items;
    std::map<std::string, std::string> m_names;
};

}  // namespace journaltest
