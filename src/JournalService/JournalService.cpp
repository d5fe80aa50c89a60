#include "journalservice/JournalService.h"

#include <exception>
#include <typeinfo>

#include "journalservice/ObserverNotifier.h"
#include "platform/csta/CSTAEvent.h"
#include "platform/management/LocalMgmtIfc.h"
#include "src/JournalService/JournalComponents.h"
#include "src/JournalService/base/Log.h"

namespace {

/// What the strand calls ends here in any case: a platform service that throws costs one event, not the phone.
template <typename Work>
void guarded(const char* operation, Work work) noexcept {
    try {
        work();
    } catch (const std::exception& error) {
        LOG_JOURNAL(2, "%s failed: %s", operation, error.what());
    } catch (...) {
        LOG_JOURNAL(2, "%s failed", operation);
    }
}

/// The same for what clients call: an operation that fails answers nothing, or false.
template <typename Work>
auto answered(const char* operation, Work work) noexcept {
    decltype(work()) answer{};
    guarded(operation, [&answer, &work] { answer = work(); });
    return answer;
}

}  // namespace

JournalService::JournalService(ObserverNotifierIfc* notifier) {
    constructorActions(notifier);
}

void JournalService::constructorActions(ObserverNotifierIfc* notifier) {
    if (notifier == nullptr) {
        m_ownNotifier = std::make_unique<ObserverNotifier>();
        notifier = m_ownNotifier.get();
    }
    m_parts = std::make_unique<journal::JournalComponents>(
        journal::JournalComponents::Outside{*notifier, *this, *this, [this] { loadCallListsFromDb(); }});
}

JournalService::~JournalService() {
    if (auto* management = m_parts->platform.m_localMgmt) {
        management->unregisterAgent(*this);
    }
    const journal::CallMap::Section section(m_parts->calls.m_callMapLock);
    m_parts->calls.removeAllCalls();
}

// --- Service ---

void JournalService::init(Context& context) {
    guarded("init", [this, &context] { m_parts->start(context, *this, *this); });
}

void JournalService::shutdown() {}

void JournalService::run() {}

void JournalService::timerEvent(int id) {
    LOG_JOURNAL(5, "timer expired");
    guarded("timerEvent", [this, id] {
        if (!m_parts->blindTransfer.onTimer(id)) {
            m_parts->visitorCallLog.onTimer(id);
        }
    });
}

// --- JournalServiceIfc: missed calls ---

void JournalService::getMissedCallList(std::deque<MissedCallItem>& list) {
    guarded("getMissedCallList", [&] { m_parts->lists.getMissedCallList(list); });
}

bool JournalService::getMissedCall(const std::string& entryId, MissedCallItem& item) {
    return answered("getMissedCall", [&] { return m_parts->lists.getMissedCall(entryId, item); });
}

void JournalService::updateMissedCall(const MissedCallItem& item) {
    guarded("updateMissedCall", [&] { m_parts->lists.updateMissedCall(item); });
}

bool JournalService::setMissedCallListAsViewed(const std::set<std::string>& entryIds) {
    return answered("setMissedCallListAsViewed",
                    [&] { return m_parts->lists.setMissedCallListAsViewed(entryIds); });
}

void JournalService::ageMissedCall(const std::string& entryId) {
    guarded("ageMissedCall", [&] { m_parts->lists.ageMissedCall(entryId); });
}

bool JournalService::deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) {
    return answered("deleteMissedCall",
                    [&] { return m_parts->lists.deleteMissedCall(entryId, isSendDeleteMissedCallRequest); });
}

bool JournalService::deleteMissedCallList(const std::set<std::string>& entryIds) {
    return answered("deleteMissedCallList", [&] { return m_parts->lists.deleteMissedCallList(entryIds); });
}

bool JournalService::deleteMissedCallList() {
    return answered("deleteMissedCallList", [&] { return m_parts->lists.deleteMissedCallList(); });
}

// --- JournalServiceIfc: dialled calls ---

void JournalService::getDialledCallList(std::deque<DialledCallItem>& list) {
    guarded("getDialledCallList", [&] { m_parts->lists.getDialledCallList(list); });
}

bool JournalService::getDialledCall(const std::string& entryId, DialledCallItem& item) {
    return answered("getDialledCall", [&] { return m_parts->lists.getDialledCall(entryId, item); });
}

bool JournalService::deleteDialledCall(const std::string& entryId) {
    return answered("deleteDialledCall", [&] { return m_parts->lists.deleteDialledCall(entryId); });
}

bool JournalService::deleteDialledCallList(const std::set<std::string>& entryIds) {
    return answered("deleteDialledCallList", [&] { return m_parts->lists.deleteDialledCallList(entryIds); });
}

bool JournalService::deleteDialledCallList() {
    return answered("deleteDialledCallList", [&] { return m_parts->lists.deleteDialledCallList(); });
}

bool JournalService::getLastDialledNumber(DialledCallItem& item) {
    return answered("getLastDialledNumber", [&] { return m_parts->lists.getLastDialledNumber(item); });
}

// --- JournalServiceIfc: received calls ---

