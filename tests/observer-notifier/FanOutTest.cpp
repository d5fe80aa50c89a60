// Which callbacks each operation of the notifier makes, in which order and with which values.

#include <functional>
#include <ostream>

#include "tests/observer-notifier/NotifierFixture.h"

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Ifc = ObserverNotifierIfc;
using Observer = JournalServiceObserverIfc;

struct Row {
    const char* name;
    std::function<void(Ifc&)> update;
    std::vector<std::string> told;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

const auto kMissed = missed("m1", false);
const auto kDialled = dialled("d1", {"4711"});
const auto kReceived = itemWithId<ReceivedCallItem>("r1");
const auto kForwarded = itemWithId<ForwardedCallItem>("f1");
const auto kCallBack = itemWithId<CallBackItem>("b1");

class EachUpdate : public Notifier, public testing::WithParamInterface<Row> {};

TEST_P(EachUpdate, TellsEveryObserverTheSameInTheOrderOfTheTable) {
    journal.lists.dialled = {dialled("newest", {"1"}), dialled("older", {"2"})};
    journal.lists.callBacks = {kCallBack, itemWithId<CallBackItem>("b2")};
    startAs(softwareTypes::qorvex);
    RecordingObserver first;
    RecordingObserver second;
    subscribeQuietly(first);
    subscribeQuietly(second);

    GetParam().update(notifier);

    EXPECT_THAT(first.texts(), ElementsAreArray(GetParam().told));
    EXPECT_THAT(second.texts(), ElementsAreArray(GetParam().told));
}

TEST_P(EachUpdate, ReturnsAtOnceAndReadsNothingWithoutObservers) {
    startAs(softwareTypes::sip);
    GetParam().update(notifier);
    EXPECT_THAT(journal.calls(), IsEmpty());
}

const std::vector<Row> kRows = {
    // missed
    {"MissedByAction",
     [](Ifc& n) { n.updateMissedCallCountAndCalls(Observer::eListCleared); },
     {"missedCallsCountUpdate(0)", "missedCallsUpdate(item -, entryId -, action 4)"}},
    {"MissedWithoutArguments",
     [](Ifc& n) { n.updateMissedCallCountAndCalls(); },
     {"missedCallsCountUpdate(0)", "missedCallsUpdate(item -, entryId -, action 3)"}},
    {"MissedByCount",
     [](Ifc& n) { n.updateMissedCallCountAndCalls(7U); },
     {"missedCallsCountUpdate(7)", "missedCallsUpdate(item -, entryId -, action 3)"}},
    {"MissedByCountAndId",
     [](Ifc& n) { n.updateMissedCallCountAndCalls(7U, "17"); },
     {"missedCallsCountUpdate(7)", "missedCallsUpdate(item -, entryId 17, action 2)"}},
    {"MissedItemAdded",
     [](Ifc& n) { n.updateMissedCallCountAndCalls(kMissed, 7, "", Observer::eItemAdded); },
     {"missedCallsCountUpdate(7)", "missedCallsUpdate(item m1, entryId -, action 0)"}},
    {"MissedItemUpdated",
     [](Ifc& n) { n.updateMissedCallCountAndCalls(kMissed, 7, "17", Observer::eItemUpdated); },
     {"missedCallsCountUpdate(7)", "missedCallsUpdate(item m1, entryId 17, action 1)"}},
    {"MissedCountOnly", [](Ifc& n) { n.updateMissedCallCount(7); }, {"missedCallsCountUpdate(7)"}},
    // dialled
    {"DialledByAction",
     [](Ifc& n) { n.updateDialledCalls(Observer::eListCleared); },
     {"dialledCallsUpdate(item -, entryId -, action 4)"}},
    {"DialledItem",
     [](Ifc& n) { n.updateDialledCalls(kDialled); },
     {"dialledCallsUpdate(item d1, entryId -, action 3)"}},
    {"DialledItemAndId",
     [](Ifc& n) { n.updateDialledCalls(kDialled, "17"); },
     {"dialledCallsUpdate(item d1, entryId 17, action 2)"}},
    {"DialledItemUpdated",
     [](Ifc& n) { n.updateDialledCalls(kDialled, "17", Observer::eItemUpdated); },
     {"dialledCallsUpdate(item d1, entryId 17, action 1)"}},
    // received
    {"ReceivedByAction",
     [](Ifc& n) { n.updateReceivedCalls(Observer::eListCleared); },
     {"receivedCallsUpdate(item -, entryId -, action 4)"}},
    {"ReceivedWithoutArguments",
     [](Ifc& n) { n.updateReceivedCalls(); },
     {"receivedCallsUpdate(item -, entryId -, action 3)"}},
    {"ReceivedById",
     [](Ifc& n) { n.updateReceivedCalls("17"); },
     {"receivedCallsUpdate(item -, entryId 17, action 2)"}},
    {"ReceivedItemAdded",
     [](Ifc& n) { n.updateReceivedCalls(kReceived, "", Observer::eItemAdded); },
     {"receivedCallsUpdate(item r1, entryId -, action 0)"}},
    // forwarded
    {"ForwardedWithoutArguments",
     [](Ifc& n) { n.updateForwardedCalls(); },
     {"forwardedCallsUpdate(item -, entryId -, action 3)"}},
    {"ForwardedById",
     [](Ifc& n) { n.updateForwardedCalls("17"); },
     {"forwardedCallsUpdate(item -, entryId 17, action 2)"}},
    {"ForwardedItemUpdated",
     [](Ifc& n) { n.updateForwardedCalls(kForwarded, "17", Observer::eItemUpdated); },
     {"forwardedCallsUpdate(item f1, entryId 17, action 1)"}},
    // callbacks: the journal holds two
    {"CallbackItemAdded",
     [](Ifc& n) { n.updateCallbacks(kCallBack, "", Observer::eItemAdded); },
     {"callBacksUpdate(item b1, entryId -, action 0)"}},
    {"CallbackCount", [](Ifc& n) { n.updateCallbackCount(); }, {"callBacksCountUpdate(2)"}},
    {"CallbacksAndCount",
     [](Ifc& n) { n.updateCallbacksAndCount(); },
     {"callBacksUpdate(item -, entryId -, action 3)", "callBacksCountUpdate(2)"}},
    {"CallbacksAndCountById",
     [](Ifc& n) { n.updateCallbacksAndCount("b9"); },
     {"callBacksUpdate(item -, entryId b9, action 2)", "callBacksCountUpdate(2)"}},
    // several lists
    {"AllExceptCallbacks",
     [](Ifc& n) { n.updateAllExceptCallbacks(7); },
     {"missedCallsCountUpdate(7)", "missedCallsUpdate(item -, entryId -, action 3)",
      "dialledCallsUpdate(item -, entryId -, action 3)", "receivedCallsUpdate(item -, entryId -, action 3)",
      "forwardedCallsUpdate(item -, entryId -, action 3)"}},
    {"All",
     [](Ifc& n) { n.updateAll(7); },
     {"missedCallsCountUpdate(7)", "missedCallsUpdate(item -, entryId -, action 3)",
      "dialledCallsUpdate(item newest, entryId -, action 3)",
      "receivedCallsUpdate(item -, entryId -, action 3)", "callBacksUpdate(item -, entryId -, action 3)",
      "callBacksCountUpdate(2)"}},
};

INSTANTIATE_TEST_SUITE_P(Notifier, EachUpdate, testing::ValuesIn(kRows),
                         [](const auto& test) { return std::string(test.param.name); });

using FanOut = Notifier;

TEST_F(FanOut, OfAllListsTellsForwardedCallsOnSipPhonesOnly) {
    for (const char* const type : {"Norlith SIP", "Norlith Qorvex", "norlith sip", "Norlith SIP ", ""}) {
        ObserverNotifier tested;
        tested.init(&journal, type);
        RecordingObserver observer;
        tested.subscribe(&observer, {});
        observer.clear();

        tested.updateAll(0);
        const std::size_t expected = std::string(type) == "Norlith SIP" ? 1 : 0;
        EXPECT_EQ(observer.callbacks(Callback::Kind::eForwardedCallsUpdate).size(), expected) << type;

        observer.clear();
        tested.updateAllExceptCallbacks(0);
        EXPECT_EQ(observer.callbacks(Callback::Kind::eForwardedCallsUpdate).size(), 1U) << type;
    }
}

TEST_F(FanOut, OfAllListsOnASipPhoneKeepsTheOrderOfTheLists) {
    startAs(softwareTypes::sip);
    RecordingObserver observer;
    subscribeQuietly(observer);
    notifier.updateAll(1);
    EXPECT_THAT(observer.texts(),
                ElementsAre("missedCallsCountUpdate(1)", "missedCallsUpdate(item -, entryId -, action 3)",
                            "dialledCallsUpdate(item -, entryId -, action 3)",
                            "receivedCallsUpdate(item -, entryId -, action 3)",
                            "forwardedCallsUpdate(item -, entryId -, action 3)",
                            "callBacksUpdate(item -, entryId -, action 3)", "callBacksCountUpdate(0)"));
}

TEST_F(FanOut, CarriesTheWholeItemWithItsOccurrences) {
    startAs(softwareTypes::qorvex);
    RecordingObserver observer;
    subscribeQuietly(observer);
    auto item = dialled("d1", {"4711", "4712"});
    item.setFirstname("Ada");
    item.setUniqueId("17");

    notifier.updateDialledCalls(item, "17", Observer::eItemUpdated);
    journal.lists.dialled = {item};
    notifier.updateAll(0);

    const auto dialledUpdates = observer.callbacks(Callback::Kind::eDialledCallsUpdate);
    ASSERT_EQ(dialledUpdates.size(), 2U);
    EXPECT_TRUE(dialledUpdates[0].as<DialledCallItem>().sameContent(item));
    EXPECT_TRUE(dialledUpdates[1].as<DialledCallItem>().sameContent(item));
}

TEST_F(FanOut, CountsTheCallbacksAfreshForEachObserver) {
    startAs(softwareTypes::qorvex);
    RecordingObserver takesOneAway;
    RecordingObserver last;
    subscribeQuietly(takesOneAway);
    subscribeQuietly(last);
    takesOneAway.setDuring([this](const Callback&) { journal.lists.callBacks.pop_back(); });
    journal.lists.callBacks = {kCallBack, kCallBack, kCallBack};

    notifier.updateCallbackCount();

    EXPECT_THAT(takesOneAway.texts(), ElementsAre("callBacksCountUpdate(3)"));
    EXPECT_THAT(last.texts(), ElementsAre("callBacksCountUpdate(2)"));
}

TEST_F(FanOut, LetsAnObserverReadAllListsFromInsideItsCallback) {
    startAs(softwareTypes::sip);
    RecordingObserver observer([this](const Callback&) { readAllLists(journal); });
    subscribeQuietly(observer);
    notifier.updateAll(0);
    EXPECT_EQ(observer.count(), 7U);
}

}  // namespace
}  // namespace journaltest
