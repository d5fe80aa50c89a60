#include "journalservice/JournalService.h"

#include <typeinfo>

#include "journalservice/ObserverNotifier.h"
#include "platform/csta/CSTAEvent.h"
#include "platform/logging/LogExceptions.h"
#include "platform/management/LocalMgmtIfc.h"
#include "src/JournalService/JournalComponents.h"
#include "src/JournalService/StartUp.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListTransaction.h"

namespace {

constexpr LogOrigin kLogOrigin{
    .component = "Journal Service", .sourceFile = "./src/JournalService", .line = __LINE__};

/// For operations without a result: a platform service that throws costs one event or one call, not the
/// process.
template <typename Work>
void runLogged(const char* operation, Work work) noexcept {
    logExceptions(kLogOrigin, operation, work);
}

/// For operations with a result: one that throws returns false, 0 or an empty value.
template <typename Work>
auto resultLogged(const char* operation, Work work) noexcept {
    return logExceptionsOr(kLogOrigin, operation, decltype(work()){}, work);
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
    m_components = std::make_unique<journal::JournalComponents>(journal::JournalComponents::Dependencies{
        .notifier = *notifier,
        .service = *this,
        .eventReceiver = *this,
        .loadLists = [this] { loadCallListsFromDb(); },
    });
}

JournalService::~JournalService() {
    if (auto* management = m_components->platform.m_localMgmt) {
        management->unregisterAgent(*this);
    }
    const journal::CallMap::Section section(m_components->calls.m_callMapLock);
    m_components->calls.removeAllCalls();
}

// --- Service ---

void JournalService::init(Context& context) {
    runLogged("init", [this, &context] { journal::startUp(*m_components, context, *this, *this); });
}

void JournalService::shutdown() {}

void JournalService::run() {}

void JournalService::timerEvent(int id) {
    LOG_JOURNAL(5, "timer expired");
    runLogged("timerEvent", [this, id] {
        if (!m_components->connectionCleared.onTimer(id)) {
            m_components->visitorCallLog.onTimer(id);
        }
    });
}

// --- JournalServiceIfc: missed calls ---

void JournalService::getMissedCallList(std::deque<MissedCallItem>& list) {
    runLogged("getMissedCallList", [&] { m_components->queries.getMissedCallList(list); });
}

bool JournalService::getMissedCall(const std::string& entryId, MissedCallItem& item) {
    return resultLogged("getMissedCall", [&] { return m_components->queries.getMissedCall(entryId, item); });
}

void JournalService::updateMissedCall(const MissedCallItem& item) {
    runLogged("updateMissedCall", [&] { m_components->missedCallUpdates.updateMissedCall(item); });
}

bool JournalService::setMissedCallListAsViewed(const std::set<std::string>& entryIds) {
    return resultLogged("setMissedCallListAsViewed",
                        [&] { return m_components->missedCallUpdates.setMissedCallListAsViewed(entryIds); });
}

void JournalService::ageMissedCall(const std::string& entryId) {
    runLogged("ageMissedCall", [&] { m_components->missedCallUpdates.ageMissedCall(entryId); });
}

bool JournalService::deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) {
    return resultLogged("deleteMissedCall", [&] {
        return m_components->deletion.deleteMissedCall(entryId, isSendDeleteMissedCallRequest);
    });
}

bool JournalService::deleteMissedCallList(const std::set<std::string>& entryIds) {
    return resultLogged("deleteMissedCallList",
                        [&] { return m_components->deletion.deleteMissedCallList(entryIds); });
}

bool JournalService::deleteMissedCallList() {
    return resultLogged("deleteMissedCallList",
                        [&] { return m_components->deletion.deleteMissedCallList(); });
}

// --- JournalServiceIfc: dialled calls ---

void JournalService::getDialledCallList(std::deque<DialledCallItem>& list) {
    runLogged("getDialledCallList", [&] { m_components->queries.getDialledCallList(list); });
}

bool JournalService::getDialledCall(const std::string& entryId, DialledCallItem& item) {
    return resultLogged("getDialledCall",
                        [&] { return m_components->queries.getDialledCall(entryId, item); });
}

bool JournalService::deleteDialledCall(const std::string& entryId) {
    return resultLogged("deleteDialledCall",
                        [&] { return m_components->deletion.deleteDialledCall(entryId); });
}

bool JournalService::deleteDialledCallList(const std::set<std::string>& entryIds) {
    return resultLogged("deleteDialledCallList",
                        [&] { return m_components->deletion.deleteDialledCallList(entryIds); });
}

