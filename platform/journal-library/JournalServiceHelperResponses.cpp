#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/EntryList.h"
#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlLimits.h"
#include "platform/logging/Logging.h"

using journalxml::appendField;
using journalxml::entryElement;
using journalxml::inRootElement;
using journalxml::itemBody;
using journalxml::kNotificationElement;
using journalxml::kResponseElement;

namespace {

using Event = journalxml::ObserverMessage::Event;

constexpr const char* kComponent = "Journal Service";
constexpr const char* kSourceFile = "./platform/journal-library";
constexpr int kWarning = 3;

template <typename Item>
std::string itemResponse(const Item& item) {
    return inRootElement(kResponseElement, entryElement(itemBody(item)));
}

template <typename Item>
std::string listResponse(const std::deque<Item>& list) {
    journalxml::EntryList entries(journalxml::opening(kResponseElement), kResponseElement.closing,
                                  journalxml::kMaxDocumentBytes);
    for (const Item& item : list) {
        if (!entries.add(itemBody(item))) {
            logAppUni(kComponent, kSourceFile, kWarning, __LINE__,
                      "List response is full, only the newest %zu of %zu entries are sent", entries.size(),
                      list.size());
            break;
        }
    }
    return entries.text();
}

std::string eventField(Event event) {
    std::string field;
    appendField(field, journalxml::kEvent, nameOf(event));
    return field;
}

std::string countMessage(Event event, unsigned count) {
    std::string body = eventField(event);
    appendField(body, journalxml::kCount, std::to_string(count));
    return inRootElement(kNotificationElement, body);
}

template <typename Item>
std::string changeMessage(Event event, const Item& item, const std::string& entryId, int action) {
    std::string body = eventField(event);
    appendField(body, journalxml::kAction, std::to_string(action));
    appendField(body, CallListDatabaseAdapterHelper::ENTRYID, entryId);
    return inRootElement(kNotificationElement, body + entryElement(itemBody(item)));
}

}  // namespace

std::string JournalServiceHelper::respBool(bool result) {
    std::string body;
    appendField(body, journalxml::kResult, result ? "true" : "false");
    return inRootElement(kResponseElement, body);
}

std::string JournalServiceHelper::respGetMissedCall(const MissedCallItem& item) {
    return itemResponse(item);
}

std::string JournalServiceHelper::respGetMissedCallList(const std::deque<MissedCallItem>& list) {
    return listResponse(list);
}

std::string JournalServiceHelper::respGetDialledCall(const DialledCallItem& item) {
    return itemResponse(item);
}

std::string JournalServiceHelper::respGetDialledCallList(const std::deque<DialledCallItem>& list) {
    return listResponse(list);
}

std::string JournalServiceHelper::respGetReceivedCall(const ReceivedCallItem& item) {
    return itemResponse(item);
}

std::string JournalServiceHelper::respGetReceivedCallList(const std::deque<ReceivedCallItem>& list) {
    return listResponse(list);
}

std::string JournalServiceHelper::respGetForwardedCall(const ForwardedCallItem& item) {
    return itemResponse(item);
}

std::string JournalServiceHelper::respGetForwardedCallList(const std::deque<ForwardedCallItem>& list) {
    return listResponse(list);
}

std::string JournalServiceHelper::respGetCallBackList(const std::deque<CallBackItem>& list) {
    return listResponse(list);
}

std::string JournalServiceHelper::respGetLastNumberDialled(const DialledCallItem& item) {
    return itemResponse(item);
}

std::string JournalServiceHelper::obsReqMissedCallsCountUpdate(unsigned count) {
    return countMessage(Event::eMissedCallsCountUpdate, count);
}

std::string JournalServiceHelper::obsReqMissedCallsUpdate(const MissedCallItem& item,
                                                          const std::string& entryId, int action) {
    return changeMessage(Event::eMissedCallsUpdate, item, entryId, action);
}

std::string JournalServiceHelper::obsReqDialledCallsUpdate(const DialledCallItem& item,
                                                           const std::string& entryId, int action) {
    return changeMessage(Event::eDialledCallsUpdate, item, entryId, action);
}

std::string JournalServiceHelper::obsReqReceivedCallsUpdate(const ReceivedCallItem& item,
                                                            const std::string& entryId, int action) {
    return changeMessage(Event::eReceivedCallsUpdate, item, entryId, action);
}

std::string JournalServiceHelper::obsReqForwardedCallsUpdate(const ForwardedCallItem& item,
                                                             const std::string& entryId, int action) {
    return changeMessage(Event::eForwardedCallsUpdate, item, entryId, action);
}

std::string JournalServiceHelper::obsReqCallBacksUpdate(const CallBackItem& item, const std::string& entryId,
                                                        int action) {
    return changeMessage(Event::eCallBacksUpdate, item, entryId, action);
}

std::string JournalServiceHelper::obsReqCallBacksCountUpdate(unsigned count) {
    return countMessage(Event::eCallBacksCountUpdate, count);
}
