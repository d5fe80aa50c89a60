// What the switch says of the line and not of one call: callbacks that wait, and the devices of the phone.

#include <gtest/gtest.h>

#include <regex>

#include "platform/csta/CSTAPrivateEvents.h"
#include "platform/csta/CSTASystemEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "tests/src/JournalServiceEvents/calls/Line.h"
#include "tests/support/FakeCstaService.h"
#include "tests/support/FakeServices.h"
#include "tests/support/ListsReader.h"
#include "tests/support/RecordingObserver.h"
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
        line.parts.callBackEvents.handleCSTACallBackEvent(&event);
    }
    /// The list: "4711 Ann Adams busy ringing"; the type and the state where they are not the usual ones.
    std::string callBacks() {
        std::string text;
        for (const CallBackItem& item : line.list<CallBackItem>()) {
            const auto type = item.getCallBackType();
            const bool rings = item.getCallBackState() == CallBackItem::CallBackState::eRinging;
            text += (text.empty() ? "" : ", ") + item.getNumber() + " " + item.getFirstname() + " " +
                    item.getSurname() + (type == CallBackItem::CallBackType::eOnBusy ? " busy" : "") +
                    (type == CallBackItem::CallBackType::eOnNoReply ? " no reply" : "") +
                    (rings ? " ringing" : "");
        }
        return text;
    }
    /// The devices as "TYPE ID"; answers with the requests for monitors that follow.
    std::string hasDevices(const std::string& devices) {
        CSTASwitchingFunctionDevices event;
        for (const std::string& device : split(devices, ',')) {
            event.addDevice(std::stoi(device), device.substr(2));
        }
        csta.forgetRequests();
        line.parts.lineDeviceEvents.handleCSTASwitchingFunctionDevices(&event);
        return csta.asked();
    }

    FakeCstaService csta;
    FakeTeam team;
    Line line{softwareTypes::sip};
};

TEST_F(LineEvents, OfACallBackAddChangeAndRemoveIt) {
    RecordingObserver observer;
    ListsReader reader{line.parts.lists};
    line.notifier.init(&reader, softwareTypes::sip);
    line.notifier.subscribe(&observer, {});
    observer.clear();
    line.phonebook.add("4711", "Ann", "Adams");
    callsBack(kHere, {"4711", ""}, true, "onBusy");
    callsBack(kHere, {"4712", "Bob"}, true, "onNoReply");
    EXPECT_EQ(callBacks(), "4712  Bob no reply, 4711 Ann Adams busy");
    const auto items = line.list<CallBackItem>();
    EXPECT_EQ(items[1].getTimeDate() + "Z", line.parts.clock.getCurrentTime());
    line.plays("passes 60");
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
    callsBack(kHere, kHere, true);
    EXPECT_EQ(callBacks(), "4713  Cyd") << "the other party counts";
}

TEST_F(LineEvents, OfTheDevicesMoveTheMonitorsAndSayWhoseCallsAreMissed) {
    line.parts.platform.m_cstaService = &csta;
    team.loggedDevices = {"2051"};
    line.parts.platform.m_teamService = &team;
    EXPECT_EQ(hasDevices("0 localDeviceID,1 4,2 2050,3 5,2 2051,2 bluetoothDeviceID,2 2050"),
              "start localDeviceID; start 2050; start 2051; start bluetoothDeviceID");
    line.plays(
        "rings 1 4711 at=2050; rings 2 4712 at=2051; rings 3 4713 at=bluetoothDeviceID; rings 4 4714;"
        "rings 5 4715 at=2052; clears 1; clears 2; clears 3; clears 4; clears 5");
    EXPECT_EQ(line.outcome(), "missed 4715, missed 4714, missed 4713, missed 4712");
    line.parts.platform.m_teamService = nullptr;
    EXPECT_EQ(hasDevices("0 localDeviceID,2 2051"),
              "stop 2; stop 3; stop 4; stop 1; start localDeviceID; start 2051");
    line.plays("rings 6 4716 at=2051; clears 6");
    EXPECT_EQ(line.outcome(), "missed 4715, missed 4714, missed 4713, missed 4712") << "only own lines count";
    line.configure([](auto& values) { values.m_softwareType = softwareTypes::qorvex; });
    EXPECT_EQ(hasDevices("0 localDeviceID"), "") << "other phones have one line";
}

}  // namespace
}  // namespace journaltest
