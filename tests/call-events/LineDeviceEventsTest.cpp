#include <gtest/gtest.h>

#include "platform/csta/CSTASystemEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeCstaService.h"
#include "tests/support/FakeTeam.h"

namespace journaltest {
namespace {

constexpr const char* kBluetooth = communicationsServiceTexts::content_bluetoothDeviceId;

class LineDevicesOfAPhone : public testing::Test {
protected:
    LineDevicesOfAPhone() {
        line.parts.collaborators.m_cstaService = &csta;
        line.parts.collaborators.m_teamService = &team;
        team.logMissedCallsOf("2051");
    }
    void reports(const std::vector<std::pair<int, std::string>>& devices) {
        CSTASwitchingFunctionDevices event;
        for (const auto& [type, id] : devices) {
            event.addDevice(type, id);
        }
        line.parts.lineDeviceEvents.handleCSTASwitchingFunctionDevices(&event);
    }
    [[nodiscard]] std::vector<std::string> monitors() const {
        std::vector<std::string> texts;
        for (const auto& noted : csta.requests()) {
            texts.push_back(noted.kind == FakeCstaService::Kind::eMonitorStart ? "start " + noted.device
                                                                               : "stop " + noted.crossRefId);
        }
        return texts;
    }

    FakeCstaService csta;
    FakeTeam team;
    Line line{softwareTypes::sip};
};

TEST_F(LineDevicesOfAPhone, AreMonitoredAndSayWhoseCallsAreMissed) {
    reports({{0, CSTADevice::kLocalDevice},
             {1, "4"},
             {2, "2050"},
             {3, "5"},
             {2, "2051"},
             {2, kBluetooth},
             {2, "2050"}});
    EXPECT_EQ(monitors(), (std::vector<std::string>{"start localDeviceID", "start 2050", "start 2051",
                                                    std::string("start ") + kBluetooth}));
    for (const char* device : {CSTADevice::kLocalDevice, "2050", "2051", kBluetooth}) {
        line.plays(std::string("rings 1 4711 at=") + device + "; clears 1; passes 1");
    }
    EXPECT_EQ(line.list<MissedCallItem>().front().getMissedCallInfoList().size(), 3U);
    EXPECT_TRUE(CapturedLog::contains(
        "Missed incoming call with id: 1 to shared secondary line: 2050 - should not be logged"));
}

TEST_F(LineDevicesOfAPhone, AreReplacedAsAWhole) {
    reports({{0, CSTADevice::kLocalDevice}, {2, "2050"}});
    reports({{0, CSTADevice::kLocalDevice}});
    const auto all = monitors();
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(std::vector<std::string>(all.begin() + 2, all.end()),
              (std::vector<std::string>{"stop 2", "stop 1", "start localDeviceID"}));
}

TEST_F(LineDevicesOfAPhone, WithoutATeamOnlyOwnLinesCount) {
    line.parts.collaborators.m_teamService = nullptr;
    reports({{2, "2051"}});
    line.plays("rings 1 4711 at=2051");
    EXPECT_EQ(line.liveCalls(), "");
}

TEST_F(LineDevicesOfAPhone, ConcernSipPhonesOnly) {
    line.configure([](auto& values) { values.m_softwareType = softwareTypes::qorvex; });
    reports({{0, CSTADevice::kLocalDevice}});
    EXPECT_TRUE(monitors().empty());
}

}  // namespace
}  // namespace journaltest
