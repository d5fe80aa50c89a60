#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/csta/CSTAEventIfc.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"
#include "src/JournalServiceEvents/CallLogReadiness.h"
#include "src/JournalServiceEvents/CstaMonitors.h"
#include "src/JournalServiceEvents/JournalRefresh.h"
#include "src/JournalServiceEvents/JournallingGate.h"
#include "src/JournalServiceEvents/ManagementAgent.h"
#include "src/JournalServiceEvents/ManagementValues.h"
#include "src/JournalServiceEvents/OwnSettings.h"
#include "tests/journal-lists/JournalRig.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeLocalMgmt.h"
#include "tests/support/FakePallax.h"
#include "tests/support/FakeUc.h"
#include "tests/support/FakeWsi.h"

namespace journaltest {

using KeysAndValues = std::vector<std::pair<std::string, std::string>>;

/// The journal's parts that follow the phone's management, on a SIP phone until a test says otherwise. One thread.
class ManagementRig : public JournalRig, public MgmtAgentIfc, public CSTAEventIfc {
public:
    ManagementRig() {
        collaborators.m_localMgmt = &management;
        collaborators.m_context = &context;
        collaborators.m_digitAnalysisService = &digits;
    }

    /// The keys and values as one record.
    [[nodiscard]] static ManageableData record(const KeysAndValues& values) {
        ManageableData data;
        for (const auto& [key, value] : values) {
            data.populate(key, key, value);
        }
        return data;
    }
    /// "key=value; key=value" of everything that was published, and of everything that was written, oldest first.
    [[nodiscard]] std::string published() const { return textOf(management.published()); }
    [[nodiscard]] std::string writtenValues() const { return textOf(management.written()); }
    /// What the switch was asked: "start localDeviceID; stop 1; change localDeviceID; status".
    [[nodiscard]] std::string asked() const {
        using Kind = FakeCstaService::Kind;
        Texts texts;
        for (const FakeCstaService::Noted& noted : exchange.requests()) {
            switch (noted.kind) {
                case Kind::eMonitorStart: texts.push_back("start " + noted.device); break;
                case Kind::eMonitorStop: texts.push_back("stop " + noted.crossRefId); break;
                case Kind::eChangeMonitorFilter: texts.push_back("change " + noted.device); break;
                case Kind::eSystemStatus: texts.push_back("status"); break;
                default: break;
            }
        }
        return joined(texts);
    }
    void setOwn(bool callLogEnabled, bool missedLogging, bool deleteMissedWhenCalled) {
        settings.change([=](journal::SettingValues& values) {
            values.m_callLogEnabled = callLogEnabled;
            values.m_missedLogging = missedLogging;
            values.m_deleteMissedWhenCalled = deleteMissedWhenCalled;
        });
    }
    /// The own settings that are on: "enabled missed delete".
    [[nodiscard]] std::string own() const {
        const auto now = settings.values();
        Texts on;
        if (now->m_callLogEnabled) {
            on.emplace_back("enabled");
        }
        if (now->m_missedLogging) {
            on.emplace_back("missed");
        }
        if (now->m_deleteMissedWhenCalled) {
            on.emplace_back("delete");
        }
        return joined(on, " ");
    }

    // What the service itself does with what it is told.
    bool setData(ManageableData& data) override { return agent.setData(data); }
    bool getData(ManageableData& data) override { return agent.getData(data); }
    void manageableDataChanged(ManageableData& data) override { agent.manageableDataChanged(data); }
    bool resetUserData() override { return refresh.resetUserData(); }
    void deliverEvent(CSTAEvent* /*event*/) override {}

    FakeLocalMgmt management;
    FakeContext context;
    FakeDigits digits;
    FakeUc uc;
    FakePallax pallax;
    FakeWsi wsi;
    journal::CstaMonitors monitors{collaborators, settings, *this};
    journal::CallLogReadiness readiness;
    journal::ManagementValues managementValues{collaborators, settings, monitors, readiness};
    journal::OwnSettings ownSettings{settings, adapter, lists};
    journal::JournallingGate gate{collaborators, settings};
    journal::JournalRefresh refresh{{collaborators, settings, ownSettings, managementValues, lists, notifier},
                                    [this] { loader.loadCallListsFromDb(); }};
    journal::ManagementAgent agent{{settings, ownSettings, managementValues, monitors, gate, lists, refresh,
                                    mirror.m_visitorCallLogSavePending}};

private:
    static std::string textOf(const std::vector<ManageableData>& records) {
        Texts texts;
        for (const ManageableData& data : records) {
            for (const std::string& key : data.getRootIds()) {
                texts.push_back(key + "=" + data.interogate(key)->getValue());
            }
        }
        return joined(texts);
    }
};

}  // namespace journaltest
