#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <utility>

#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// Logs each change of a line's journal as a sentence, "missed call from Ann Müller (4711)", and passes the
/// sentence to a listener.
///
/// Its subscription also makes the journal load its lists at start, before the first call. The journal
/// presents its contents to a new subscriber; these are no changes, so the observer is silent until
/// `setSubscribed`.
///
/// Threads: the journal calls it on any thread that changes the journal.
class JournalLogObserver final : public JournalServiceObserverIfc {
public:
    /// Receives the sentence. Runs inside the observer callback, so it must not block and must not change the
    /// journal.
    using Listener = std::function<void(const std::string&)>;

    /// `line` is the device of the telephone line, for the log.
    explicit JournalLogObserver(std::string line) : m_line(std::move(line)) {}
    virtual ~JournalLogObserver() = default;
    JournalLogObserver(const JournalLogObserver&) = delete;
    JournalLogObserver& operator=(const JournalLogObserver&) = delete;

    /// Call before the subscription.
    void setListener(Listener listener) { m_listener = std::move(listener); }

    void setSubscribed() noexcept { m_subscribed = true; }

    // JournalServiceObserverIfc. The counts need no log text: they follow from the changes.
    void missedCallsCountUpdate(int /*count*/) override {}
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int /*count*/) override {}

private:
    template <typename Item>
    void log(const Item& item, ActionType action) const;

    // Constant once subscribed.
    const std::string m_line;
    Listener m_listener;

    std::atomic<bool> m_subscribed{false};
};

}  // namespace host