void JournalService::getReceivedCallList(std::deque<ReceivedCallItem>& list) {
    guarded("getReceivedCallList", [&] { m_parts->lists.getReceivedCallList(list); });
}

bool JournalService::getReceivedCall(const std::string& entryId, ReceivedCallItem& item) {
    return answered("getReceivedCall", [&] { return m_parts->lists.getReceivedCall(entryId, item); });
}

bool JournalService::deleteReceivedCall(const std::string& entryId) {
    return answered("deleteReceivedCall", [&] { return m_parts->lists.deleteReceivedCall(entryId); });
}

bool JournalService::deleteReceivedCallList(const std::set<std::string>& entryIds) {
    return answered("deleteReceivedCallList",
                    [&] { return m_parts->lists.deleteReceivedCallList(entryIds); });
}

bool JournalService::deleteReceivedCallList() {
    return answered("deleteReceivedCallList", [&] { return m_parts->lists.deleteReceivedCallList(); });
}

// --- JournalServiceIfc: forwarded calls ---

void JournalService::getForwardedCallList(std::deque<ForwardedCallItem>& list) {
    guarded("getForwardedCallList", [&] { m_parts->lists.getForwardedCallList(list); });
}

bool JournalService::getForwardedCall(const std::string& entryId, ForwardedCallItem& item) {
    return answered("getForwardedCall", [&] { return m_parts->lists.getForwardedCall(entryId, item); });
}

bool JournalService::deleteForwardedCall(const std::string& entryId) {
    return answered("deleteForwardedCall", [&] { return m_parts->lists.deleteForwardedCall(entryId); });
}

bool JournalService::deleteForwardedCallList(const std::set<std::string>& entryIds) {
    return answered("deleteForwardedCallList",
                    [&] { return m_parts->lists.deleteForwardedCallList(entryIds); });
}

bool JournalService::deleteForwardedCallList() {
    return answered("deleteForwardedCallList", [&] { return m_parts->lists.deleteForwardedCallList(); });
}

// --- JournalServiceIfc: callbacks ---

void JournalService::getCallBackList(std::deque<CallBackItem>& list) {
    guarded("getCallBackList", [&] { m_parts->lists.getCallBackList(list); });
}

bool JournalService::deleteCallBack(const std::string& entryId) {
    return answered("deleteCallBack", [&] { return m_parts->lists.deleteCallBack(entryId); });
}

bool JournalService::deleteCallBackList(const std::set<std::string>& entryIds) {
    return answered("deleteCallBackList", [&] { return m_parts->lists.deleteCallBackList(entryIds); });
}

bool JournalService::deleteCallBackList() {
    return answered("deleteCallBackList", [&] { return m_parts->lists.deleteCallBackList(); });
}

// --- JournalServiceIfc: the journal as a whole ---

bool JournalService::deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) {
    return answered("deleteCalls",
                    [&] { return m_parts->lists.deleteCalls(entryIds, isSendDeleteMissedCallRequest); });
}

bool JournalService::deleteAllCalls() {
    return answered("deleteAllCalls", [&] { return m_parts->lists.deleteAllCalls(); });
}

bool JournalService::resetUserCalls() {
    LOG_JOURNAL(3, "resetUserCalls is NOT implemented");
    return false;
}

bool JournalService::resetUserContacts() {
    LOG_JOURNAL(3, "resetUserCalls is NOT implemented");
    return false;
}

bool JournalService::refreshCallLog() {
    return answered("refreshCallLog", [&] { return m_parts->refresh.refreshCallLog(); });
}

bool JournalService::refreshCallLists() {
    return answered("refreshCallLists", [&] { return m_parts->refresh.refreshCallLists(); });
}

bool JournalService::setJournalServiceCallLogEventsDisabling(const std::string& value) {
    return answered("setJournalServiceCallLogEventsDisabling",
                    [&] { return m_parts->refresh.setJournalServiceCallLogEventsDisabling(value); });
}

bool JournalService::getCallRecordsAssociatedWith(const Contact& contact,
                                                  std::vector<Contact::CallRecord>& records) {
    return answered("getCallRecordsAssociatedWith",
                    [&] { return m_parts->lists.getCallRecordsAssociatedWith(contact, records); });
}

// --- ContactGetterIfc ---

void JournalService::getContactList(std::vector<Contact>& contacts) {
    guarded("getContactList", [&] { m_parts->lists.contacts().getContactList(contacts); });
}

// --- JournalServiceObserverSubscriptionIfc ---

bool JournalService::subscribeForJournalEvents(JournalServiceObserverIfc* observer) {
    return answered("subscribeForJournalEvents", [&] { return m_parts->subscription.subscribe(observer); });
}

bool JournalService::unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) {
    return answered("unsubscribeForJournalEvents",
                    [&] { return m_parts->subscription.unsubscribe(observer); });
}

void JournalService::loadCallListsFromDb() {
    m_parts->loader.loadCallListsFromDb();
}

// --- CSTAEventIfc ---

