#include <gtest/gtest.h>

#include <regex>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

void informs(Line& line, const char* callId, const CSTADevice& device, const char* privateData) {
    CSTACallInformationEvent event;
    event.setConnection(callId, device.number);
    event.setDevice(device);
    event.setPrivateData(privateData);
    line.parts.callInformationEvents.handleCSTACallInformationEvent(&event);
}

constexpr const char* kMissed = communicationsServiceTexts::content_callstatus_MissedCall;

// With "system-identifier" 1 a call that rang is missed only when the switch says so.
TEST(CallInformationEvents, AMarkedCallIsMissedWhenItEnds) {
    for (const bool marked : {true, false}) {
        Line line;
        line.plays("set marksMissed on; rings 1 4711:Ann");
        if (marked) {
            informs(line, "1", {"4711", ""}, kMissed);
        }
        line.plays("clears 1");
        EXPECT_EQ(line.outcome(), marked ? "missed 4711 Ann" : "");
    }
}

TEST(CallInformationEvents, AMarkThatFitsNoRingingCallIsNotPlausible) {
    for (const char* script : {"answers 1 4711", "dials 1 4711", "rings 2 4711"}) {
        CapturedLog::reset();
        Line line;
        line.plays(script);
        const std::string before = line.outcome();
        informs(line, "1", {"4711", ""}, kMissed);
        EXPECT_TRUE(CapturedLog::contains("handleCSTACallInformationEvent():{1} CSTA Event not plausible"));
        EXPECT_EQ(line.outcome(), before);
    }
}

TEST(CallInformationEvents, ACallThatThePhoneNeverSawIsFiledAtOnce) {
    Line line;
    informs(line, "-1", {"4711", "Ann"}, kMissed);
    EXPECT_EQ(line.journal(), "missed 4711 Ann");
    const auto info = line.list<MissedCallItem>().front().getMissedCallInfoList().front();
    EXPECT_TRUE(std::regex_match(info.getCallId(), std::regex("[0-9A-F]{8}"))) << info.getCallId();

    Line other;
    other.plays("set otherServer on");
    informs(other, "-1", {"4711", "Ann"}, kMissed);
    EXPECT_EQ(other.journal(), "");
    EXPECT_TRUE(CapturedLog::contains("{-1} CSTA Event not plausible"));
}

TEST(CallInformationEvents, ALateNameGoesIntoTheEntryAndChangesNothingElse) {
    for (const char* softwareType : {softwareTypes::qorvex, softwareTypes::sip}) {
        Line line{softwareType};
        line.plays("rings 1 4711");
        informs(line, "1", {"4712", "Bob"}, "");
        informs(line, "1", {"4711", "Ann"}, "");
        line.plays("answers 1 4711; passes 60");
        informs(line, "1", {"4711", "Ann"}, "");
        line.plays("clears 1");
        EXPECT_EQ(line.journal(), "received 4711 Ann 01:00") << softwareType;
    }
    Line line;
    informs(line, "1", {"4711", "Ann"}, "");
    EXPECT_TRUE(CapturedLog::contains("{1} CSTA Event not plausible"));
}

}  // namespace
}  // namespace journaltest
