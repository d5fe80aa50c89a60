#include "host/csta-wire/DeviceText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host::comparableNumber;
using host::DeviceText;
using host::deviceText;
using host::parseDeviceText;

struct DeviceCase {
    const char* text;
    const char* number;
    const char* name;
};

TEST(DeviceText, IsReadInEveryWrittenForm) {
    const std::vector<DeviceCase> cases = {
        {"", "", ""},
        {"  ", "", ""},
        {"4711", "4711", ""},
        {" +15550100123\n", "+15550100123", ""},
        {"*61", "*61", ""},
        {"309900;noa=nk", "309900", ""},
        {"N<4711>", "4711", ""},
        {"N<4711>Ann M\xC3\xBCller", "4711", "Ann M\xC3\xBCller"},
        {"N<5550102>Line71001;displayNumber=5550102;uid=FF00", "5550102", "Line71001"},
        {"N<309900>;displayNumber=309900;noa=nk", "309900", ""},
        {"N<30990100>+ 30(990)100;noa=nk", "30990100", ""},
        {"N<4711> Ann <ops> > Desk ;uid=1", "4711", "Ann <ops> > Desk"},
        {"N<4711!sub&call/12%agent>Ann", "4711", "Ann"},
        {"N<>Ann", "", "Ann"},
        {"N<4711", "4711", ""},
        {"tel:1062", "1062", ""},
        {"TEL:+49-30-1062;phone-context=dialstring", "+49-30-1062", ""},
        {"sip:ann@example.org;user=phone", "ann", ""},
        {"sips:%2b4930@example.org", "+4930", ""},
        {"sip:12%3", "12%3", ""},
        {"4750:switch1:192.0.2.2:0", "4750", ""},
        {"queue:south", "queue:south", ""},
        {"Front desk", "Front desk", ""},
    };
    for (const DeviceCase& one : cases) {
        EXPECT_EQ(parseDeviceText(one.text), (DeviceText{one.number, one.name})) << one.text;
    }
}

TEST(DeviceText, IsWrittenSoThatItIsReadBack) {
    for (const DeviceText& device :
         {DeviceText{"4711", ""}, DeviceText{"+4930", "Ann <a> & b"},
          DeviceText{"1", "\xE5\xB1\xB1\xE7\x94\xB0"}, DeviceText{"", "Only a name"}}) {
        EXPECT_EQ(parseDeviceText(deviceText(device.number, device.name)), device);
    }
    EXPECT_EQ(parseDeviceText(deviceText("4711", "Ann; Desk")), (DeviceText{"4711", "Ann, Desk"}));
}

TEST(DeviceText, ComparesWithoutTheMarksBetweenDigits) {
    const std::vector<std::pair<const char*, const char*>> same = {
        {"2001", "N<2001>Ann"},           {"2001", "tel:2001;phone-context=x"},
        {"+49 (30) 20-01", "+493020.01"}, {"Ann", "sip:ANN@example.org"},
        {"2001:switch:host:0", "2001"},
    };
    for (const auto& [one, other] : same) {
        EXPECT_EQ(comparableNumber(one), comparableNumber(other)) << one << " and " << other;
    }
    EXPECT_NE(comparableNumber("2001"), comparableNumber("+492001"));
    EXPECT_NE(comparableNumber("2001"), comparableNumber("20010"));
    EXPECT_NE(comparableNumber("*61"), comparableNumber("61"));
}

}  // namespace