void JournalService::deliverEvent(CSTAEvent* event) {
    if (event == nullptr) {
        return;
    }
    const char* type = typeid(*event).name();
    LOG_EVENTS(5, "deliverEvent[%s]", *type == '*' ? type + 1 : type);
    guarded("deliverEvent", [this, event] { event->dispatch(*this); });
    m_parts->blindTransfer.eventDelivered(event->getType());
}

// --- CSTAEventObserverBase ---

void JournalService::handleCSTAOriginatedEvent(CSTAOriginatedEvent* event) {
    m_parts->callControlEvents.handleCSTAOriginatedEvent(event);
}

void JournalService::handleCSTAOfferedEvent(CSTAOfferedEvent* event) {
    m_parts->callControlEvents.handleCSTAOfferedEvent(event);
}

void JournalService::handleCSTAQueuedEvent(CSTAQueuedEvent* event) {
    m_parts->callControlEvents.handleCSTAQueuedEvent(event);
}

void JournalService::handleCSTADeliveredEvent(CSTADeliveredEvent* event) {
    m_parts->callControlEvents.handleCSTADeliveredEvent(event);
}

void JournalService::handleCSTADivertedEvent(CSTADivertedEvent* event) {
    m_parts->callControlEvents.handleCSTADivertedEvent(event);
}

void JournalService::handleCSTAEstablishedEvent(CSTAEstablishedEvent* event) {
    m_parts->callControlEvents.handleCSTAEstablishedEvent(event);
}

void JournalService::handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) {
    m_parts->blindTransfer.handleCSTAConnectionClearedEvent(event);
}

void JournalService::handleCSTAFailedEvent(CSTAFailedEvent* event) {
    m_parts->callControlEvents.handleCSTAFailedEvent(event);
}

void JournalService::handleCSTAHookswitchEvent(CSTAHookswitchEvent* /*event*/) {}

void JournalService::handleCSTAConferencedEvent(CSTAConferencedEvent* event) {
    m_parts->conferenceEvents.handleCSTAConferencedEvent(event);
}

void JournalService::handleCSTACallInformationEvent(CSTACallInformationEvent* event) {
    m_parts->callInformationEvents.handleCSTACallInformationEvent(event);
}

void JournalService::handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) {
    m_parts->systemStatusEvents.handleCSTASystemStatusEvent(event);
}

void JournalService::handleCSTAPrivateEvent(CSTAPrivateEvent* event) {
    m_parts->privateEvents.handleCSTAPrivateEvent(event);
}

void JournalService::handleCSTATransferredEvent(CSTATransferredEvent* event) {
    m_parts->transferredEvents.handleCSTATransferredEvent(event);
}

void JournalService::handleCSTACallBackEvent(CSTACallBackEvent* event) {
    m_parts->callBackEvents.handleCSTACallBackEvent(event);
}

void JournalService::handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* event) {
    m_parts->lineDeviceEvents.handleCSTASwitchingFunctionDevices(event);
}

void JournalService::handleCSTAConferenceMembershipEvent(CSTAConferenceMembershipEvent* event) {
    m_parts->conferenceEvents.handleCSTAConferenceMembershipEvent(event);
}

void JournalService::handleCSTAHeldEvent(CSTAHeldEvent* event) {
    m_parts->blindTransfer.handleCSTAHeldEvent(*event);
}

void JournalService::handleCSTARetrievedEvent(CSTARetrievedEvent* event) {
    m_parts->callControlEvents.handleCSTARetrievedEvent(event);
}

// --- MgmtAgentIfc ---

bool JournalService::setData(ManageableData& data) {
    return answered("setData", [&] { return m_parts->agent.setData(data); });
}

bool JournalService::getData(ManageableData& data) {
    return answered("getData", [&] { return m_parts->agent.getData(data); });
}

void JournalService::manageableDataChanged(ManageableData& data) {
    guarded("manageableDataChanged", [this, &data] { m_parts->agent.manageableDataChanged(data); });
}

bool JournalService::resetUserData() {
    return answered("resetUserData", [&] { return m_parts->refresh.resetUserData(); });
}

// --- the gate and the timers, for those who ask ---

bool JournalService::handleCSTAEvent() {
    return answered("handleCSTAEvent", [&] { return m_parts->gate.handleCSTAEvent(); });
}

bool JournalService::isUCServiceRunning() {
    return answered("isUCServiceRunning", [&] { return m_parts->gate.isUCServiceRunning(); });
}

bool JournalService::isPallaxServiceRunning() {
    return answered("isPallaxServiceRunning", [&] { return m_parts->gate.isPallaxServiceRunning(); });
}

bool JournalService::isWsiUcJournalAllowed() {
    return answered("isWsiUcJournalAllowed", [&] { return m_parts->gate.isWsiUcJournalAllowed(); });
}

int JournalService::getAutoSaveVisitorCallLogToVantorTimerId() const {
    return answered("getAutoSaveVisitorCallLogToVantorTimerId",
                    [&] { return m_parts->visitorCallLog.getAutoSaveVisitorCallLogToVantorTimerId(); });
}

DigitAnalysisServiceIfc* JournalService::getDigitAnalysisService() const {
    return m_parts->platform.m_digitAnalysisService;
}
