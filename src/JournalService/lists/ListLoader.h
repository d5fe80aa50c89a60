#pragma once

#include <atomic>
#include <functional>
#include <string>

class CallListDatabaseAdapter;

namespace journal {

class JournalLists;
class PhoneSettings;

/// Fills the lists from the database: `loadCallListsFromDb` with one read request for each call list,
/// `loadWith` in whichever way the service variant has, and the callbacks with it.
///
/// Threads: any. A load is one `JournalLists::Change`: no call is filed and nothing is deleted while it is
/// under way, so that a load neither loses nor undoes a change. The requests themselves run with no list lock
/// held.
class ListLoader {
public:
    /// The parts are borrowed and outlive the loader.
    ListLoader(const PhoneSettings& settings, CallListDatabaseAdapter& adapter, JournalLists& lists)
        : m_settings(settings), m_adapter(adapter), m_lists(lists) {}
    ListLoader(const ListLoader&) = delete;
    ListLoader& operator=(const ListLoader&) = delete;
    ~ListLoader() = default;

    /// Loads everything: the call lists and contacts by `loadCallLists`, and the callbacks. What the database
    /// has refused is offered to it again before; as long as it refuses, nothing is loaded, since the load
    /// would lose it.
    void loadWith(const std::function<void()>& loadCallLists);
    /// Whether `loadWith` has loaded, whatever it found.
    [[nodiscard]] bool hasLoaded() const noexcept { return m_hasLoaded; }

    /// Loads every call list, the forwarded one on a SIP phone only. A list whose read fails keeps its
    /// contents.
    void loadCallListsFromDb();
    /// Whether `loadCallListsFromDb` has run, whatever it found: a subscription need not load again.
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

    std::atomic<bool> m_hasLoaded{false};
    std::atomic<bool> m_listsLoaded{false};
};

}  // namespace journal
