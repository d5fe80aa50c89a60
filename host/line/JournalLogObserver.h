#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <utility>

#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// Writes one line of the log for each change of a line's journal, "missed call from Ann Müller (4711)", and tells it to
/// whoever listens.
///
/// Its subscription is also what makes the journal load its lists at start, before the first call. What a new subscriber is
/// presented with is no change; so it is silent until it is told that it is subscribed.
///
/// Threads: as for every observer, whichever thread changed the journal.
class JournalLogObserver final : public JournalServiceObserverIfc {
public:
    /// Takes the sentence that the log gets, too. As in every observer callback: it must not block and not change the
    /// journal.
    using Listener = std::function<void(const std::string&)>;

    /// `line` is the device that the lines name.
    explicit JournalLogObserver(std::string line) : m_line(std::move(line)) {}
    virtual ~JournalLogObserver() = default;
    JournalLogObserver(const JournalLogObserver&) = delete;
    JournalLogObserver& operator=(const JournalLogObserver&) = delete;

    /// Before the subscription.
    void setListener(Listener listener) { m_listener = std::move(listener); }

    void setSubscribed() noexcept { m_subscribed = true; }

    // JournalServiceObserverIfc; the counts follow from the changes
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
