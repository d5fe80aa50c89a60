#include "journalservice/JournalServiceObserverProxy.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/framework/ProxyRequest.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/RecordingObserver.h"

extern "C" void* createJournalServiceObserverProxy() noexcept;

namespace journaltest {
namespace {

using Observer = JournalServiceObserverIfc;

class RecordingProxyRequest final : public ProxyRequest {
public:
    std::string sent;

    void selectProtocol(const std::string& protocolName) override { sent += protocolName; }
    void send(const std::string& request) override {
        sent += "; " + Callback{journalxml::parseObserverMessage(request).value()}.text();
    }
};

TEST(ObserverProxy, SendsEveryCallbackToItsClientOnceItHasOne) {
    const std::unique_ptr<Proxy> proxy(static_cast<Proxy*>(createJournalServiceObserverProxy()));
    auto* const observer = dynamic_cast<Observer*>(proxy.get());
    ASSERT_NE(observer, nullptr);
    RecordingProxyRequest client;
    observer->missedCallsCountUpdate(1);
    proxy->initProxy(client);
    observer->missedCallsCountUpdate(7);
    observer->missedCallsUpdate(itemOf<MissedCallItem>("m", "", {}), "<1>", Observer::eItemAdded);
    observer->dialledCallsUpdate(itemOf<DialledCallItem>("d", "", {}), "2", Observer::eItemUpdated);
    observer->receivedCallsUpdate(itemOf<ReceivedCallItem>("r", "", {}), "3", Observer::eItemDeleted);
    observer->forwardedCallsUpdate(itemOf<ForwardedCallItem>("f", "", {}), "4", Observer::eListChanged);
    observer->callBacksUpdate({}, "5", Observer::eListCleared);
    observer->callBacksCountUpdate(-1);
    EXPECT_EQ(client.sent,
              "opera_text; missedCount(7); missed(m, <1>, 0); dialled(d, 2, 1); received(r, 3, 2); "
              "forwarded(f, 4, 3); callBacks(-, 5, 4); callBacksCount(4294967295)");
}

}  // namespace
}  // namespace journaltest
