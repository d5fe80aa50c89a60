#include "journalservice/JournalServiceObserverProxy.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/framework/ProxyRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/RecordingObserver.h"

extern "C" void* createJournalServiceObserverProxy() noexcept;

namespace journaltest {
namespace {

using Observer = JournalServiceObserverIfc;

class RecordingProxyRequest final : public ProxyRequest {
public:
    std::string sent;
    std::string last;

    void selectProtocol(const std::string& protocolName) override { sent += protocolName; }
    void send(const std::string& request) override {
        last = request;
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

TEST(ObserverProxy, SendsEveryClientTheItemAsItIsNow) {
    RecordingProxyRequest clients[2];
    JournalServiceObserverProxy proxies[2];
    auto item = itemOf<MissedCallItem>("m", "", {});
    for (const char* const name : {"Old", "New"}) {
        item.setSurname(name);
        for (std::size_t number = 0; number < 2; ++number) {
            proxies[number].initProxy(clients[number]);
            proxies[number].missedCallsUpdate(item, "1", Observer::eItemUpdated);
            EXPECT_EQ(clients[number].last,
                      JournalServiceHelper::obsReqMissedCallsUpdate(item, "1", Observer::eItemUpdated));
        }
    }
}

}  // namespace
}  // namespace journaltest