bool JournalService::deleteDialledCallList() {
    return resultLogged("deleteDialledCallList",
                        [&] { return m_components->deletion.deleteDialledCallList(); });
}

bool JournalService::getLastDialledNumber(DialledCallItem& item) {
    return resultLogged("getLastDialledNumber",
                        [&] { return m_components->queries.getLastDialledNumber(item); });
}

// --- JournalServiceIfc: received calls ---

void JournalService::getReceivedCallList(std::deque<ReceivedCallItem>& list) {
    runLogged("getReceivedCallList", [&] { m_components->queries.getReceivedCallList(list); });
}

bool JournalService::getReceivedCall(const std::string& entryId, ReceivedCallItem& item) {
    return resultLogged("getReceivedCall",
                        [&] { return m_components->queries.getReceivedCall(entryId, item); });
}

bool JournalService::deleteReceivedCall(const std::string& entryId) {
    return resultLogged("deleteReceivedCall",
                        [&] { return m_components->deletion.deleteReceivedCall(entryId); });
}

bool JournalService::deleteReceivedCallList(const std::set<std::string>& entryIds) {
    return resultLogged("deleteReceivedCallList",
                        [&] { return m_components->deletion.deleteReceivedCallList(entryIds); });
}

bool JournalService::deleteReceivedCallList() {
    return resultLogged("deleteReceivedCallList",
                        [&] { return m_components->deletion.deleteReceivedCallList(); });
}

// --- JournalServiceIfc: forwarded calls ---

void JournalService::getForwardedCallList(std::deque<ForwardedCallItem>& list) {
    runLogged("getForwardedCallList", [&] { m_components->queries.getForwardedCallList(list); });
}

bool JournalService::getForwardedCall(const std::string& entryId, ForwardedCallItem& item) {
    return resultLogged("getForwardedCall",
                        [&] { return m_components->queries.getForwardedCall(entryId, item); });
}

bool JournalService::deleteForwardedCall(const std::string& entryId) {
    return resultLogged("deleteForwardedCall",
                        [&] { return m_components->deletion.deleteForwardedCall(entryId); });
}

bool JournalService::deleteForwardedCallList(const std::set<std::string>& entryIds) {
    return resultLogged("deleteForwardedCallList",
                        [&] { return m_components->deletion.deleteForwardedCallList(entryIds); });
}

bool JournalService::deleteForwardedCallList() {
    return resultLogged("deleteForwardedCallList",
                        [&] { return m_components->deletion.deleteForwardedCallList(); });
}

// --- JournalServiceIfc: callbacks ---

void JournalService::getCallBackList(std::deque<CallBackItem>& list) {
    runLogged("getCallBackList", [&] { m_components->queries.getCallBackList(list); });
}

bool JournalService::deleteCallBack(const std::string& entryId) {
    return resultLogged("deleteCallBack", [&] { return m_components->deletion.deleteCallBack(entryId); });
}

bool JournalService::deleteCallBackList(const std::set<std::string>& entryIds) {
    return resultLogged("deleteCallBackList",
                        [&] { return m_components->deletion.deleteCallBackList(entryIds); });
}

bool JournalService::deleteCallBackList() {
    return resultLogged("deleteCallBackList", [&] { return m_components->deletion.deleteCallBackList(); });
}

// --- JournalServiceIfc: the journal as a whole ---

bool JournalService::deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) {
    return resultLogged("deleteCalls", [&] {
        return m_components->deletion.deleteCalls(entryIds, isSendDeleteMissedCallRequest);
    });
}

bool JournalService::deleteAllCalls() {
    return resultLogged("deleteAllCalls", [&] { return m_components->deletion.deleteAllCalls(); });
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
    return resultLogged("refreshCallLog", [&] { return m_components->refresh.refreshCallLog(); });
}

bool JournalService::refreshCallLists() {
    return resultLogged("refreshCallLists", [&] { return m_components->refresh.refreshCallLists(); });
}

bool JournalService::setJournalServiceCallLogEventsDisabling(const std::string& value) {
    return resultLogged("setJournalServiceCallLogEventsDisabling",
                        [&] { return m_components->refresh.setJournalServiceCallLogEventsDisabling(value); });
}

bool JournalService::getCallRecordsAssociatedWith(const Contact& contact,
                                                  std::vector<Contact::CallRecord>& records) {
    return resultLogged("getCallRecordsAssociatedWith",
                        [&] { return m_components->queries.getCallRecordsAssociatedWith(contact, records); });
}

