// Events of the line and not of one call: waiting callbacks, the devices of the phone, entries of the
// switch's log.

#include <gtest/gtest.h>

#include <regex>

#include "platform/csta/CSTAPrivateEvents.h"
#include "platform/csta/CSTASystemEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

const CSTADevice kHere{CSTADevice::kLocalDevice, ""};

class LineEvents : public testing::Test {
protected:
    void callsBack(const CSTADevice& by, const CSTADevice& target, bool set, const char* words = "") {
        CSTACallBackEvent event;
        event.setOriginatingDevice(by);
        event.setTargetDevice(target);
        event.setSet(set);
        event.setPrivateData(words);
        phone.delivers(event);
    }
    /// The list: "4711 Ann Adams busy ringing"; the type and the state where they are not the usual ones.
    std::string callBacks() {
        std::string text;
        for (const CallBackItem& item : phone.list<CallBackItem>()) {
            const auto type = item.getCallBackType();
            const bool rings = item.getCallBackState() == CallBackItem::CallBackState::eRinging;
            text += (text.empty() ? "" : ", ") + item.getNumber() + " " + item.getFirstname() + " " +
                    item.getSurname() + (type == CallBackItem::CallBackType::eOnBusy ? " busy" : "") +
                    (type == CallBackItem::CallBackType::eOnNoReply ? " no reply" : "") +
                    (rings ? " ringing" : "");
        }
        return text;
    }
    /// The devices as "TYPE ID"; returns the requests for monitors that follow.
    std::string hasDevices(const std::string& devices) {
        CSTASwitchingFunctionDevices event;
        for (const std::string& device : split(devices, ',')) {
            event.addDevice(std::stoi(device), device.substr(2));
        }
        phone.service();
        phone.csta.forgetRequests();
        phone.delivers(event);
        return phone.csta.asked();
    }

    SimulatedPhone phone{softwaretypes::sip};
};

TEST_F(LineEvents, OfACallBackAddChangeAndRemoveIt) {
    RecordingObserver observer;
    phone.service().subscribeForJournalEvents(&observer);
    observer.clear();
    phone.phonebook.add("4711", "Ann", "Adams");
    callsBack(kHere, {"4711", ""}, true, "onBusy");
    callsBack(kHere, {"4712", "Bob"}, true, "onNoReply");
    EXPECT_EQ(callBacks(), "4712  Bob no reply, 4711 Ann Adams busy");
    const auto items = phone.list<CallBackItem>();
    EXPECT_EQ(items[1].getTimeDate() + "Z", phone.components().clock.getCurrentTime());
    phone.plays("passes 60");
    callsBack(kHere, {"4711", ""}, true, "onBusy ringing");
    EXPECT_EQ(callBacks(), "4711 Ann Adams busy ringing, 4712  Bob no reply");
    callsBack(kHere, {"4712", ""}, true, "ringing");
    EXPECT_EQ(callBacks(), "4712  Bob ringing, 4711 Ann Adams busy ringing") << "a known name stays";
    callsBack(kHere, {"4711", ""}, false);
    callsBack(kHere, {"4711", ""}, false);
    callsBack(kHere, {"4712", ""}, true, "done");
    EXPECT_EQ(callBacks(), "");

    std::string told = std::regex_replace(observer.heard(), std::regex(items[0].getEntryId()), "Bob");
    told = std::regex_replace(told, std::regex(items[1].getEntryId()), "Ann");
    EXPECT_EQ(told,
              "callBacks(Ann, -, 0); callBacksCount(1); callBacks(Bob, -, 0); callBacksCount(2); "
              "callBacks(Ann, Ann, 1); callBacks(Bob, Bob, 1); "
              "callBacks(-, Ann, 2); callBacksCount(1); callBacks(-, Bob, 2); callBacksCount(0)");

    callsBack({"4713", "Cyd"}, kHere, true);
    callsBack(kHere, {}, true);
    EXPECT_EQ(callBacks(), "4713  Cyd") << "the other party counts";
}

TEST_F(LineEvents, OfACallBackTellWhichNumberItIsAndDropTheOldestOfAThousand) {
    Contact& ann = phone.phonebook.contacts.emplace_back();
    ann.setOffice("1");
    ann.setMobile("2");
    ann.setPrivate("3");
    ann.setOffice2("4");
    for (int call = 1000; call > 0; --call) {
        callsBack(kHere, {std::to_string(call), ""}, true);
    }
    callsBack(kHere, {"1001", ""}, true);
    const auto items = phone.list<CallBackItem>();
    ASSERT_EQ(items.size(), 1000U);
    EXPECT_EQ(items.back().getNumber(), "999");
    EXPECT_EQ(phone.database.rows<CallBackItem>("CallLogCallBacks").size(), 1000U);
    using enum NumberType::NT;
    auto item = items.begin();
    for (const auto type : {eUnknown, eOffice, eMobile, ePrivate, eOffice2, eUnknown}) {
        EXPECT_EQ((item++)->getNumberType(), type);
    }
}

