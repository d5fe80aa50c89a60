// The journal as management agent: what `setData` takes, refuses and answers, and what `getData` gives.

#include <string>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

std::string rejectionsOf(const ManageableData& data) {
    Texts texts;
    for (const auto& [key, reason] : data.getRejectReasons()) {
        texts.push_back(key + ": " + std::to_string(reason.code) + " " + reason.text);
    }
    return joined(texts);
}

/// "key=value, key=value" as a record.
ManageableData recordOf(const std::string& text) {
    KeysAndValues values;
    for (const std::string& pair : split(text, ',')) {
        values.emplace_back(pair.substr(0, pair.find('=')), pair.substr(pair.find('=') + 1));
    }
    return ManagementRig::record(values);
}

// The settings that are on before | asked | answer | the settings after | refused | stored in the settings record.
TEST(SetData, TakesAndRefusesKeyByKey) {
    for (const auto& row : table(6, R"(
enabled missed        | | yes | enabled missed | |
enabled missed        | call-log-enabled=false | yes | missed | | set call-log-enabled=false
missed                | call-log-enabled=1 | yes | enabled missed | | set call-log-enabled=1
enabled missed        | call-log-enabled=true | no | enabled missed
+   | call-log-enabled: 10 call-log-enabled value is not changed | set call-log-enabled=true
enabled missed        | call-log-enabled=on | no | enabled missed | |
enabled               | missed-logging=0 | yes | enabled missed | | set missed-logging=true
enabled missed        | missed-logging=1 | yes | enabled | | set missed-logging=false
enabled missed        | missed-logging=true | yes | enabled | | set missed-logging=false
enabled missed        | missed-logging=0 | no | enabled missed
+   | missed-logging: 10 missed-logging value is not changed | set missed-logging=true
enabled missed        | missed-logging=2 | no | enabled missed | missed-logging: 4 Data invalid for missed-logging |
enabled missed        | delete-missed-when-called=1 | yes | enabled missed delete |
+   | set delete-missed-when-called=true
enabled missed delete | delete-missed-when-called=true | yes | enabled missed | | set delete-missed-when-called=false
enabled missed        | delete-missed-when-called= | no | enabled missed
+   | delete-missed-when-called: 4 Data invalid for delete-missed-when-called |
enabled missed        | volume=3 | no | enabled missed | volume: 4 Data invalid (volume) for JournalService |
enabled missed        | volume=3, missed-logging=1 | yes | enabled
+   | volume: 4 Data invalid (volume) for JournalService | set missed-logging=false
enabled missed        | missed-logging=1, volume=3 | no | enabled
+   | volume: 4 Data invalid (volume) for JournalService | set missed-logging=false
enabled missed        | volume=3, clear-calllog=no | no | enabled missed
+   | volume: 4 Data invalid (volume) for JournalService |
)")) {
        SCOPED_TRACE(row[1] + " while on: " + row[0]);
        ManagementRig rig;
        const auto isOn = [&row](const char* name) { return row[0].find(name) != std::string::npos; };
        rig.setOwn(isOn("enabled"), isOn("missed"), isOn("delete"));
        auto data = recordOf(row[1]);
        EXPECT_EQ(rig.setData(data), row[2] == "yes");
        EXPECT_EQ(rig.own(), row[3]);
        EXPECT_EQ(rejectionsOf(data), row[4]);
        const std::string written = rig.written();
        EXPECT_EQ(written.substr(0, written.find("; delete")), row[5]) << "but for the lists that it empties";
    }
}

TEST(SetData, ChangesNothingThatTheDatabaseDidNotTake) {
    ManagementRig rig;
    rig.database.setFailing(true);
    auto data = recordOf("missed-logging=1, call-log-enabled=false");
    EXPECT_FALSE(rig.setData(data));
    EXPECT_EQ(rig.own(), "enabled missed");
    EXPECT_TRUE(data.getRejectReasons().empty());
}

// A missed entry and a callback stand in the journal.
TEST(SetData, ClearsTheCallLogUnlessAnotherJournalOwnsIt) {
    for (const auto& row : table(3, R"(
clear-calllog=1        | ours | m1 c1
clear-calllog=true     | ours | c1
call-log-enabled=false | ours | c1
clear-calllog=true     | UC | m1 c1
clear-calllog=true     | RingCentral | m1 c1
)")) {
        ManagementRig rig;
        rig.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})}, {}, {}, {},
                      {callBackOf("c1", "4711", "t")});
        rig.context.addService("UCServiceIfc", &rig.uc);
        rig.uc.setRunning(row[1] == "UC");
        rig.settings.change(
            [&row](auto& values) { values.m_ringCentralSyncCallLog = row[1] == "RingCentral"; });
        auto data = recordOf(row[0]);
        EXPECT_TRUE(rig.setData(data));
        EXPECT_EQ(rig.entryIds(), row[2]) << row[0] << ", " << row[1];
    }
}

// The settings that are on | asked | answer | given.
TEST(GetData, AnswersUntilAKeyIsNotTheJournals) {
    for (const auto& row : table(4, R"(
enabled missed delete | call-log-enabled missed-logging delete-missed-when-called clear-calllog | yes
+   | call-log-enabled=true; missed-logging=0; delete-missed-when-called=1; clear-calllog=false
                      | call-log-enabled missed-logging delete-missed-when-called clear-calllog | yes
+   | call-log-enabled=false; missed-logging=1; delete-missed-when-called=0; clear-calllog=false
enabled missed        | | yes |
enabled missed        | volume call-log-enabled | no |
enabled missed        | missed-logging volume clear-calllog | no | missed-logging=0
)")) {
        ManagementRig rig;
        const auto isOn = [&row](const char* name) { return row[0].find(name) != std::string::npos; };
        rig.setOwn(isOn("enabled"), isOn("missed"), isOn("delete"));
        ManageableData data;
        for (const std::string& key : split(row[1], ' ')) {
            data.setRootId(key, nullptr);
        }
        EXPECT_EQ(rig.getData(data), row[2] == "yes") << row[1];
        Texts given;
        for (const std::string& key : data.getRootIds()) {
            if (const DataNode* node = data.interogate(key)) {
                given.push_back(key + "=" + node->getValue());
            }
        }
        EXPECT_EQ(joined(given), row[3]);
    }
}

}  // namespace
}  // namespace journaltest
