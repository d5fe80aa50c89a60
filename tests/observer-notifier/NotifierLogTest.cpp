#include "tests/observer-notifier/NotifierFixture.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using Observer = JournalServiceObserverIfc;

constexpr const char* kComponent = "Journal Service Events";

class NotifierLog : public Notifier {
protected:
    RecordingObserver observer;

    void SetUp() override {
        startAs(softwareTypes::sip);
        subscribeQuietly(observer);
        CapturedLog::reset();
    }

    static DialledCallItem adaMiller() {
        auto item = dialled("d1", {"4711", "4712"});
        item.setFirstname("Ada");
        item.setSurname("Miller");
        return item;
    }
};

TEST_F(NotifierLog, SaysWhatASubscriberIsToldAboutTheLastDialledEntry) {
    RecordingObserver another;
    notifier.subscribe(&another, adaMiller());
    EXPECT_THAT(CapturedLog::lines(kComponent), ElementsAre("subscribe:Ada:Miller::3", "\tnumber:4711\n",
                                                            "\tnumber:4712\n", "subscribe:2::3"));
}

TEST_F(NotifierLog, HasALineForEachListOfAnUpdateOfAll) {
    journal.lists.dialled = {adaMiller()};
    journal.lists.callBacks = {itemWithId<CallBackItem>("b1")};
    notifier.updateAll(2);
    EXPECT_THAT(CapturedLog::lines(kComponent),
                ElementsAre("updateSingleMissedCallCountAndCalls:2:::3:0",
                            "updateSingleDialledCalls:Ada:Miller::3", "\tnumber:4711\n", "\tnumber:4712\n",
                            "updateSingleReceivedCalls:::3", "updateSingleForwardedCalls:::3",
                            "updateSingleCallbacks:::3", "updateSingleCallbackCount:1"));
}

TEST_F(NotifierLog, NamesTheItemTheIdAndTheActionOfEachUpdate) {
    auto missedItem = missed("m1", false);
    MissedCallItem::MissedCallInfo occurrence;
    occurrence.setPresentationC(5);
    missedItem.addCallInfoToList(occurrence);

    notifier.updateMissedCallCountAndCalls(missedItem, 7, "17", Observer::eItemUpdated);
    notifier.updateMissedCallCount(7);
    notifier.updateReceivedCalls(itemWithId<ReceivedCallItem>("r1"), "17", Observer::eItemUpdated);
    notifier.updateForwardedCalls(itemWithId<ForwardedCallItem>("f1"), "17", Observer::eItemUpdated);
    notifier.updateCallbacks(itemWithId<CallBackItem>("b1"), "b0", Observer::eItemAdded);

    EXPECT_THAT(CapturedLog::lines(kComponent),
                ElementsAre("updateSingleMissedCallCountAndCalls:7:m1:17:1:5",
                            "updateSingleMissedCallCount:7:::3", "updateSingleReceivedCalls:r1:17:1",
                            "updateSingleForwardedCalls:f1:17:1", "updateSingleCallbacks:b1:b0:0"));
}

TEST_F(NotifierLog, IsDetailOfTheNotifier) {
    notifier.updateAll(2);
    EXPECT_THAT(CapturedLog::lines(),
                Each(AllOf(Field(&CapturedLog::Line::level, 6),
                           Field(&CapturedLog::Line::sourceFile, "./src/ObserverNotifier"))));
    EXPECT_FALSE(CapturedLog::lines().empty());
}

TEST_F(NotifierLog, IsSilentBelowTheDetailLevelAndTellsTheSame) {
    CapturedLog::setLevel(5);
    notifier.updateAll(2);
    EXPECT_THAT(CapturedLog::lines(), IsEmpty());
    EXPECT_EQ(observer.count(), 7U);
}

}  // namespace
}  // namespace journaltest
