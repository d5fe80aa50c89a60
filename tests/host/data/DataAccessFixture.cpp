#include "tests/host/data/DataAccessFixture.h"

#include <type_traits>

#include "host/data/ContactRows.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;

std::string schemaOf(const std::string& list) {
    if (const auto name = listNamed(list == "callback" ? "callbacks" : list)) {
        return withItemOf(*name, []<typename Item>() { return std::string(ListTraits<Item>::kTable); });
    }
    return list == "all" ? Helper::CONVERSATIONS_SCHEMA : Helper::CALLLOGPHONEBOOK_SCHEMA;
}

template <typename Item>
std::string textOf(const Item& item) {
    const std::size_t calls = occurrencesOf(item).size();
    return item.getSurname() + (calls == 1 ? "" : "*" + std::to_string(calls));
}
std::string textOf(const CallBackItem& item) {
    return item.getEntryId();
}
std::string textOf(const Contact& contact) {
    std::string text = contact.getSurname();
    for (const Contact::CallRecord& record : contact.getCallRecords()) {
        text += "/" + record.type + record.entryId.substr(11, 2);
    }
    return text;
}

template <typename Items>
void append(std::string& all, const char* title, const Items& items) {
    all += items.empty() || all.empty() ? "" : ", ";
    all += items.empty() ? "" : title;
    for (const auto& item : items) {
        all += ' ' + textOf(item);
    }
}

/// The content of a response, in the order of the lists.
std::string textOfResponse(const std::string& response) {
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
    std::string all;
    append(all, "missed", missed);
    append(all, "dialled", dialled);
    append(all, "received", received);
    append(all, "forwarded", forwarded);
    append(all, "callback", callBacks);
    append(all, "contacts", contacts);
    return all;
}

std::string request(const std::string& reason, const std::string& list, const std::string& body) {
    return Helper::addXMLHeaderFooter(Helper::createXMLField(Helper::REASONFORMESSAGE, reason) + body,
                                      schemaOf(list));
}

/// The value of an option such as "id=a".
std::string optionOf(const std::vector<std::string>& words, const std::string& name,
                     const std::string& otherwise) {
    for (const std::string& word : words) {
        if (word.rfind(name + '=', 0) == 0) {
            return word.substr(name.size() + 1);
        }
    }
    return otherwise;
}

}  // namespace

std::string DataAccessFixture::plays(const std::string& script) {
    std::string response;
    for (const std::string& step : split(script, ';')) {
        response = does(split(step, ' '));
    }
    return response;
}

std::string DataAccessFixture::contents() {
    std::string all;
    for (const std::string& line : {std::string(), std::string("3001 ")}) {
        for (const char* const list : {"missed", "dialled", "received", "forwarded", "callback"}) {
            const std::string texts = plays(line + "read " + list);
            all += texts.empty() ? "" : (all.empty() ? line : ", " + line) + texts;
        }
    }
    m_database.read("test", [&all](host::Database::Session& session) {
        host::Query query = session.query(
            "SELECT count(*) FROM occurrence WHERE item NOT IN (SELECT id FROM call_item) HAVING count(*) > "
            "0");
        all += query.next() ? ", and calls of no item" : "";
    });
    return all;
}

std::string DataAccessFixture::does(Words words) {
    host::SqliteDataAccess& access = words.at(0) == "3001" ? m_other : m_access;
    words.erase(words.begin(), words.begin() + (words.at(0) == "3001" ? 1 : 0));
    const std::string& verb = words.at(0);
    const std::string& list = words.at(1);
    if (verb == "read") {
        std::string fields = words.size() > 3 ? Helper::createXMLField(Helper::OFFSET, words[3]) : "";
        fields += words.size() > 2 ? Helper::createXMLField(Helper::ROWLIMIT, words[2]) : "";
        return textOfResponse(access.processRequest(request(Helper::READREQUEST, list, fields)));
    }
    if (verb == "remove" || verb == "empty") {
        const std::string body = verb == "empty" ? Helper::allEntries() : keysOf(words);
        return named(access.processRequest(request(Helper::DELETEREQUEST, list, body)));
    }
    return writes(access, words);
}

std::string DataAccessFixture::writes(host::SqliteDataAccess& access, const Words& words) {
    const std::string& verb = words.at(0);
    const std::string& name = words.at(1);
    if (verb == "knows") {
        Contact contact;
        contact.setSurname(name);
        contact.setMobile(words.at(2));
        m_database.write("test", [&](host::Database::Session& session) {
            host::ContactRows(session, &access == &m_other ? "3001" : "2001", &m_digits).insert(contact);
        });
        return {};
    }
    return withItemOf(listNamed(verb).value_or(ListName::eCallbacks), [&]<typename Item>() {
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            CallBackItem item;
            item.setEntryId(name);
            item.setTimeDate("2026-11-21T" + words.at(2) + ":00:00");
            return named(writeTo<CallBackItem>(access, {item}));
        } else {
            return writesCall<Item>(access, words);
        }
    });
}

template <typename Item>
std::string DataAccessFixture::writesCall(host::SqliteDataAccess& access, const Words& words) {
    const std::string& name = words.at(1);
    auto item = call<Item>(name, words.at(2));
    const std::string id = optionOf(words, "id", "");
    item.setUniqueId(m_items.contains(id) ? m_items[id].uniqueId : id);
    item.setEntryId(sortKeyOf(item) + optionOf(words, "entry", "0000002A"));
    auto occurrences = occurrencesOf(item);
    occurrences.resize(std::stoul(optionOf(words, "calls", "1")));
    setOccurrences(item, occurrences);

    const std::string response = writeTo<Item>(access, {item});
    std::string itsName = named(response);
    m_items[name] = {JournalServiceHelper::parseLastUniqueId(response), item.getEntryId()};
    m_names.emplace(m_items[name].uniqueId, name);
    return itsName;
}

std::string DataAccessFixture::keysOf(const Words& words) const {
    std::string entries;
    for (auto word = words.begin() + 2; word != words.end(); ++word) {
        const std::size_t colon = word->find(':');
        const std::string name = word->substr(colon + 1);  // the whole word if there is no colon
        const auto found = m_items.find(name);
        const Ids ids = found == m_items.end() ? Ids{"", name} : found->second;
        entries += Helper::createXMLElement(
            Helper::ENTRY,
            Helper::createXMLField(Helper::UNIQUEID,
                                   colon == std::string::npos ? ids.uniqueId : word->substr(0, colon)) +
                Helper::createXMLField(Helper::ENTRYID, ids.entryId));
    }
    return entries;
}

std::string DataAccessFixture::named(const std::string& response) const {
    if (response == Helper::FAILED) {
        return response;
    }
    const std::string id = JournalServiceHelper::parseLastUniqueId(response);
    const auto found = m_names.find(id);
    return id.empty() ? id : found == m_names.end() ? "new" : found->second;
}

}  // namespace journaltest
