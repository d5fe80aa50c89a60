#include "tests/reliability/database/DatabaseWork.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <functional>
#include <iterator>
#include <utility>

#include "host/call-import/CallInsertion.h"
#include "journal-items/ListTraits.h"
#include "platform/journal-library/DataResponse.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/ItemTexts.h"

namespace reliability {
namespace {

using Requests = CallListDatabaseAdapterHelper;
using journaltest::ItemTexts;

constexpr const char* kLine = "2001";
constexpr int kLists = 4;

template <typename Item>
std::string entryOf(const Item& item) {
    return Requests::createXMLElement(Requests::ENTRY, ItemTexts<Item>::kBody(item, Requests::WRITEREQUEST));
}

std::string keyOf(const std::string& uniqueId, const std::string& entryId) {
    return Requests::createXMLElement(Requests::ENTRY,
                                      Requests::createXMLField(Requests::UNIQUEID, uniqueId) +
                                          Requests::createXMLField(Requests::ENTRYID, entryId));
}

template <typename Entries>
auto pickOf(const Entries& entries, Dice& dice) {
    return std::next(entries.begin(), static_cast<std::ptrdiff_t>(dice.below(entries.size())));
}

/// The number of a call; every 25 have the same party, whose entries are still different ones.
std::string newNumber(Dice& dice) {
    return std::to_string(40000 + dice.below(25));
}

}  // namespace

DatabaseWork::DatabaseWork(std::shared_ptr<SimulatedDisk> disk, const std::filesystem::path& file)
    : m_disk((SimulatedDisk::use(disk), std::move(disk))),
      m_database(file, host::Database::Options{std::chrono::milliseconds(0)}),
      m_access(m_database, kLine, &m_digits) {}

DatabaseWork::~DatabaseWork() = default;

std::string DatabaseWork::send(const char* reason, const char* table, const std::string& body) {
    return m_access.processRequest(Requests::addXMLHeaderFooter(
        Requests::createXMLField(Requests::REASONFORMESSAGE, reason) + body, table));
}

std::string DatabaseWork::newTime() {
    ++m_clock;
    char text[32];
    std::snprintf(text, sizeof(text), "2026-11-21T%02d:%02d:%02dZ", m_clock / 3600 % 24, m_clock / 60 % 60,
                  m_clock % 60);
    return text;
}

template <typename Item>
std::string DatabaseWork::file(Dice& dice, const std::string& uniqueId) {
    const std::string time = newTime();
    std::vector<journaltest::Occurrence> calls{{newNumber(dice), time}};
    if (const auto former = m_model.entries.find(uniqueId); former != m_model.entries.end()) {
        const auto& numbers = former->second.numbers;
        for (std::size_t at = 0; at < std::min<std::size_t>(numbers.size(), 9); ++at) {
            calls.push_back({numbers[at].substr(0, numbers[at].find(' ')),
                             numbers[at].substr(numbers[at].find(' ') + 1)});
        }
    }
    Item item = journaltest::itemOf<Item>(time + "0000002A", uniqueId, calls);
    item.setSurname(std::string(dice.chance(5) ? 3000 : 10, 'n'));
    const std::string response = send(Requests::WRITEREQUEST, ItemTexts<Item>::kTable, entryOf(item));
    if (response == Requests::FAILED) {
        return {};
    }
    std::string id = JournalServiceHelper::parseLastUniqueId(response);
    Entry entry{ItemTexts<Item>::kTable, item.getEntryId(), {}};
    for (const journaltest::Occurrence& call : calls) {
        entry.numbers.push_back(call.number + " " + call.time);
    }
    m_model.entries[id] = std::move(entry);
    if (!m_givenIds.insert(id).second && id != uniqueId) {
        m_repeatedIds.push_back(id);
    }
    return id;
}

std::string DatabaseWork::fileAny(Dice& dice, const std::string& list, const std::string& uniqueId) {
    return list == ItemTexts<MissedCallItem>::kTable     ? file<MissedCallItem>(dice, uniqueId)
           : list == ItemTexts<DialledCallItem>::kTable  ? file<DialledCallItem>(dice, uniqueId)
           : list == ItemTexts<ReceivedCallItem>::kTable ? file<ReceivedCallItem>(dice, uniqueId)
                                                         : file<ForwardedCallItem>(dice, uniqueId);
}

std::string DatabaseWork::fileCall(Dice& dice) {
    const std::vector<std::string> lists{
        ItemTexts<MissedCallItem>::kTable, ItemTexts<DialledCallItem>::kTable,
        ItemTexts<ReceivedCallItem>::kTable, ItemTexts<ForwardedCallItem>::kTable};
    return fileAny(dice, dice.pick(lists), "");
}

bool DatabaseWork::change(Dice& dice) {
    m_wasEviction = missedEntries() > Requests::kListRows;
    if (m_wasEviction) {
        return evictOldest();
    }
    const std::size_t kind = dice.below(100);
    if (kind < 45 || m_model.entries.empty()) {
        return !fileCall(dice).empty();
    }
    return kind < 60   ? addToEntry(dice)
           : kind < 75 ? deleteEntries(dice)
           : kind < 77 ? emptyList(dice)
           : kind < 85 ? importCalls(dice)
           : kind < 93 ? changeCallBacks(dice)
                       : changeSetting(dice);
}

void DatabaseWork::fillMissedList() {
    std::string entries;
    for (unsigned count = 0; count < Requests::kListRows; ++count) {
        const std::string time = newTime();
        entries += entryOf(journaltest::itemOf<MissedCallItem>(time + "0000002A", "",
                                                               {{std::to_string(50000 + count), time}}));
    }
    static_cast<void>(send(Requests::WRITEREQUEST, ItemTexts<MissedCallItem>::kTable, entries));
}

bool DatabaseWork::addToEntry(Dice& dice) {
    const auto [id, entry] = *pickOf(m_model.entries, dice);
    return !fileAny(dice, entry.list, id).empty();
}

bool DatabaseWork::deleteEntries(Dice& dice) {
    // The newest entry of all: no later one may get its id.
    auto chosen = pickOf(m_model.entries, dice);
    if (dice.chance(50)) {
        chosen = std::max_element(m_model.entries.begin(), m_model.entries.end(),
                                  [](const auto& left, const auto& right) {
                                      return std::stoll(left.first) < std::stoll(right.first);
                                  });
    }
    const std::string list = chosen->second.list;
    std::vector<std::string> ids{chosen->first};
    std::string body = keyOf(chosen->first, chosen->second.entryId);
    for (const auto& [id, entry] : m_model.entries) {
        if (entry.list == list && id != ids.front() && ids.size() < 3 && dice.chance(30)) {
            ids.push_back(id);
            body += keyOf(id, entry.entryId);
        }
    }
    if (send(Requests::DELETEREQUEST, list.c_str(), body) == Requests::FAILED) {
        return false;
    }
    for (const std::string& id : ids) {
        m_model.entries.erase(id);
    }
    return true;
}

std::size_t DatabaseWork::missedEntries() const {
    return static_cast<std::size_t>(std::count_if(
        m_model.entries.begin(), m_model.entries.end(),
        [](const auto& each) { return each.second.list == ItemTexts<MissedCallItem>::kTable; }));
}

bool DatabaseWork::evictOldest() {
    const auto isAfter = [](const Entry& entry) {
        return std::pair(entry.list != ItemTexts<MissedCallItem>::kTable, entry.entryId);
    };
    const auto oldest = std::min_element(
        m_model.entries.begin(), m_model.entries.end(),
        [&](const auto& left, const auto& right) { return isAfter(left.second) < isAfter(right.second); });
    if (send(Requests::DELETEREQUEST, oldest->second.list.c_str(),
             keyOf(oldest->first, oldest->second.entryId)) == Requests::FAILED) {
        return false;
    }
    m_model.entries.erase(oldest);
    return true;
}

bool DatabaseWork::emptyList(Dice& dice) {
    const std::string list = pickOf(m_model.entries, dice)->second.list;
    if (send(Requests::DELETEREQUEST, list.c_str(), Requests::allEntries()) == Requests::FAILED) {
        return false;
    }
    std::erase_if(m_model.entries, [&](const auto& each) { return each.second.list == list; });
    return true;
}

bool DatabaseWork::importCalls(Dice& dice) {
    std::vector<host::Call> calls(1 + dice.below(20));
    for (host::Call& call : calls) {
        call.list = static_cast<ListName>(dice.below(kLists));
        call.party.number = newNumber(dice);
        call.start = std::chrono::sys_seconds(std::chrono::seconds(1'700'000'000 + ++m_clock));
    }
    const std::string line = kLine;
    return m_database.write("importing", [&](host::Database::Session& session) {
        host::CallInsertion::Added added;
        host::CallInsertion insertion(session, line, &m_digits, added);
        for (const host::Call& call : calls) {
            static_cast<void>(insertion.add(call));
        }
    });
}

bool DatabaseWork::changeCallBacks(Dice& dice) {
    const std::string id = "callback" + std::to_string(dice.below(5));
    const char* const table = ItemTexts<CallBackItem>::kTable;
    if (dice.chance(50)) {
        const bool isDone = send(Requests::DELETEREQUEST, table, keyOf("", id)) != Requests::FAILED;
        return isDone && (m_model.callBacks.erase(id), true);
    }
    const bool isDone = send(Requests::WRITEREQUEST, table,
                             entryOf(journaltest::callBackOf(id, "4711", newTime()))) != Requests::FAILED;
    return isDone && (m_model.callBacks.insert(id), true);
}

bool DatabaseWork::changeSetting(Dice& dice) {
    const std::string value = std::to_string(dice.below(1000));
    const bool isDone = m_access.processRequest(JournalServiceHelper::updateSettings(
                            "missed-logging", value)) != Requests::FAILED;
    return isDone && (m_model.settings["missed-logging"] = value, true);
}

void DatabaseWork::noteLiveCall(Dice& dice) {
    SQLite::Database connection(m_database.file().string(), SQLite::OPEN_READWRITE);
    connection.exec("PRAGMA synchronous = NORMAL");
    const std::string values =
        connection
            .execAndGet("SELECT group_concat(CASE type WHEN 'TEXT' THEN '''text''' ELSE '" +
                        std::to_string(dice.below(9)) + "' END) FROM pragma_table_info('live_call')")
            .getString();
    connection.exec("INSERT OR REPLACE INTO live_call VALUES (" + values + ")");
}

std::optional<DatabaseWork::Model> DatabaseWork::read() {
    Model model;
    const auto readList = [&]<typename Item>() {
        const std::string response =
            m_access.processRequest(Requests::readCallList(ItemTexts<Item>::kTable, 2000));
        std::deque<Item> items;
        ItemTexts<Item>::kParseList(response, items);
        for (const Item& item : items) {
            if constexpr (std::is_same_v<Item, CallBackItem>) {
                model.callBacks.insert(item.getEntryId());
            } else {
                Entry& entry = model.entries[item.getUniqueId()];
                entry = {ItemTexts<Item>::kTable, item.getEntryId(), {}};
                for (const auto& call : occurrencesOf(item)) {
                    entry.numbers.push_back(call.getNumber() + " " + call.getTimeAndDate());
                }
            }
        }
        return response != Requests::FAILED;
    };
    const bool isDone = readList.operator()<MissedCallItem>() && readList.operator()<DialledCallItem>() &&
                        readList.operator()<ReceivedCallItem>() && readList.operator()<ForwardedCallItem>() &&
                        readList.operator()<CallBackItem>() &&
                        m_database.read("reading", [&](host::Database::Session& session) {
                            host::Query settings = session.query("SELECT key, value FROM setting");
                            while (settings.next()) {
                                std::string key = settings.text();
                                model.settings[std::move(key)] = settings.text();
                            }
                        });
    return isDone ? std::optional(std::move(model)) : std::nullopt;
}

bool DatabaseWork::takeModel() {
    std::optional<Model> stored = read();
    if (!stored) {
        return false;
    }
    m_model = std::move(*stored);
    for (const auto& [id, entry] : m_model.entries) {
        m_givenIds.insert(id);
    }
    return true;
}

std::optional<std::vector<std::string>> DatabaseWork::faults() {
    const std::optional<Model> stored = read();
    if (!stored) {
        return std::nullopt;
    }
    std::vector<std::string> found;
    for (const std::string& id : std::exchange(m_repeatedIds, {})) {
        found.push_back("the unique id " + id + " is used again");
    }
    for (const auto& [id, entry] : m_model.entries) {
        const auto other = stored->entries.find(id);
        if (other == stored->entries.end()) {
            found.push_back("entry " + id + " was reported as stored, and is not there");
        } else if (!(other->second == entry)) {
            found.push_back("entry " + id + " is not as it was stored");
        }
    }
    for (const auto& [id, entry] : stored->entries) {
        if (!m_model.entries.contains(id)) {
            found.push_back("entry " + id + " is there, though it was deleted, or its write refused");
        }
    }
    if (stored->callBacks != m_model.callBacks || stored->settings != m_model.settings) {
        found.emplace_back("callbacks or settings are not as they were stored");
    }
    return found;
}

std::string DatabaseWork::state() {
    const SQLite::Database connection(m_database.file().string());
    std::string all;
    std::string counts;
    SQLite::Statement tables(connection,
                             "SELECT name FROM sqlite_schema WHERE type = 'table' AND name <> 'live_call' "
                             "ORDER BY name");
    while (tables.executeStep()) {
        const std::string table = tables.getColumn(0).getString();
        SQLite::Statement rows(connection, "SELECT * FROM " + table);
        std::size_t count = 0;
        for (; rows.executeStep(); ++count) {
            for (int column = 0; column < rows.getColumnCount(); ++column) {
                all += rows.getColumn(column).getString() + '\x1f';
            }
        }
        counts += count == 0 ? "" : table + ' ' + std::to_string(count) + ' ';
    }
    return counts + std::to_string(std::hash<std::string>()(all));
}

std::string DatabaseWork::integrity() {
    SQLite::Database connection(m_database.file().string());
    const std::string finding = connection.execAndGet("PRAGMA integrity_check").getString();
    SQLite::Statement broken(connection, "PRAGMA foreign_key_check");
    return finding != "ok" || !broken.executeStep()
               ? finding
               : "a reference of " + broken.getColumn(0).getString() + " is broken";
}

}  // namespace reliability
