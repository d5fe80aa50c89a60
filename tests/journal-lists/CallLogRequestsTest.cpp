#include <list>
#include <string>

#include <gtest/gtest.h>

#include "tests/journal-lists/JournalRig.h"
#include "tests/support/Table.h"

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

/// "action target time kind number", and what else the request says.
std::string textOf(const CallLogEntryRequest& request) {
    std::string text = std::to_string(request.action) + " " + std::to_string(request.logTarget) + " '" +
                       request.entryTime + "' " + std::to_string(request.numberKind) + " '" +
                       request.subscriberNumber + "'";
    for (std::size_t pair = 0; pair < request.further.size(); ++pair) {
        if (request.further[pair].value != 0 || !request.further[pair].text.empty()) {
            text += " " + std::to_string(pair) + ": " + std::to_string(request.further[pair].value) + " " +
                    request.further[pair].text;
        }
    }
    return request.reserved == 0 ? text : text + " reserved";
}

TEST(CallLogRequests, NameAnEntryAWholeLogOrAGroupsEntries) {
    JournalRig rig;
    auto missed = occurrence<MissedCallItem::MissedCallInfo>("4711", "2026-11-21T08:00:00Z");
    EXPECT_TRUE(rig.requests.sendMissedCallLogEntryRequest(&missed));
    EXPECT_TRUE(rig.requests.sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::eDialled));
    missed.setGroupText("sales");
    EXPECT_TRUE(rig.requests.sendMissedGroupCallLogEntryRequest(&missed));
    Texts texts;
    for (const auto& request : rig.exchange.callLogEntries()) {
        texts.push_back(textOf(request));
    }
    EXPECT_EQ(texts,
              (Texts{"1 1 '2026-11-21T08:00:00Z' 1 '4711'", "2 4 '' 2 ''", "2 3 '' 1 '4711' 3: 1 sales"}));
    for (const auto& noted : rig.exchange.requests(FakeCstaService::Kind::eEscape)) {
        EXPECT_EQ(noted.eventType, 0) << "they travel in a private request of type 0";
    }
}

TEST(CallLogRequests, ReportAFailureOnlyWhereTheOutcomeIsAsked) {
    JournalRig rig;
    rig.exchange.fail(FakeCstaService::Kind::eEscape);
    const CallLogEntryRequest request;
    EXPECT_FALSE(rig.requests.sendCSTAEscapeRequest(&request));
    EXPECT_TRUE(rig.requests.sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::eMissed));
    rig.collaborators.m_cstaService = nullptr;
    EXPECT_FALSE(rig.requests.sendCSTAEscapeRequest(&request));
}

// The numbers of a full dialled item, newest first ("-" for an empty one), and the number of the call that comes in front.
TEST(CallLogRequests, TellTheSwitchOfADialledNumberThatLeavesTheItemForGood) {
    for (const auto& row : table(4, R"(
2 | 1 1 1 1 1 1 1 1 2   | 3 |
2 | 1 1 1 1 1 1 1 1 1 2 | 3 | one 4 2 t9
2 | 1 1 1 1 1 1 1 1 1 1 | 3 |
2 | 1 1 1 1 1 1 1 1 1 2 | 2 |
2 | 1 1 1 1 1 1 1 1 1 - | - |
2 | 1 1 1 1 1 1 1 1 1 - | 3 | one 4  t9
0 | 1 1 1 1 1 1 1 1 1 2 | 3 |
)")) {
        const auto numberOf = [](const std::string& word) { return word == "-" ? std::string() : word; };
        JournalRig rig;
        rig.phoneIs("Norlith Qorvex", std::stoi(row[0]));
        std::list<Dialled> infos;
        for (const std::string& number : split(row[1], ' ')) {
            infos.push_back(occurrence<Dialled>(numberOf(number), "t" + std::to_string(infos.size())));
        }
        EXPECT_TRUE(rig.requests.sendCSTACAllLogEntryDeleteRequest(
            infos, occurrence<Dialled>(numberOf(row[2]), "now")));
        EXPECT_EQ(rig.sent(), row[3]) << row[1] << ", then " << row[2];
    }
}

}  // namespace
}  // namespace journaltest
