#pragma once

#include <string>

#include "journalservice/JournalServiceObserverIfc.h"
#include "platform/framework/Proxy.h"

/// Stands inside the process for one remote observer: each callback becomes a message to the remote client.
///
/// Threads: `initProxy` first. Callbacks come from the notifier, one at a time, on whichever thread changed the
/// journal and with the notifier's lock held; sending therefore never waits for the client (see `ProxyRequest`).
///
/// Ownership: made by the exported factory, owned by the framework, borrowed by the notifier. It must be unsubscribed
/// before it is destroyed.
///
/// Errors: nothing is awaited and nothing is tested. A client that is gone loses what is sent; what was lost it
/// finds in the lists.
class JournalServiceObserverProxy final : public Proxy, public JournalServiceObserverIfc {
public:
    JournalServiceObserverProxy() = default;
    ~JournalServiceObserverProxy() override = default;

    /// `request` is borrowed and outlives the proxy. Selects the protocol "opera_text".
    void initProxy(ProxyRequest& request) override;

    // A count that is negative, which no journal sends, arrives as the unsigned number with the same bits.
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
