#pragma once

#include <atomic>
#include <string>

class CallListDatabaseAdapter;

namespace journal {

class JournalLists;
class PhoneSettings;

/// Fills the lists from the database, one read request for each list.
///
/// Threads: any. A load is one `JournalLists::Change`: no call is filed and nothing is deleted while it is under way, so
/// that a load neither loses nor undoes a change. The requests themselves run with no list lock held.
class ListLoader {
public:
    /// The parts are borrowed and outlive the loader.
    ListLoader(const PhoneSettings& settings, CallListDatabaseAdapter& adapter, JournalLists& lists)
        : m_settings(settings), m_adapter(adapter), m_lists(lists) {}
    ListLoader(const ListLoader&) = delete;
    ListLoader& operator=(const ListLoader&) = delete;
    ~ListLoader() = default;

    /// Loads every list, the forwarded one on a SIP phone only. A list whose read fails keeps its contents.
    void loadCallListsFromDb();
    /// Whether a load has run, whatever it found.
    [[nodiscard]] bool listsLoaded() const noexcept { return m_listsLoaded; }

    void readMissedCallList();
    void readDialledCallList();
    void readReceivedCallList();
    void readForwardedCallList();

    // Replace one list by what an answer document holds, under the list's lock.
    void processMissedCallDbXml(const std::string& xml);
    void processDialledCallDbXml(const std::string& xml);
    void processReceivedCallDbXml(const std::string& xml);
    void processForwardedCallDbXml(const std::string& xml);

private:
    void readCallBackList();

    const PhoneSettings& m_settings;
    CallListDatabaseAdapter& m_adapter;
    JournalLists& m_lists;

    std::atomic<bool> m_listsLoaded{false};
};

}  // namespace journal
