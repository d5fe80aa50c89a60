#pragma once

#include <optional>

/// The methods of the remote interface by number. The journal responds to any other number with the failure
/// text.
namespace journalxml {

enum class MethodId : int {
    eGetMissedCall = 0,
    eUpdateMissedCall = 1,
    eGetMissedCallList = 2,
    eSetMissedCallListAsViewed = 4,
    eAgeMissedCall = 5,
    eDeleteMissedCall = 7,
    eDeleteMissedCallList = 8,
    eGetDialledCall = 9,
    eGetDialledCallList = 10,
    eDeleteDialledCall = 11,
    eDeleteDialledCallList = 12,
    eGetReceivedCall = 13,
    eGetReceivedCallList = 14,
    eDeleteReceivedCall = 15,
    eDeleteReceivedCallList = 16,
    eGetForwardedCall = 17,
    eGetForwardedCallList = 18,
    eDeleteForwardedCall = 19,
    eDeleteForwardedCallList = 20,
    eGetCallBackList = 21,
    eDeleteCallBack = 22,
    eDeleteCallBackList = 23,
    eGetLastDialledNumber = 24,
    eSubscribeForJournalEvents = 25,
    eUnsubscribeForJournalEvents = 26,
    eRefreshCallLog = 27,
    eRefreshCallLists = 28,
    eDeleteCalls = 36,
    eDeleteAllCalls = 37,
    eSetJournalServiceCallLogEventsDisabling = 38,
    eResetUserCalls = 40,
    eResetUserContacts = 41
};

/// The method of a number; `std::nullopt` for a number without one.
[[nodiscard]] std::optional<MethodId> methodOf(int id) noexcept;
/// The name of the service's operation, "getMissedCallList"; for logs and help texts.
[[nodiscard]] const char* nameOf(MethodId id) noexcept;

}  // namespace journalxml
