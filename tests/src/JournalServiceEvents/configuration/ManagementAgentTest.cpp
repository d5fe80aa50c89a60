// The management agent (`setData`, `getData`), and the journalling policy.

#include <string>

#include <gtest/gtest.h>

#include "tests/src/JournalServiceEvents/configuration/ConfigurationFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

/// "key=value, key=value" as a record.
ManageableData recordOf(const std::string& text) {
    ManageableData data;
    for (const std::string& pair : split(text, ',')) {
        const std::string key = pair.substr(0, pair.find('='));
        data.populate(key, key, pair.substr(pair.find('=') + 1));
    }
    return data;
}

// Settings that are on before, "fails" if the database refuses | keys and values | result | settings after |
// refused | stored in the settings record.
TEST(SetData, AcceptsAndRefusesKeyByKey) {
    for (const auto& row : table(6, R"(
enabled missed        | | yes | enabled missed | |
enabled missed        | call-log-enabled=false | yes | missed | | set call-log-enabled=false
missed                | call-log-enabled=1 | yes | enabled missed | | set call-log-enabled=1
enabled missed        | call-log-enabled=true | no | enabled missed
+   | call-log-enabled: 10 call-log-enabled value is not changed | set call-log-enabled=true
enabled missed        | call-log-enabled=on | no | enabled missed | |
missed                | call-log-enabled=on | no | missed
+   | call-log-enabled: 10 call-log-enabled value is not changed |
enabled               | missed-logging=0 | yes | enabled missed | | set missed-logging=true
enabled missed        | missed-logging=1 | yes | enabled | | set missed-logging=false
enabled missed        | missed-logging=2 | no | enabled missed | missed-logging: 4 Data invalid for missed-logging |
enabled missed        | delete-missed-when-called=1 | yes | enabled missed delete |
+   | set delete-missed-when-called=true
enabled missed delete | delete-missed-when-called=true | yes | enabled missed | | set delete-missed-when-called=false
enabled missed        | volume=3, missed-logging=1 | yes | enabled
+   | volume: 4 Data invalid (volume) for JournalService | set missed-logging=false
enabled missed        | missed-logging=1, volume=3 | no | enabled
+   | volume: 4 Data invalid (volume) for JournalService | set missed-logging=false
enabled missed        | volume=3, clear-calllog=no | no | enabled missed
+   | volume: 4 Data invalid (volume) for JournalService |
fails enabled missed  | missed-logging=1, call-log-enabled=false | no | enabled missed |
+   | set missed-logging=false; set call-log-enabled=false
)")) {
        SCOPED_TRACE(row[1] + " while on: " + row[0]);
        ConfigurationFixture fixture;
        fixture.database.setFailing(row[0].find("fails") == 0);
        fixture.setOwn(row[0]);
        auto data = recordOf(row[1]);
        EXPECT_EQ(fixture.setData(data), row[2] == "yes");
        EXPECT_EQ(fixture.own(), row[3]);
        Texts rejections;
        for (const auto& [key, reason] : data.getRejectReasons()) {
            rejections.push_back(key + ": " + std::to_string(reason.code) + " " + reason.text);
        }
        EXPECT_EQ(joined(rejections), row[4]);
        const std::string written = fixture.written();
        EXPECT_EQ(written.substr(0, written.find("; delete")), row[5]) << "but for the lists that it empties";
    }
}

// The journal contains a missed entry and a callback.
TEST(SetData, ClearsTheCallLogUnlessAnotherJournalOwnsIt) {
    for (const auto& row : table(3, R"(
clear-calllog=1        | ours | m1 c1
clear-calllog=true     | ours | c1
call-log-enabled=false | ours | c1
clear-calllog=true     | UC | m1 c1
clear-calllog=true     | RingCentral | m1 c1
)")) {
        ConfigurationFixture fixture;
        fixture.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})}, {}, {}, {},
                          {callBackOf("c1", "4711", "t")});
        fixture.context.addService("UCServiceIfc", &fixture.uc);
        fixture.uc.running = row[1] == "UC";
        fixture.settings.change(
            [&row](auto& values) { values.m_ringCentralSyncCallLog = row[1] == "RingCentral"; });
        auto data = recordOf(row[0]);
        EXPECT_TRUE(fixture.setData(data));
        EXPECT_EQ(fixture.entryIds(), row[2]) << row[0] << ", " << row[1];
    }
}

// Settings that are on | keys | result | values.
TEST(GetData, ReturnsValuesUntilAKeyIsNotTheJournals) {
    for (const auto& row : table(4, R"(
enabled missed delete | call-log-enabled missed-logging delete-missed-when-called clear-calllog | yes
+   | call-log-enabled=true; missed-logging=0; delete-missed-when-called=1; clear-calllog=false
                      | call-log-enabled missed-logging delete-missed-when-called clear-calllog | yes
+   | call-log-enabled=false; missed-logging=1; delete-missed-when-called=0; clear-calllog=false
enabled missed        | missed-logging volume clear-calllog | no | missed-logging=0
)")) {
        ConfigurationFixture fixture;
        fixture.setOwn(row[0]);
        ManageableData data;
        for (const std::string& key : split(row[1], ' ')) {
            data.setRootId(key, nullptr);
        }
        EXPECT_EQ(fixture.getData(data), row[2] == "yes") << row[1];
        Texts given;
        for (const std::string& key : data.getRootIds()) {
            if (const DataNode* node = data.interogate(key)) {
                given.push_back(key + "=" + node->getValue());
            }
        }
        EXPECT_EQ(joined(given), row[3]);
    }
}

TEST(JournalPolicy, AcceptsEventsWhileNoOtherJournalOwnsTheCallLog) {
    ConfigurationFixture fixture;
    EXPECT_TRUE(fixture.policy.handleCSTAEvent()) << "there are no such services yet";
    fixture.context.addService("UCServiceIfc", &fixture.uc);
    fixture.context.addService("PallaxServiceIfc", &fixture.pallax);
    fixture.context.addService("WSIServiceIfc", &fixture.wsi);
    for (const auto& row : table(2, R"(
                                         | open
userIsUc allowed                         | shut
userIsUc                                 | open
allowed                                  | open
ringCentral                              | shut
pallaxRuns                               | shut
ucRuns userIsUc allowed ringCentral pallaxRuns | shut
)")) {
        const auto is = [&row](const char* word) { return row[0].find(word) != std::string::npos; };
        fixture.uc.running = is("ucRuns");
        fixture.wsi.currentUserUC = is("userIsUc");
        fixture.pallax.running = is("pallaxRuns");
        fixture.settings.change([&is](journal::SettingsSnapshot& values) {
            values.m_wsiAllowUcJournal = is("allowed");
            values.m_ringCentralSyncCallLog = is("ringCentral");
        });
        EXPECT_EQ(fixture.policy.handleCSTAEvent(), row[1] == "open") << row[0];
    }
}

TEST(JournalPolicy, LooksForEachServiceUntilOneOfItsInterfaceIsFound) {
    ConfigurationFixture fixture;
    fixture.uc.running = true;
    fixture.context.addService("UCServiceIfc", &fixture.pallax);
    EXPECT_TRUE(fixture.policy.handleCSTAEvent()) << "a service of another interface counts as missing";
    fixture.context.addService("UCServiceIfc", &fixture.uc);
    EXPECT_FALSE(fixture.policy.handleCSTAEvent());
    fixture.context.addService("UCServiceIfc", nullptr);
    EXPECT_FALSE(fixture.policy.handleCSTAEvent()) << "it is not looked for again";
}

}  // namespace
}  // namespace journaltest
