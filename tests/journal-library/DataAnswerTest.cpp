#include "platform/journal-library/DataAnswer.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace {

constexpr const char* kMissed = CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS;

TEST(DataAnswer, TellsTheLastUniqueId) {
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(journalxml::buildUpdateAnswer(kMissed, "17")), "17");
    const std::string nothing = journalxml::buildUpdateAnswer(kMissed);
    EXPECT_NE(nothing, CallListDatabaseAdapterHelper::FAILED);
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(nothing), "");
}

TEST(DataAnswer, TellsTheStoredSettingsOnly) {
    const std::string answer = journalxml::buildSettingsAnswer({{"call-log-enabled", "false"}});
    bool value = true;
    EXPECT_TRUE(JournalServiceHelper::getXMLValue(answer, "call-log-enabled", value));
    EXPECT_FALSE(value);
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(answer, "missed-logging", value));
}

TEST(DataAnswer, HidesTheFailureMarkerInNames) {
    MissedCallItem item;
    item.setSurname("failure-failure");
    journalxml::ListDocument document(kMissed);
    ASSERT_TRUE(document.add(item));
    EXPECT_EQ(document.text().find("failure"), std::string::npos);

    std::deque<MissedCallItem> read;
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallList(document.text(), read));
    EXPECT_EQ(read.front().getSurname(), "failure-failure");
}

}  // namespace
