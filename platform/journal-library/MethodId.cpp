#include "platform/journal-library/MethodId.h"

#include <array>

namespace journalxml {
namespace {

struct Method {
    MethodId id;
    const char* name;
};

constexpr std::array<Method, 32> kMethods{{
    {MethodId::eGetMissedCall, "getMissedCall"},
    {MethodId::eUpdateMissedCall, "updateMissedCall"},
    {MethodId::eGetMissedCallList, "getMissedCallList"},
    {MethodId::eSetMissedCallListAsViewed, "setMissedCallListAsViewed"},
    {MethodId::eAgeMissedCall, "ageMissedCall"},
    {MethodId::eDeleteMissedCall, "deleteMissedCall"},
    {MethodId::eDeleteMissedCallList, "deleteMissedCallList"},
    {MethodId::eGetDialledCall, "getDialledCall"},
    {MethodId::eGetDialledCallList, "getDialledCallList"},
    {MethodId::eDeleteDialledCall, "deleteDialledCall"},
    {MethodId::eDeleteDialledCallList, "deleteDialledCallList"},
    {MethodId::eGetReceivedCall, "getReceivedCall"},
    {MethodId::eGetReceivedCallList, "getReceivedCallList"},
    {MethodId::eDeleteReceivedCall, "deleteReceivedCall"},
    {MethodId::eDeleteReceivedCallList, "deleteReceivedCallList"},
    {MethodId::eGetForwardedCall, "getForwardedCall"},
    {MethodId::eGetForwardedCallList, "getForwardedCallList"},
    {MethodId::eDeleteForwardedCall, "deleteForwardedCall"},
    {MethodId::eDeleteForwardedCallList, "deleteForwardedCallList"},
    {MethodId::eGetCallBackList, "getCallBackList"},
    {MethodId::eDeleteCallBack, "deleteCallBack"},
    {MethodId::eDeleteCallBackList, "deleteCallBackList"},
    {MethodId::eGetLastDialledNumber, "getLastDialledNumber"},
    {MethodId::eSubscribeForJournalEvents, "subscribeForJournalEvents"},
    {MethodId::eUnsubscribeForJournalEvents, "unsubscribeForJournalEvents"},
    {MethodId::eRefreshCallLog, "refreshCallLog"},
    {MethodId::eRefreshCallLists, "refreshCallLists"},
    {MethodId::eDeleteCalls, "deleteCalls"},
    {MethodId::eDeleteAllCalls, "deleteAllCalls"},
    {MethodId::eSetJournalServiceCallLogEventsDisabling, "setJournalServiceCallLogEventsDisabling"},
    {MethodId::eResetUserCalls, "resetUserCalls"},
    {MethodId::eResetUserContacts, "resetUserContacts"},
}};

}  // namespace

std::optional<MethodId> methodOf(int id) noexcept {
    for (const Method& method : kMethods) {
        if (static_cast<int>(method.id) == id) {
            return method.id;
        }
    }
    return std::nullopt;
}

const char* nameOf(MethodId id) noexcept {
    for (const Method& method : kMethods) {
        if (method.id == id) {
            return method.name;
        }
    }
    return "";
}

}  // namespace journalxml
