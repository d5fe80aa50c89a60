#include "src/JournalServiceInvoker/InvokerMethods.h"

#include <deque>
#include <set>
#include <vector>

#include "journalservice/JournalServiceIfc.h"
#include "journalservice/JournalServiceObserverIfc.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"
#include "platform/framework/FrameworkContext.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/framework/Proxy.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/MethodId.h"
#include "src/JournalServiceInvoker/InvokerLog.h"

namespace journal {
namespace {

using Service = JournalServiceIfc;
using Helper = JournalServiceHelper;
using Request = InvokerRequest;
using Response = InvokerResponseText;
using Ids = std::set<std::string>;

bool firstEntryId(const Request& request, std::string& entryId) {
    return Helper::getXMLValue(request.message, CallListDatabaseAdapterHelper::ENTRYID, entryId);
}

Ids allEntryIds(const Request& request) {
    const std::vector<std::string> ids =
        Helper::getXMLValues(request.message, CallListDatabaseAdapterHelper::ENTRYID);
    return {ids.begin(), ids.end()};
}

/// Returns an empty item for an unknown entry.
template <typename Item, bool (Service::*Get)(const std::string&, Item&), std::string (*Respond)(const Item&)>
Response getOne(const Request& request) {
    std::string entryId;
    static_cast<void>(firstEntryId(request, entryId));
    Item item;
    (request.service.*Get)(entryId, item);
    return Respond(item);
}

template <typename Item, void (Service::*Get)(std::deque<Item>&),
          std::string (*Respond)(const std::deque<Item>&)>
Response getList(const Request& request) {
    std::deque<Item> list;
    (request.service.*Get)(list);
    return Respond(list);
}

Response lastDialledNumber(const Request& request) {
    DialledCallItem item;
    return request.service.getLastDialledNumber(item) ? Helper::respGetLastNumberDialled(item)
                                                      : invokerFailure();
}

/// Returns true only if the entry was deleted, and the failure text otherwise.
template <bool (*Delete)(Service&, const std::string&)>
Response deleteOne(const Request& request) {
    std::string entryId;
    const bool deleted = firstEntryId(request, entryId) && Delete(request.service, entryId);
    return deleted ? Helper::respBool(true) : invokerFailure();
}

template <bool (Service::*Delete)(const std::string&)>
bool deleteIn(Service& service, const std::string& entryId) {
    return (service.*Delete)(entryId);
}

bool deleteMissed(Service& service, const std::string& entryId) {
    return service.deleteMissedCall(entryId, false);
}

template <bool (Service::*Operation)(const Ids&)>
Response withAllIds(const Request& request) {
    return Helper::respBool((request.service.*Operation)(allEntryIds(request)));
}

template <bool (Service::*Operation)()>
Response withoutArguments(const Request& request) {
    return Helper::respBool((request.service.*Operation)());
}

/// Runs the operation, ignores its result and sends no text.
template <bool (Service::*Operation)()>
Response withoutText(const Request& request) {
    (request.service.*Operation)();
    return std::nullopt;
}

/// Always returns the failure text: existing clients expect it from this method.
Response updateMissedCall(const Request& request) {
    MissedCallItem item;
    static_cast<void>(Helper::parseXMLMissedCallItem(request.message, item));
    request.service.updateMissedCall(item);
    return invokerFailure();
}

Response ageMissedCall(const Request& request) {
    std::string entryId;
    if (!firstEntryId(request, entryId)) {
        return invokerFailure();
    }
    request.service.ageMissedCall(entryId);
    return std::nullopt;
}

Response deleteCalls(const Request& request) {
    bool sendDeleteRequest = false;
    static_cast<void>(
        Helper::getXMLValue(request.message, Helper::SENDDELETEMISSEDCALLREQUEST_XML, sendDeleteRequest));
    return Helper::respBool(request.service.deleteCalls(allEntryIds(request), sendDeleteRequest));
}

Response disableCallLogEvents(const Request& request) {
    std::string value;
    if (!Helper::getXMLValue(request.message, Helper::VALUE, value)) {
        return invokerFailure();
    }
    request.service.setJournalServiceCallLogEventsDisabling(value);
    return std::nullopt;
}

/// Returns the observer proxy of the requesting client. Without one, logs the reason and returns null.
JournalServiceObserverIfc* remoteObserver(const Request& request) {
    std::string interfaceName = "JournalServiceObserverIfc";
    std::string clientName = request.response.getRequester();
    Proxy* const proxy = request.context ? request.context->findProxy(interfaceName, clientName) : nullptr;
    if (!proxy) {
        LOG_INVOKER(2, "Observer proxy is NULL");
        return nullptr;
    }
    auto* const observer = dynamic_cast<JournalServiceObserverIfc*>(proxy);
    if (!observer) {
        LOG_INVOKER(2, "Observer interface is NULL");
    }
    return observer;
}

template <bool (JournalServiceObserverSubscriptionIfc::*Operation)(JournalServiceObserverIfc*)>
Response withRemoteObserver(const Request& request) {
    JournalServiceObserverIfc* const observer = remoteObserver(request);
    return observer ? Helper::respBool((request.service.*Operation)(observer)) : invokerFailure();
}

struct Row {
    journalxml::MethodId id;
    InvokerMethod method;
};

using Id = journalxml::MethodId;
using Missed = MissedCallItem;
using Dialled = DialledCallItem;
using Received = ReceivedCallItem;
using Forwarded = ForwardedCallItem;

constexpr Row kMethods[] = {
    {Id::eGetMissedCall, getOne<Missed, &Service::getMissedCall, &Helper::respGetMissedCall>},
    {Id::eGetDialledCall, getOne<Dialled, &Service::getDialledCall, &Helper::respGetDialledCall>},
    {Id::eGetReceivedCall, getOne<Received, &Service::getReceivedCall, &Helper::respGetReceivedCall>},
    {Id::eGetForwardedCall, getOne<Forwarded, &Service::getForwardedCall, &Helper::respGetForwardedCall>},
    {Id::eGetLastDialledNumber, lastDialledNumber},

    {Id::eGetMissedCallList, getList<Missed, &Service::getMissedCallList, &Helper::respGetMissedCallList>},
    {Id::eGetDialledCallList,
     getList<Dialled, &Service::getDialledCallList, &Helper::respGetDialledCallList>},
    {Id::eGetReceivedCallList,
     getList<Received, &Service::getReceivedCallList, &Helper::respGetReceivedCallList>},
    {Id::eGetForwardedCallList,
     getList<Forwarded, &Service::getForwardedCallList, &Helper::respGetForwardedCallList>},
    {Id::eGetCallBackList, getList<CallBackItem, &Service::getCallBackList, &Helper::respGetCallBackList>},

    {Id::eUpdateMissedCall, updateMissedCall},
    {Id::eSetMissedCallListAsViewed, withAllIds<&Service::setMissedCallListAsViewed>},
    {Id::eAgeMissedCall, ageMissedCall},

    {Id::eDeleteMissedCall, deleteOne<deleteMissed>},
    {Id::eDeleteDialledCall, deleteOne<deleteIn<&Service::deleteDialledCall>>},
    {Id::eDeleteReceivedCall, deleteOne<deleteIn<&Service::deleteReceivedCall>>},
    {Id::eDeleteForwardedCall, deleteOne<deleteIn<&Service::deleteForwardedCall>>},
    {Id::eDeleteCallBack, deleteOne<deleteIn<&Service::deleteCallBack>>},

    {Id::eDeleteMissedCallList, withAllIds<&Service::deleteMissedCallList>},
    {Id::eDeleteDialledCallList, withAllIds<&Service::deleteDialledCallList>},
    {Id::eDeleteReceivedCallList, withAllIds<&Service::deleteReceivedCallList>},
    {Id::eDeleteForwardedCallList, withAllIds<&Service::deleteForwardedCallList>},
    {Id::eDeleteCallBackList, withAllIds<&Service::deleteCallBackList>},
    {Id::eDeleteCalls, deleteCalls},
    {Id::eDeleteAllCalls, withoutArguments<&Service::deleteAllCalls>},

    {Id::eSubscribeForJournalEvents, withRemoteObserver<&Service::subscribeForJournalEvents>},
    {Id::eUnsubscribeForJournalEvents, withRemoteObserver<&Service::unsubscribeForJournalEvents>},

    {Id::eRefreshCallLog, withoutArguments<&Service::refreshCallLog>},
    {Id::eRefreshCallLists, withoutArguments<&Service::refreshCallLists>},
    {Id::eSetJournalServiceCallLogEventsDisabling, disableCallLogEvents},
    {Id::eResetUserCalls, withoutText<&Service::resetUserCalls>},
    {Id::eResetUserContacts, withoutText<&Service::resetUserContacts>},
};

}  // namespace

InvokerMethod invokerMethodOf(int id) noexcept {
    for (const Row& row : kMethods) {
        if (static_cast<int>(row.id) == id) {
            return row.method;
        }
    }
    return nullptr;
}

InvokerResponseText invokerFailure() {
    return std::string(JournalServiceHelper::FAILURE);
}

}  // namespace journal
