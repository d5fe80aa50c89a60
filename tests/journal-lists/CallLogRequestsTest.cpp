#include <list>
#include <string>

#include <gtest/gtest.h>

#include "tests/journal-lists/JournalRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using Dialled = DialledCallItem::DialledCallInfo;

template <typename Info>
Info occurrence(const std::string& number, const std::string& time) {
    Info info;
    info.setNumber(number);
    info.setTimeAndDate(time);
    return info;
}

class CallLogRequests : public testing::Test {
protected:
    [[nodiscard]] CallLogEntryRequest onlyRequest() const {
        const auto entries = rig.exchange.callLogEntries();
        EXPECT_EQ(entries.size(), 1U);
        return entries.empty() ? CallLogEntryRequest{} : entries.front();
    }

    static void expectNothingFurther(const CallLogEntryRequest& request, std::size_t pairs = 4) {
        EXPECT_EQ(request.reserved, 0);
        for (std::size_t pair = 0; pair < pairs; ++pair) {
            EXPECT_EQ(request.further.at(pair).value, 0);
            EXPECT_EQ(request.further.at(pair).text, "");
        }
    }

    JournalRig rig;
    const journal::CallLogRequests& requests = rig.requests;
};

TEST_F(CallLogRequests, NameOneEntryByNumberAndTime) {
    const auto info = occurrence<MissedCallItem::MissedCallInfo>("4711", "2026-11-21T08:00:00Z");
    EXPECT_TRUE(requests.sendMissedCallLogEntryRequest(&info));
    const auto request = onlyRequest();
    EXPECT_EQ(request.action, 1);
    EXPECT_EQ(request.logTarget, 1);
    EXPECT_EQ(request.entryTime, "2026-11-21T08:00:00Z");
    EXPECT_EQ(request.numberKind, 1);
    EXPECT_EQ(request.subscriberNumber, "4711");
    expectNothingFurther(request);
}

TEST_F(CallLogRequests, NameAWholeLogByItsTargetAlone) {
    EXPECT_TRUE(requests.sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::eDialled));
    const auto request = onlyRequest();
    EXPECT_EQ(request.action, 2);
    EXPECT_EQ(request.logTarget, 4);
    EXPECT_EQ(request.entryTime, "");
    EXPECT_EQ(request.numberKind, 2);
    EXPECT_EQ(request.subscriberNumber, "");
    expectNothingFurther(request);
}

TEST_F(CallLogRequests, NameAGroupsEntriesByNumberAndGroupText) {
    auto info = occurrence<MissedCallItem::MissedCallInfo>("4711", "2026-11-21T08:00:00Z");
    info.setGroupText("sales");
    EXPECT_TRUE(requests.sendMissedGroupCallLogEntryRequest(&info));
    const auto request = onlyRequest();
    EXPECT_EQ(request.action, 2);
    EXPECT_EQ(request.logTarget, 3);
    EXPECT_EQ(request.entryTime, "");
    EXPECT_EQ(request.numberKind, 1);
    EXPECT_EQ(request.subscriberNumber, "4711");
    EXPECT_EQ(request.further.back().value, 1);
    EXPECT_EQ(request.further.back().text, "sales");
    expectNothingFurther(request, 3);
}

TEST_F(CallLogRequests, TravelInAPrivateRequestOfTypeZero) {
    requests.sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::eReceived);
    const auto noted = rig.exchange.requests(FakeCstaService::Kind::eEscape);
    ASSERT_EQ(noted.size(), 1U);
    EXPECT_EQ(noted.front().eventType, 0);
    EXPECT_TRUE(CapturedLog::contains("sendCSTAEscapeRequest():TargetLog: 0, SubscriberNumber: "));
    EXPECT_TRUE(CapturedLog::contains("sendCSTAEscapeRequest() : response code is ok"));
}

TEST_F(CallLogRequests, ReportAFailureOnlyWhereTheOutcomeIsAsked) {
    rig.exchange.fail(FakeCstaService::Kind::eEscape);
    const CallLogEntryRequest request;
    EXPECT_FALSE(requests.sendCSTAEscapeRequest(&request));
    EXPECT_TRUE(requests.sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::eMissed));
    EXPECT_EQ(CapturedLog::count("sendCSTAEscapeRequest() : response code is error"), 2);

    rig.collaborators.m_cstaService = nullptr;
    EXPECT_FALSE(requests.sendCSTAEscapeRequest(&request));
}

struct Overflow {
    const char* name;
    int systemIdentifier;
    Texts numbers;  // newest first
    std::string newNumber;
    std::string sent;
};

std::ostream& operator<<(std::ostream& out, const Overflow& overflow) {
    return out << overflow.name;
}

Texts tenEndingIn(const std::string& oldest, const std::string& others = "1") {
    Texts numbers(9, others);
    numbers.push_back(oldest);
    return numbers;
}

class DialledOverflow : public testing::TestWithParam<Overflow> {};

TEST_P(DialledOverflow, TellsTheSwitchOfANumberThatLeavesTheItemForGood) {
    JournalRig rig;
    rig.phoneIs("Norlith Qorvex", GetParam().systemIdentifier);
    std::list<Dialled> infos;
    for (const std::string& number : GetParam().numbers) {
        infos.push_back(occurrence<Dialled>(number, "t" + std::to_string(infos.size())));
    }
    EXPECT_TRUE(rig.requests.sendCSTACAllLogEntryDeleteRequest(
        infos, occurrence<Dialled>(GetParam().newNumber, "now")));
    EXPECT_EQ(rig.sent(), GetParam().sent);
}

const Overflow kOverflows[] = {
    {"NotFromNine", 2, Texts{"1", "1", "1", "1", "1", "1", "1", "1", "2"}, "3", ""},
    {"FromTen", 2, tenEndingIn("2"), "3", "one 4 2 t9"},
    {"NotWhenTheNumberStandsEarlierToo", 2, tenEndingIn("1"), "3", ""},
    {"NotWhenTheNewCallHasTheNumber", 2, tenEndingIn("2"), "2", ""},
    {"NotForTwoEmptyNumbers", 2, tenEndingIn(""), "", ""},
    {"ForAnEmptyNumberBesideOthers", 2, tenEndingIn(""), "3", "one 4  t9"},
    {"NotWithoutALogAtTheSwitch", 0, tenEndingIn("2"), "3", ""},
};
INSTANTIATE_TEST_SUITE_P(Table, DialledOverflow, testing::ValuesIn(kOverflows), kRowName);

}  // namespace
}  // namespace journaltest
