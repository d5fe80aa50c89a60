#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "include/JournalServiceObserverIfc.h"

class JournalServiceIfc;

namespace journaltest {

/// One call of an observer, with what came with it.
struct Callback {
    /// Named after the operations of `JournalServiceObserverIfc`.
    enum class Kind {
        eMissedCallsCountUpdate,
        eMissedCallsUpdate,
        eDialledCallsUpdate,
        eReceivedCallsUpdate,
        eForwardedCallsUpdate,
        eCallBacksUpdate,
        eCallBacksCountUpdate,
    };
    using ActionType = JournalServiceObserverIfc::ActionType;
    using Item = std::variant<std::monostate, MissedCallItem, DialledCallItem, ReceivedCallItem,
                              ForwardedCallItem, CallBackItem>;

    Kind kind = Kind::eMissedCallsCountUpdate;
    int count = 0;  // of the two count updates
    Item item;      // of the five list updates, as the three that follow
    std::string entryId;
    ActionType action = ActionType::eListChanged;

    /// The call in one line, the item by its own entry id: "missedCallsCountUpdate(2)",
    /// "dialledCallsUpdate(item e1, entryId 7, action 2)", "callBacksUpdate(item -, entryId -, action 3)".
    [[nodiscard]] std::string text() const;
    /// The item; the test fails by exception when the call carried another kind.
    template <typename ItemType>
    [[nodiscard]] const ItemType& as() const {
        return std::get<ItemType>(item);
    }
};

std::ostream& operator<<(std::ostream& out, const Callback& callback);

/// An observer that notes every call in order.
///
/// Calls may come on any thread, and any thread may read what was noted. What a test wants done inside each
/// callback (read the lists, throw, wait) is a function that runs after the call is noted, with no lock held.
class RecordingObserver final : public JournalServiceObserverIfc {
public:
    using During = std::function<void(const Callback&)>;

    RecordingObserver() = default;
    virtual ~RecordingObserver() = default;
    RecordingObserver(const RecordingObserver&) = delete;
    RecordingObserver& operator=(const RecordingObserver&) = delete;
    explicit RecordingObserver(During during) : m_during(std::move(during)) {}

    /// Not while callbacks may come.
    void setDuring(During during) { m_during = std::move(during); }

    [[nodiscard]] std::vector<Callback> callbacks() const;
    [[nodiscard]] std::vector<Callback> callbacks(Callback::Kind kind) const;
    /// `Callback::text` of each.
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] std::size_t count() const;
    void clear();

    /// Waits until at least `number` calls were noted since the last `clear`; false after ten seconds.
    [[nodiscard]] bool waitFor(std::size_t number) const;

    void missedCallsCountUpdate(int count) override;
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int count) override;

private:
    void note(Callback callback);

    // Constant while callbacks may come.
    During m_during;

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<Callback> m_callbacks;
};

/// Reads all five lists through `journal`, for use inside a callback.
void readAllLists(JournalServiceIfc& journal);

}  // namespace journaltest
