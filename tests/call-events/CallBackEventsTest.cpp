#include <gtest/gtest.h>

#include "platform/csta/CSTAPrivateEvents.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/RecordingObserver.h"

namespace journaltest {
namespace {

const CSTADevice kHere{CSTADevice::kLocalDevice, ""};

class CallBacks : public testing::Test {
protected:
    CallBacks() { line.notifier.subscribe(&observer, {}); }

    void reports(const CSTADevice& by, const CSTADevice& target, bool set, const char* words = "") {
        CSTACallBackEvent event;
        event.setOriginatingDevice(by);
        event.setTargetDevice(target);
        event.setSet(set);
        event.setPrivateData(words);
        line.parts.callBackEvents.handleCSTACallBackEvent(&event);
    }
    [[nodiscard]] std::vector<std::string> told() {
        std::vector<std::string> texts;
        for (const Callback& call : observer.callbacks(Callback::Kind::eCallBacksUpdate)) {
            texts.push_back(call.text());
        }
        return texts;
    }

    Line line;
    RecordingObserver observer;
};

TEST_F(CallBacks, ARequestIsAddedChangedAndRemoved) {
    line.phonebook.add("4711", "Ann", "Müller");
    reports(kHere, {"4711", ""}, true, "onBusy");
    auto items = line.list<CallBackItem>();
    ASSERT_EQ(items.size(), 1U);
    const std::string entryId = items[0].getEntryId();
    EXPECT_EQ(items[0].getFirstname() + " " + items[0].getSurname() + " " + items[0].getNumber(),
              "Ann Müller 4711");
    EXPECT_EQ(items[0].getTimeDate() + "Z", line.parts.clock.getCurrentTime());
    EXPECT_EQ(items[0].getCallBackType(), CallBackItem::CallBackType::eOnBusy);
    EXPECT_EQ(items[0].getCallBackState(), CallBackItem::CallBackState::eRequested);

    reports(kHere, {"4712", "Bob"}, true, "onNoReply");
    line.plays("passes 60");
    reports(kHere, {"4711", ""}, true, "onBusy ringing");
    items = line.list<CallBackItem>();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].getEntryId(), entryId);
    EXPECT_EQ(items[0].getCallBackState(), CallBackItem::CallBackState::eRinging);
    EXPECT_EQ(items[1].getSurname(), "Bob");

    reports(kHere, {"4711", ""}, false);
    reports(kHere, {"4711", ""}, false);
    reports(kHere, {"4712", ""}, true, "done");
    EXPECT_TRUE(line.list<CallBackItem>().empty());
    const std::string bob = items[1].getEntryId();
    EXPECT_EQ(told(), (std::vector<std::string>{
                          "callBacksUpdate(item " + entryId + ", entryId -, action 0)",
                          "callBacksUpdate(item " + bob + ", entryId -, action 0)",
                          "callBacksUpdate(item " + entryId + ", entryId " + entryId + ", action 1)",
                          "callBacksUpdate(item -, entryId " + entryId + ", action 2)",
                          "callBacksUpdate(item -, entryId " + bob + ", action 2)",
                      }));
    // One for each that came or went.
    EXPECT_EQ(observer.callbacks(Callback::Kind::eCallBacksCountUpdate).size(), 4U);
}

TEST_F(CallBacks, TheOtherPartyOfARequestIsTheOneThatCounts) {
    reports({"4711", "Ann"}, kHere, true);
    ASSERT_EQ(line.list<CallBackItem>().size(), 1U);
    EXPECT_EQ(line.list<CallBackItem>()[0].getNumber(), "4711");
    reports(kHere, {}, true);
    reports(kHere, kHere, true);
    EXPECT_EQ(line.list<CallBackItem>().size(), 1U);
}

}  // namespace
}  // namespace journaltest
