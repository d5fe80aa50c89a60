#include "host/csta-wire/DeviceText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::comparableNumber;
using host::DeviceText;
using host::parseDeviceText;

TEST(DeviceText, IsReadInEveryWrittenForm) {
    const std::pair<const char*, DeviceText> cases[] = {
        {"  ", {"", ""}},
        {" +15550100123\n", {"+15550100123", ""}},
        {"*61", {"*61", ""}},
        {"309900;noa=nk", {"309900", ""}},
        {"N<4711>", {"4711", ""}},
        {"N<5550102>Line71001;displayNumber=5550102;uid=FF00", {"5550102", "Line71001"}},
        {"N<30990100>+ 30(990)100;noa=nk", {"30990100", ""}},
        {"N<4711> Ann <ops> > Desk ;uid=1", {"4711", "Ann <ops> > Desk"}},
        {"N<4711!sub&call/12%agent>Ann M\xC3\xBCller", {"4711", "Ann M\xC3\xBCller"}},
        {"N<>Ann", {"", "Ann"}},
        {"N<4711", {"4711", ""}},
        {"TEL:+49-30-1062;phone-context=dialstring", {"+49-30-1062", ""}},
        {"sip:ann@example.org;user=phone", {"ann", ""}},
        {"sips:%2b4930@example.org", {"+4930", ""}},
        {"sip:12%3", {"12%3", ""}},
        {"4750:switch1:192.0.2.2:0", {"4750", ""}},
        {"queue:south", {"queue:south", ""}},
        {"Front desk", {"Front desk", ""}},
    };
    for (const auto& [text, device] : cases) {
        EXPECT_EQ(parseDeviceText(text), device) << text;
    }
}

TEST(DeviceText, IsWrittenSoThatItIsReadBack) {
    for (const DeviceText& device :
         {DeviceText{"4711", ""}, DeviceText{"+4930", "Ann <a> & b"}, DeviceText{"", "\xE5\xB1\xB1"}}) {
        EXPECT_EQ(parseDeviceText(host::deviceText(device.number, device.name)), device);
    }
    EXPECT_EQ(parseDeviceText(host::deviceText("4711", "Ann; Desk")), (DeviceText{"4711", "Ann, Desk"}));
}

TEST(DeviceText, ComparesWithoutTheMarksBetweenDigits) {
    EXPECT_EQ(comparableNumber("+49 (30) 20-01"), comparableNumber("N<+493020.01>Ann"));
    EXPECT_EQ(comparableNumber("Ann"), comparableNumber("sip:ANN@example.org"));
    EXPECT_NE(comparableNumber("2001"), comparableNumber("+492001"));
    EXPECT_NE(comparableNumber("*61"), comparableNumber("61"));
}

}  // namespace