bool JournalService::replaceEntry(const MissedCallItem& item, bool reportsRemoved) {
    return resultLogged("replaceEntry",
                        [&] { return m_components->replacement.replaceEntry(item, reportsRemoved); });
}

bool JournalService::replaceEntry(const DialledCallItem& item, bool reportsRemoved) {
    return resultLogged("replaceEntry",
                        [&] { return m_components->replacement.replaceEntry(item, reportsRemoved); });
}

bool JournalService::replaceEntry(const ReceivedCallItem& item, bool reportsRemoved) {
    return resultLogged("replaceEntry",
                        [&] { return m_components->replacement.replaceEntry(item, reportsRemoved); });
}

bool JournalService::replaceEntry(const ForwardedCallItem& item, bool reportsRemoved) {
    return resultLogged("replaceEntry",
                        [&] { return m_components->replacement.replaceEntry(item, reportsRemoved); });
}

// --- ContactGetterIfc ---

void JournalService::getContactList(std::vector<Contact>& contacts) {
    runLogged("getContactList", [&] {
        m_components->lists.loadToRead();
        m_components->lists.contacts().getContactList(contacts);
    });
}

// --- JournalListMemoryIfc ---

void JournalService::loadListsAtFirstNeed() {
    m_components->lists.loadAtFirstNeed();
}

bool JournalService::unloadLists() {
    return resultLogged("unloadLists",
                        [&] { return journal::ListTransaction(m_components->lists).unload(); });
}

bool JournalService::areListsLoaded() const noexcept {
    return !m_components->lists.isUnloaded();
}

// --- JournalServiceObserverSubscriptionIfc ---

bool JournalService::subscribeForJournalEvents(JournalServiceObserverIfc* observer) {
    return resultLogged("subscribeForJournalEvents",
                        [&] { return m_components->subscription.subscribe(observer); });
}

bool JournalService::unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) {
    return resultLogged("unsubscribeForJournalEvents",
                        [&] { return m_components->subscription.unsubscribe(observer); });
}

void JournalService::loadCallListsFromDb() {
    m_components->loader.loadCallListsFromDb();
}

// --- CSTAEventIfc ---

void JournalService::deliverEvent(CSTAEvent* event) {
    if (event == nullptr) {
        return;
    }
    const char* type = typeid(*event).name();
    LOG_EVENTS(5, "deliverEvent[%s]", *type == '*' ? type + 1 : type);
    runLogged("deliverEvent", [this, event] { event->dispatch(*this); });
    m_components->blindTransfer.eventDelivered(event->getType());
}

// --- MgmtAgentIfc ---

bool JournalService::setData(ManageableData& data) {
    return resultLogged("setData", [&] { return m_components->managementAgent.setData(data); });
}

bool JournalService::getData(ManageableData& data) {
    return resultLogged("getData", [&] { return m_components->managementAgent.getData(data); });
}

void JournalService::manageableDataChanged(ManageableData& data) {
    runLogged("manageableDataChanged",
              [this, &data] { m_components->managementAgent.manageableDataChanged(data); });
}

bool JournalService::resetUserData() {
    return resultLogged("resetUserData", [&] { return m_components->refresh.resetUserData(); });
}

// --- journalling policy, timers and services ---

bool JournalService::handleCSTAEvent() {
    return resultLogged("handleCSTAEvent", [&] { return m_components->policy.handleCSTAEvent(); });
}

bool JournalService::isUCServiceRunning() {
    return resultLogged("isUCServiceRunning", [&] { return m_components->policy.isUCServiceRunning(); });
}

bool JournalService::isPallaxServiceRunning() {
    return resultLogged("isPallaxServiceRunning",
                        [&] { return m_components->policy.isPallaxServiceRunning(); });
}

bool JournalService::isWsiUcJournalAllowed() {
    return resultLogged("isWsiUcJournalAllowed",
                        [&] { return m_components->policy.isWsiUcJournalAllowed(); });
}

int JournalService::getAutoSaveVisitorCallLogToVantorTimerId() const {
    return resultLogged("getAutoSaveVisitorCallLogToVantorTimerId", [&] {
        return m_components->visitorCallLog.getAutoSaveVisitorCallLogToVantorTimerId();
    });
}

DigitAnalysisServiceIfc* JournalService::getDigitAnalysisService() const {
    return m_components->platform.m_digitAnalysisService;
}
