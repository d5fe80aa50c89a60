#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/framework/Executable.h"
#include "platform/journal-library/DataRequest.h"

namespace journaltest {

/// A database in memory that keeps every request document; register it as "DataAccessServiceIfc".
///
/// It reads requests and writes answers with the journal library's own functions and follows the rules of
/// `journalxml::DataRequest`. Unique ids count up from "1" over all tables. Any thread may call; what a test wants
/// done inside a request runs with no lock held.
class FakeDataAccess final : public Executable, public DataAccessServiceIfc {
public:
    using Item = journalxml::DataRequest::Item;

    /// Puts a row into `table` as it is, with its unique id; an item without one gets the next.
    void addRow(const std::string& table, Item item);
    void addContact(const Contact& contact);
    void setSetting(const std::string& key, const std::string& value);

    /// While set, every request is answered "failed" and changes nothing.
    void setFailing(bool failing);
    /// While set, the answer is what `answer` gives for the request document; an empty function ends it.
    void setAnswer(std::function<std::string(const std::string&)> answer);
    /// Runs at the beginning of each request; it may throw.
    void setDuring(std::function<void(const std::string&)> during);

    /// The documents, oldest first, and the same as they were understood (without those that were not).
    [[nodiscard]] std::vector<std::string> documents() const;
    [[nodiscard]] std::vector<journalxml::DataRequest> requests() const;
    [[nodiscard]] std::vector<journalxml::DataRequest> requests(journalxml::DataRequest::Reason reason,
                                                                const std::string& schema) const;
    void forgetRequests();

    /// The rows of a table in the order in which they were first written.
    template <typename ItemType>
    [[nodiscard]] std::vector<ItemType> rows(const std::string& table) const {
        std::vector<ItemType> found;
        const std::lock_guard lock(m_mutex);
        const auto held = m_tables.find(table);
        if (held != m_tables.end()) {
            for (const Item& item : held->second) {
                found.push_back(std::get<ItemType>(item));
            }
        }
        return found;
    }
    [[nodiscard]] std::map<std::string, std::string> settings() const;

    [[nodiscard]] std::string processRequest(const std::string& request) override;

private:
    // All of these with m_mutex held.
    std::string carryOut(const journalxml::DataRequest& request);
    std::string read(const journalxml::DataRequest& request) const;
    std::string readSettings() const;
    std::string write(const journalxml::DataRequest& request);
    std::string update(const journalxml::DataRequest& request);
    std::string erase(const journalxml::DataRequest& request);
    std::string put(const std::string& table, Item item);

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::map<std::string, std::vector<Item>> m_tables;
    std::vector<Contact> m_contacts;
    std::map<std::string, std::string> m_settings;
    std::vector<std::string> m_documents;
    long m_lastUniqueId = 0;
    bool m_failing = false;
    std::function<std::string(const std::string&)> m_answer;
    std::function<void(const std::string&)> m_during;
};

}  // namespace journaltest
