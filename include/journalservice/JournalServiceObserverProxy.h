#pragma once

#include <string>

#include "journalservice/JournalServiceObserverIfc.h"
#include "platform/framework/Proxy.h"

/// Represents one remote observer inside the process: sends each callback as a message to the remote client.
///
/// Threads: call `initProxy` first. The notifier makes the callbacks one at a time, on the thread that
/// changed the journal, with its lock held; sending therefore never blocks on the client (see
/// `ProxyRequest`).
///
/// Ownership: created by the exported factory, owned by the framework, borrowed by the notifier. Unsubscribe
/// it before it is destroyed.
///
/// Errors: none are reported. A client that has disconnected loses the messages, and reads the lists when it
/// returns.
class JournalServiceObserverProxy final : public Proxy, public JournalServiceObserverIfc {
public:
    JournalServiceObserverProxy() = default;
    ~JournalServiceObserverProxy() override = default;

    /// `request` is borrowed and outlives the proxy. Selects the protocol "opera_text".
    void initProxy(ProxyRequest& request) override;

    // A negative count, which the journal never sends, arrives as the unsigned number with the same bits.
    void missedCallsCountUpdate(int count) override;
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int count) override;

private:
    void send(const std::string& message);

    // Written by initProxy only, before the first callback.
    ProxyRequest* m_request = nullptr;
};
