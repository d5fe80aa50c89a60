#include "journalservice/JournalServiceObserverProxy.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/framework/ProxyRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace {

/// Returns the message that `build` makes of a change. The notifier passes a change to all proxies, one after
/// the other on one thread, so the message is built for the first of them only. It stays valid until the next
/// call with this type of item.
template <typename Item>
const std::string& messageOf(std::string (*build)(const Item&, const std::string&, int), Item item,
                             std::string entryId, int action) {
    struct Built {
        Item item;
        std::string entryId;
        int action;
        std::string message;
    };
    thread_local std::optional<Built> last;
    if (!last || last->action != action || last->entryId != entryId || !last->item.sameContent(item)) {
        std::string message = build(item, entryId, action);
        last = Built{std::move(item), std::move(entryId), action, std::move(message)};
    }
    return last->message;
}

}  // namespace

void JournalServiceObserverProxy::initProxy(ProxyRequest& request) {
    m_request = &request;
    request.selectProtocol("opera_text");
}

void JournalServiceObserverProxy::send(const std::string& message) {
    if (m_request) {
        m_request->send(message);
    }
}

void JournalServiceObserverProxy::missedCallsCountUpdate(int count) {
    send(JournalServiceHelper::obsReqMissedCallsCountUpdate(static_cast<unsigned>(count)));
}

void JournalServiceObserverProxy::missedCallsUpdate(MissedCallItem item, std::string entryId,
                                                    ActionType action) {
    send(messageOf(&JournalServiceHelper::obsReqMissedCallsUpdate, std::move(item), std::move(entryId),
                   action));
}

void JournalServiceObserverProxy::dialledCallsUpdate(DialledCallItem item, std::string entryId,
                                                     ActionType action) {
    send(messageOf(&JournalServiceHelper::obsReqDialledCallsUpdate, std::move(item), std::move(entryId),
                   action));
}

void JournalServiceObserverProxy::receivedCallsUpdate(ReceivedCallItem item, std::string entryId,
                                                      ActionType action) {
    send(messageOf(&JournalServiceHelper::obsReqReceivedCallsUpdate, std::move(item), std::move(entryId),
                   action));
}

void JournalServiceObserverProxy::forwardedCallsUpdate(ForwardedCallItem item, std::string entryId,
                                                       ActionType action) {
    send(messageOf(&JournalServiceHelper::obsReqForwardedCallsUpdate, std::move(item), std::move(entryId),
                   action));
}

void JournalServiceObserverProxy::callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) {
    send(
        messageOf(&JournalServiceHelper::obsReqCallBacksUpdate, std::move(item), std::move(entryId), action));
}

void JournalServiceObserverProxy::callBacksCountUpdate(int count) {
    send(JournalServiceHelper::obsReqCallBacksCountUpdate(static_cast<unsigned>(count)));
}
