#pragma once

#include <deque>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "journalservice/ContactGetterIfc.h"
#include "journalservice/JournalListMemoryIfc.h"
#include "journalservice/JournalServiceIfc.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTAEventObserverBase.h"
#include "platform/framework/Service.h"
#include "platform/management/MgmtAgentIfc.h"

class DigitAnalysisServiceIfc;
class ObserverNotifierIfc;

namespace journal {
class Call;
struct JournalComponents;
}  // namespace journal

/// The call-journal service: the facade for the framework, the CSTA service, the clients and the management.
/// It owns the components that do the work (`journal::JournalComponents`) and delegates every call to one of
/// them. Each interface documents its operations.
///
/// Threads: call `init`, `timerEvent`, `deliverEvent` and the destructor from the line's strand only, one at
/// a time. `setData`, `getData` and the client interface are thread-safe after `init`.
///
/// Errors: an exception of a platform service is logged; the operation then returns false, 0 or an empty
/// value.
class JournalService : public Service,
                       public JournalServiceIfc,
                       public CSTAEventIfc,
                       public CSTAEventObserverBase,
                       public MgmtAgentIfc,
                       public ContactGetterIfc,
                       public JournalListMemoryIfc {
public:
    using Call = journal::Call;

    /// `notifier` is borrowed and outlives the service. If it is null, the service creates and owns one.
    explicit JournalService(ObserverNotifierIfc* notifier);
    ~JournalService() override;

    // Service
    void init(Context& context) override;
    void shutdown() override;
    void timerEvent(int id) override;
    void run() override;

    // JournalServiceIfc
    void getMissedCallList(std::deque<MissedCallItem>& list) override;
    bool getMissedCall(const std::string& entryId, MissedCallItem& item) override;
    void updateMissedCall(const MissedCallItem& item) override;
    bool setMissedCallListAsViewed(const std::set<std::string>& entryIds) override;
    void ageMissedCall(const std::string& entryId) override;
    bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) override;
    bool deleteMissedCallList(const std::set<std::string>& entryIds) override;
    bool deleteMissedCallList() override;
    void getDialledCallList(std::deque<DialledCallItem>& list) override;
    bool getDialledCall(const std::string& entryId, DialledCallItem& item) override;
    bool deleteDialledCall(const std::string& entryId) override;
    bool deleteDialledCallList(const std::set<std::string>& entryIds) override;
    bool deleteDialledCallList() override;
    bool getLastDialledNumber(DialledCallItem& item) override;
    void getReceivedCallList(std::deque<ReceivedCallItem>& list) override;
    bool getReceivedCall(const std::string& entryId, ReceivedCallItem& item) override;
    bool deleteReceivedCall(const std::string& entryId) override;
    bool deleteReceivedCallList(const std::set<std::string>& entryIds) override;
    bool deleteReceivedCallList() override;
    void getForwardedCallList(std::deque<ForwardedCallItem>& list) override;
    bool getForwardedCall(const std::string& entryId, ForwardedCallItem& item) override;
    bool deleteForwardedCall(const std::string& entryId) override;
    bool deleteForwardedCallList(const std::set<std::string>& entryIds) override;
    bool deleteForwardedCallList() override;
    void getCallBackList(std::deque<CallBackItem>& list) override;
    bool deleteCallBack(const std::string& entryId) override;
    bool deleteCallBackList(const std::set<std::string>& entryIds) override;
    bool deleteCallBackList() override;
    bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) override;
    bool deleteAllCalls() override;
    bool resetUserCalls() override;
    bool resetUserContacts() override;
    bool refreshCallLog() override;
    bool refreshCallLists() override;
    bool setJournalServiceCallLogEventsDisabling(const std::string& value) override;
    bool getCallRecordsAssociatedWith(const Contact& contact,
                                      std::vector<Contact::CallRecord>& records) override;
    bool replaceEntry(const MissedCallItem& item, bool reportsRemoved) override;
    bool replaceEntry(const DialledCallItem& item, bool reportsRemoved) override;
    bool replaceEntry(const ReceivedCallItem& item, bool reportsRemoved) override;
    bool replaceEntry(const ForwardedCallItem& item, bool reportsRemoved) override;

    // ContactGetterIfc
    void getContactList(std::vector<Contact>& contacts) override;

    // JournalServiceObserverSubscriptionIfc
    bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) override;
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) override;

    // JournalListMemoryIfc
    void loadListsAtFirstNeed() override;
    bool unloadLists() override;
    [[nodiscard]] bool areListsLoaded() const noexcept override;

    // CSTAEventIfc
    void deliverEvent(CSTAEvent* event) override;

    // CSTAEventObserverBase
    void handleCSTAOriginatedEvent(CSTAOriginatedEvent* event) override;
    void handleCSTAOfferedEvent(CSTAOfferedEvent* event) override;
    void handleCSTAQueuedEvent(CSTAQueuedEvent* event) override;
    void handleCSTADeliveredEvent(CSTADeliveredEvent* event) override;
    void handleCSTADivertedEvent(CSTADivertedEvent* event) override;
    void handleCSTAEstablishedEvent(CSTAEstablishedEvent* event) override;
    void handleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) override;
    void handleCSTAFailedEvent(CSTAFailedEvent* event) override;
    void handleCSTAHookswitchEvent(CSTAHookswitchEvent* event) override;
    void handleCSTAConferencedEvent(CSTAConferencedEvent* event) override;
    void handleCSTACallInformationEvent(CSTACallInformationEvent* event) override;
    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) override;
    void handleCSTAPrivateEvent(CSTAPrivateEvent* event) override;
    void handleCSTATransferredEvent(CSTATransferredEvent* event) override;
    void handleCSTACallBackEvent(CSTACallBackEvent* event) override;
    void handleCSTASwitchingFunctionDevices(CSTASwitchingFunctionDevices* event) override;
    void handleCSTAConferenceMembershipEvent(CSTAConferenceMembershipEvent* event) override;
    void handleCSTAHeldEvent(CSTAHeldEvent* event) override;
    void handleCSTARetrievedEvent(CSTARetrievedEvent* event) override;

    // MgmtAgentIfc
    bool setData(ManageableData& data) override;
    bool getData(ManageableData& data) override;
    void manageableDataChanged(ManageableData& data) override;
    bool resetUserData() override;

    /// False while another journal on the phone owns the call log: the journal then ignores CSTA events.
    [[nodiscard]] bool handleCSTAEvent();
    [[nodiscard]] bool isUCServiceRunning();
    [[nodiscard]] bool isPallaxServiceRunning();
    [[nodiscard]] bool isWsiUcJournalAllowed();
    [[nodiscard]] int getAutoSaveVisitorCallLogToVantorTimerId() const;
    /// Borrowed from the framework; null if it has none.
    [[nodiscard]] DigitAnalysisServiceIfc* getDigitAnalysisService() const;

protected:
    /// Fills the lists from the database. A service variant overrides it with its own load method.
    virtual void loadCallListsFromDb();
    /// For the service variants.
    [[nodiscard]] journal::JournalComponents& components() const noexcept { return *m_components; }

private:
    void constructorActions(ObserverNotifierIfc* notifier);

    // Constant after construction.
    std::unique_ptr<ObserverNotifierIfc> m_ownNotifier;
    std::unique_ptr<journal::JournalComponents> m_components;
};
