#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "include/JournalServiceObserverProxy.h"
#include "include/ObserverNotifier.h"
#include "platform/journal-library/ObserverMessage.h"
#include "tests/support/FakeFramework.h"
#include "tests/support/FakeJournalService.h"

namespace journaltest {
namespace {

using journalxml::ObserverMessage;
using testing::ElementsAre;
using Observer = JournalServiceObserverIfc;

class ObserverProxy : public testing::Test {
protected:
    RecordingProxyRequest request;
    JournalServiceObserverProxy proxy;

    /// The one message that was sent, as a client reads it.
    ObserverMessage theMessage() const {
        const std::vector<std::string> sent = request.sent();
        EXPECT_EQ(sent.size(), 1U);
        const auto message = sent.empty() ? std::nullopt : journalxml::parseObserverMessage(sent.front());
        EXPECT_TRUE(message.has_value());
        return message.value_or(ObserverMessage{});
    }

    template <typename Item>
    void expectItem(const ObserverMessage& message, const Item& item) {
        ASSERT_TRUE(std::holds_alternative<Item>(message.item));
        EXPECT_TRUE(std::get<Item>(message.item).sameContent(item));
    }
};

/// An item whose texts hold what a far end may send.
template <typename Item>
Item awkwardItem(const std::string& entryId) {
    Item item;
    item.setEntryId(entryId);
    item.setFirstname("Zo\xC3\xAB <b>&amp;");
    item.setSurname(std::string("\0\x01\xFF\r\n ]]>", 8));
    return item;
}

TEST_F(ObserverProxy, SelectsItsProtocolOnceAndSendsNothingYet) {
    proxy.initProxy(request);
    EXPECT_THAT(request.protocols(), ElementsAre("opera_text"));
    EXPECT_TRUE(request.sent().empty());
}

TEST_F(ObserverProxy, IsSilentBeforeItHasAClient) {
    proxy.missedCallsCountUpdate(1);
    proxy.callBacksUpdate({}, {}, Observer::eListChanged);
    proxy.initProxy(request);
    EXPECT_TRUE(request.sent().empty());
}

TEST_F(ObserverProxy, SendsTheCountsAsTheyAre) {
    struct Row {
        int count;
        unsigned sent;
    };
    for (const Row& row :
         {Row{0, 0U}, Row{7, 7U}, Row{std::numeric_limits<int>::max(), 2147483647U}, Row{-1, 4294967295U}}) {
        RecordingProxyRequest client;
        proxy.initProxy(client);
        proxy.missedCallsCountUpdate(row.count);
        proxy.callBacksCountUpdate(row.count);
        ASSERT_EQ(client.sent().size(), 2U);
        const auto missed = journalxml::parseObserverMessage(client.sent()[0]);
        const auto callBacks = journalxml::parseObserverMessage(client.sent()[1]);
        ASSERT_TRUE(missed && callBacks);
        EXPECT_EQ(missed->event, ObserverMessage::Event::eMissedCallsCountUpdate);
        EXPECT_EQ(missed->count, row.sent);
        EXPECT_EQ(callBacks->event, ObserverMessage::Event::eCallBacksCountUpdate);
        EXPECT_EQ(callBacks->count, row.sent);
    }
}

template <typename Item>
struct ListCallback {
    ObserverMessage::Event event;
    void (Observer::*call)(Item, std::string, Observer::ActionType);
};

template <typename Item>
void sendsWhole(const ListCallback<Item>& callback) {
    for (const auto action : {Observer::eItemAdded, Observer::eItemUpdated, Observer::eItemDeleted,
                              Observer::eListChanged, Observer::eListCleared}) {
        RecordingProxyRequest client;
        JournalServiceObserverProxy proxy;
        proxy.initProxy(client);
        const Item item = awkwardItem<Item>("2026-11-21T05:22:05Z0000002A");
        (static_cast<Observer&>(proxy).*callback.call)(item, "<17>", action);

        ASSERT_EQ(client.sent().size(), 1U);
        const auto message = journalxml::parseObserverMessage(client.sent().front());
        ASSERT_TRUE(message.has_value());
        EXPECT_EQ(message->event, callback.event);
        EXPECT_EQ(message->action, action);
        EXPECT_EQ(message->entryId, "<17>");
        ASSERT_TRUE(std::holds_alternative<Item>(message->item));
        EXPECT_TRUE(std::get<Item>(message->item).sameContent(item));
    }
}

TEST_F(ObserverProxy, SendsItemEntryIdAndActionOfEachListSoThatTheyReadBackEqual) {
    using Event = ObserverMessage::Event;
    sendsWhole<MissedCallItem>({Event::eMissedCallsUpdate, &Observer::missedCallsUpdate});
    sendsWhole<DialledCallItem>({Event::eDialledCallsUpdate, &Observer::dialledCallsUpdate});
    sendsWhole<ReceivedCallItem>({Event::eReceivedCallsUpdate, &Observer::receivedCallsUpdate});
    sendsWhole<ForwardedCallItem>({Event::eForwardedCallsUpdate, &Observer::forwardedCallsUpdate});
    sendsWhole<CallBackItem>({Event::eCallBacksUpdate, &Observer::callBacksUpdate});
}

TEST_F(ObserverProxy, CarriesTheOccurrencesToo) {
    proxy.initProxy(request);
    auto item = awkwardItem<DialledCallItem>("d1");
    DialledCallItem::DialledCallInfo occurrence;
    occurrence.setNumber("*61");
    occurrence.setSubstituteNumber("4711");
    occurrence.setFeatureAccessCode(true);
    occurrence.setDuration("01:01");
    item.addCallInfoToList(occurrence);

    proxy.dialledCallsUpdate(item, "17", Observer::eItemUpdated);
    expectItem(theMessage(), item);
}

TEST_F(ObserverProxy, TellsARemoteClientWhatTheNotifierTellsALocalOne) {
    FakeJournalService journal;
    journal.lists.missed.resize(2);
    journal.lists.callBacks.resize(1);
    ObserverNotifier notifier;
    notifier.init(&journal, "Norlith Qorvex");
    proxy.initProxy(request);

    ASSERT_TRUE(notifier.subscribe(&proxy, {}));
    notifier.updateReceivedCalls("17");
    ASSERT_TRUE(notifier.unsubscribe(&proxy));
    notifier.updateAll(1);

    std::vector<std::string> events;
    for (const std::string& text : request.sent()) {
        const auto message = journalxml::parseObserverMessage(text);
        ASSERT_TRUE(message.has_value()) << text;
        events.emplace_back(journalxml::nameOf(message->event));
    }
    EXPECT_THAT(events, ElementsAre("missedCallsCountUpdate", "dialledCallsUpdate", "callBacksCountUpdate",
                                    "receivedCallsUpdate"));
}

}  // namespace
}  // namespace journaltest
