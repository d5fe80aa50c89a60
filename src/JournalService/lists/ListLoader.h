#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <string>
#include <utility>

#include "journal-items/ListTraits.h"
#include "src/JournalService/lists/ListSourceIfc.h"

class CallListDatabaseAdapter;

namespace journal {

class JournalLists;
class PhoneSettings;

/// Fills the lists from the database.
///
/// Thread-safe. A load is one `ListTransaction`: no call is filed and no entry is deleted while it runs, so
/// that it neither loses nor undoes a change. The requests run and the responses are parsed with no list lock
/// held; the new contents of a list are swapped in, so that no reader sees it empty or half filled.
class ListLoader final : public ListSourceIfc {
public:
    /// All references are borrowed and outlive this object. `loadCallLists` is the load method of the
    /// service variant, for the call lists and the contacts; without it, `loadCallListsFromDb` does.
    ListLoader(const PhoneSettings& settings, CallListDatabaseAdapter& adapter, JournalLists& lists,
               std::function<void()> loadCallLists = {})
        : m_settings(settings),
          m_adapter(adapter),
          m_lists(lists),
          m_loadCallLists(std::move(loadCallLists)) {}

    /// Loads the call lists and the contacts by the load method of the service variant, and the callbacks.
    /// Before that it retries the changes that the database rejected; while the database still rejects an
    /// item, it loads no list, since the load would lose that item.
    void load() override;
    [[nodiscard]] bool hasLoaded() const noexcept override { return m_hasLoaded; }

    /// Loads every call list with one read request each, the forwarded one on a SIP phone only. A list whose
    /// read fails keeps its contents.
    void loadCallListsFromDb();
    /// False once `loadCallListsFromDb` has run, also if it found no entries. A variant with another load
    /// method never runs it, so every subscription loads there.
    [[nodiscard]] bool subscriptionNeedsLoad() const noexcept { return m_subscriptionNeedsLoad; }

    void readMissedCallList();
    void readDialledCallList();
    void readReceivedCallList();
    void readForwardedCallList();

    // Each replaces one list by the items of a response document.
    void processMissedCallDbXml(const std::string& xml);
    void processDialledCallDbXml(const std::string& xml);
    void processReceivedCallDbXml(const std::string& xml);
    void processForwardedCallDbXml(const std::string& xml);

    // Each brings the new contents of a list into order and deletes the items without occurrences, here and
    // in the database. Requires: the caller has a `ListTransaction`.
    void normalizeDialledCallList(std::deque<DialledCallItem>& list);
    void normalizeReceivedCallList(std::deque<ReceivedCallItem>& list);
    void normalizeForwardedCallList(std::deque<ForwardedCallItem>& list);

private:
    template <typename Process>
    void readList(const std::string& request, const char* operation, Process process);
    template <typename Item>
    void replaceList(std::deque<Item> items);
    template <typename Item>
    void populateFromXml(const std::string& xml);
    template <typename Item>
    void normalize(std::deque<Item>& list);
    void loadAll();
    void readCallBackList();

    const PhoneSettings& m_settings;
    CallListDatabaseAdapter& m_adapter;
    JournalLists& m_lists;
    const std::function<void()> m_loadCallLists;

    std::atomic<bool> m_hasLoaded{false};
    std::atomic<bool> m_subscriptionNeedsLoad{true};
};

}  // namespace journal
