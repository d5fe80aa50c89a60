#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/framework/Executable.h"
#include "platform/journal-library/DataRequest.h"

namespace journaltest {

/// A database in memory that keeps every request document; register it as "DataAccessServiceIfc".
///
/// It reads requests and writes responses with the journal library's own functions and follows the rules of
/// `journalxml::DataRequest`. Unique ids count up from "1" over all tables. Any thread may send requests; a
/// test sets things up, and reads the records, while none does.
class FakeDataAccess final : public Executable, public DataAccessServiceIfc {
public:
    using Item = journalxml::DataRequest::Item;
    using Response = std::function<std::string(const std::string&)>;

    /// Puts a row into `table` with its unique id; an item without one gets the next.
    void addRow(const std::string& table, Item item) { put(table, rowOf(std::move(item)), true); }
    std::vector<Contact> contacts;
    std::map<std::string, std::string> settings;

    /// While set, requests that contain `word` fail and change no row; all of them by default.
    void setFailing(bool failing, const std::string& word = {}) {
        m_failing = failing ? std::optional(word) : std::nullopt;
    }
    /// While set, the function returns the response to the request document; it runs with no lock held, and
    /// may throw. An empty function ends it.
    void setResponse(Response response) { m_response = std::move(response); }
    /// The database's own response to a request, which it does not record.
    [[nodiscard]] std::string carryOut(const std::string& document);

    /// The documents, oldest first, and the same as they were understood (without those that were not).
    [[nodiscard]] const std::vector<std::string>& documents() const { return m_documents; }
    [[nodiscard]] std::vector<journalxml::DataRequest> requests() const;
    void forgetRequests() {
        const std::lock_guard lock(m_mutex);
        m_documents.clear();
    }

    /// The rows of a table in the order in which they were first written.
    template <typename ItemType>
    [[nodiscard]] std::vector<ItemType> rows(const std::string& table) const {
        std::vector<ItemType> found;
        const std::lock_guard lock(m_mutex);
        for (const Row& row : m_tables[table]) {
            found.push_back(std::get<ItemType>(row.item));
        }
        return found;
    }

    [[nodiscard]] std::string processRequest(const std::string& request) override;

private:
    struct Row {
        Item item;
        std::string id;  // the unique id, of a callback the entry id
        std::string entryId;
        std::string sortKey;
    };
    static Row rowOf(Item item);

    // All of these with m_mutex held.
    std::string read(const journalxml::DataRequest& request) const;
    std::string erase(const journalxml::DataRequest& request);
    /// Replaces the row of that id or adds one, under a new unique id unless it `keepsId`. Returns the row's
    /// id.
    std::string put(const std::string& table, Row row, bool keepsId = false);

    // Constant while requests may come.
    std::optional<std::string> m_failing;  // the word in the requests that fail
    Response m_response;

    // Guarded by m_mutex, as the settings are.
    mutable std::mutex m_mutex;
    mutable std::map<std::string, std::vector<Row>> m_tables;
    std::vector<std::string> m_documents;
    long m_lastUniqueId = 0;
};

}  // namespace journaltest
