// The least framework that loads the journal: it creates the service, connects it, delivers the events of one
// call by hand, observes what the journal files, and ends. docs/embedding.md describes each step.

#include <dlfcn.h>

#include <cstdio>
#include <memory>
#include <string>

#include "Framework.h"
#include "journalservice/JournalServiceIfc.h"
#include "journalservice/JournalServiceObserverIfc.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/framework/Service.h"

namespace {

/// Prints missed calls.
class Observer : public JournalServiceObserverIfc {
public:
    void missedCallsCountUpdate(int count) override { std::printf("new missed calls: %d\n", count); }
    void missedCallsUpdate(MissedCallItem item, std::string /*entryId*/, ActionType /*action*/) override {
        for (const auto& call : item.getMissedCallInfoList()) {
            std::printf("missed: %s %s\n", call.getNumber().c_str(), item.getSurname().c_str());
        }
    }
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override {}
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override {}
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override {}
    void callBacksUpdate(CallBackItem, std::string, ActionType) override {}
    void callBacksCountUpdate(int /*count*/) override {}
};

/// A call that rings at the telephone, and whose caller gives up.
void reportCall(CSTAEventIfc& receiver) {
    const CSTADevice own{CSTADevice::kLocalDevice, ""};
    const CSTADevice caller{"+4930123456", "Ann Miller"};
    CSTADeliveredEvent rings;
    rings.setMonitorCrossRefID("1");
    rings.setConnection("c1", CSTADevice::kLocalDevice);
    rings.setAlertingDevice(own);
    rings.setCallingDevice(caller);
    rings.setCalledDevice(own);
    rings.setLocalConnectionInfo(CSTA_LCS_Alerting);
    receiver.deliverEvent(&rings);

    CSTAConnectionClearedEvent ends;
    ends.setMonitorCrossRefID("1");
    ends.setConnection("c1", CSTADevice::kLocalDevice);
    ends.setReleasingDevice(caller);
    receiver.deliverEvent(&ends);
}

}  // namespace

int main() {
    // 1. Load the library and create the service.
    void* const library = dlopen("libjournalservice.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const auto create = reinterpret_cast<void* (*)()>(dlsym(library, "createJournalService"));
    Framework framework;  // outlives the service
    const std::unique_ptr<Service> service(static_cast<Service*>(create()));
    auto* const journal = dynamic_cast<JournalServiceIfc*>(service.get());

    // 2. Connect it: it finds the clock and the switch, and starts the monitor of the telephone.
    service->init(framework);
    service->run();

    // 3. Observe.
    Observer observer;
    journal->subscribeForJournalEvents(&observer);

    // 4. Deliver the events of calls.
    if (CSTAEventIfc* const receiver = framework.telephoneSwitch.receiver) {
        reportCall(*receiver);
    }

    // 5. End.
    journal->unsubscribeForJournalEvents(&observer);
    service->shutdown();
    return 0;
}