TEST_F(LineEvents, OfTheDevicesMoveTheMonitorsAndSayWhoseCallsAreMissed) {
    EXPECT_EQ(hasDevices("0 localDeviceID,1 4,2 2050,3 5,2 2051,2 bluetoothDeviceID,2 2050"),
              "start localDeviceID; start 2050; start 2051; start bluetoothDeviceID");
    phone.plays(
        "rings 1 4711 at=2050; rings 2 4712 at=2051; rings 3 4713 at=bluetoothDeviceID; rings 4 4714;"
        "rings 5 4715 at=2052; clears 1; clears 2; clears 3; clears 4; clears 5");
    EXPECT_EQ(phone.outcome(), "missed 4715, missed 4714, missed 4713, missed 4712");
    for (const MissedCallItem& item : phone.missed()) {
        const auto& call = item.getMissedCallInfoList().front();
        EXPECT_EQ(call.getLineKey(), call.getNumber() == "4712" ? "2051" : "") << call.getNumber();
    }
    phone.components().platform.m_teamService = nullptr;
    EXPECT_EQ(hasDevices("0 localDeviceID,2 2051"),
              "stop 2; stop 3; stop 4; stop 1; start localDeviceID; start 2051");
    phone.plays("rings 6 4716 at=2051; clears 6");
    EXPECT_EQ(phone.outcome(), "missed 4715, missed 4714, missed 4713, missed 4712")
        << "only own lines count";
}

// Three entries of the switch's log arrive, then a call ends. The columns: system identifier, log, whether
// the phone is ready before, the entries that the list has at once and after the call, whether the phone is
// ready then.
TEST(SwitchLogEvents, AreAppliedAtOnceOrWaitInOrderForTheEndOfACall) {
    for (const auto& row : table(7, R"(
0 | dialledUnanswered | no  | 4723 4724 4722 | 4723 4724 4722 | no  | Norlith Qorvex
2 | dialled           | no  | 4723 4724 4722 | 4723 4724 4722 | yes | Norlith Qorvex
2 | dialledForwarded  | yes | 4722           | 4723 4724 4722 | yes | Norlith Qorvex
2 | dialledUnanswered | no  |                | 4723 4724 4722 | yes | Norlith Qorvex
2 | dialledUnanswered | no  |                |                | no  | another
2 | dialledUnanswered | yes | 4722           | 4722           | no  | another
)")) {
        SCOPED_TRACE(row[0] + " " + row[1] + ", ready " + row[2] + ", " + row[6]);
        SimulatedPhone phone(row[6]);
        phone.management.change("system-identifier", row[0]);
        auto& ready = phone.components().readiness.m_callLogEventsReady;
        ready = row[2] == "yes";
        for (const char* number : {"4722", "4724", "4723"}) {
            phone.plays("logs " + row[1] + " " + number);
        }
        const auto numbers = [&phone] {
            std::string all;
            for (const DialledCallItem& item : phone.list<DialledCallItem>()) {
                all += (all.empty() ? "" : " ") + item.getJournalSeviceGroupBy();
            }
            return all;
        };
        EXPECT_EQ(numbers(), row[3]);
        phone.plays("clears 1; clears 1");
        EXPECT_EQ(numbers(), row[4]);
        EXPECT_EQ(ready, row[5] == "yes");
    }
}

TEST(SwitchLogEvents, AreAppliedEarlyWhereTheQueueIsFull) {
    constexpr auto kCalls = static_cast<int>(journal::PendingCallLogEvents::kMaxPending) + 1;
    SimulatedPhone phone;
    phone.plays("set callEvents off");
    for (int call = 1; call <= kCalls; ++call) {
        phone.plays("logs dialledUnanswered " + std::to_string(call));
    }
    EXPECT_EQ(phone.journal(), "dialled 1");
    phone.plays("clears 1");
    // The list keeps a thousand: the one that was applied early is the oldest, and is deleted.
    int call = kCalls;
    for (const DialledCallItem& item : phone.list<DialledCallItem>()) {
        ASSERT_EQ(item.getJournalSeviceGroupBy(), std::to_string(call--));
    }
    EXPECT_EQ(call, 1);
}

}  // namespace
}  // namespace journaltest
