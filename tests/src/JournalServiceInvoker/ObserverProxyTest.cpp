#include "journalservice/JournalServiceObserverProxy.h"

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/framework/ProxyRequest.h"
#include "platform/journal-library/ObserverMessage.h"

extern "C" void* createJournalServiceObserverProxy() noexcept;

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Observer = JournalServiceObserverIfc;

/// What the client reads: "missedCallsCountUpdate 3", "missedCallsUpdate 2 of 17: id".
std::string shown(const std::string& text) {
    const auto message = journalxml::parseObserverMessage(text);
    if (!message) {
        return "unreadable";
    }
    const auto change = [&message](const auto& item) {
        if constexpr (std::is_same_v<std::decay_t<decltype(item)>, std::monostate>) {
            return std::to_string(message->count);
        } else {
            return std::to_string(message->action) + " of " + message->entryId + ": " + item.getEntryId();
        }
    };
    return std::string(nameOf(message->event)) + " " + std::visit(change, message->item);
}

template <typename Item>
Item withId(const std::string& entryId) {
    Item item;
    item.setEntryId(entryId);
    return item;
}

class RecordingProxyRequest final : public ProxyRequest {
public:
    std::string protocol;
    std::vector<std::string> sent;

    void selectProtocol(const std::string& protocolName) override { protocol += protocolName; }
    void send(const std::string& request) override { sent.push_back(request); }
};

TEST(ObserverProxy, SendsEveryCallbackToItsClientOnceItHasOne) {
    const std::unique_ptr<Proxy> proxy(static_cast<Proxy*>(createJournalServiceObserverProxy()));
    auto* const observer = dynamic_cast<Observer*>(proxy.get());
    ASSERT_NE(observer, nullptr);
    RecordingProxyRequest client;
    observer->missedCallsCountUpdate(1);
    proxy->initProxy(client);
    EXPECT_EQ(client.protocol, "opera_text");
    EXPECT_THAT(client.sent, IsEmpty());

    observer->missedCallsCountUpdate(7);
    observer->missedCallsUpdate(withId<MissedCallItem>("m"), "<1>", Observer::eItemAdded);
    observer->dialledCallsUpdate(withId<DialledCallItem>("d"), "2", Observer::eItemUpdated);
    observer->receivedCallsUpdate(withId<ReceivedCallItem>("r"), "3", Observer::eItemDeleted);
    observer->forwardedCallsUpdate(withId<ForwardedCallItem>("f"), "4", Observer::eListChanged);
    observer->callBacksUpdate(withId<CallBackItem>("b"), "5", Observer::eListCleared);
    observer->callBacksCountUpdate(-1);
    std::vector<std::string> read;
    for (const std::string& text : client.sent) {
        read.push_back(shown(text));
    }
    EXPECT_THAT(read, ElementsAre("missedCallsCountUpdate 7", "missedCallsUpdate 0 of <1>: m",
                                  "dialledCallsUpdate 1 of 2: d", "receivedCallsUpdate 2 of 3: r",
                                  "forwardedCallsUpdate 3 of 4: f", "callBacksUpdate 4 of 5: b",
                                  "callBacksCountUpdate 4294967295"));
}

}  // namespace
}  // namespace journaltest
