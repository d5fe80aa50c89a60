#pragma once

#include <string>

#include "platform/csta/CSTAEventIfc.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalServiceEvents/configuration/JournalRefresh.h"
#include "src/JournalServiceEvents/configuration/JournalSettings.h"
#include "src/JournalServiceEvents/configuration/ManagementAgent.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeLocalMgmt.h"
#include "tests/support/FakeServices.h"
#include "tests/support/ListsFixture.h"

namespace journaltest {

/// The journal's parts that follow the phone's management, on a SIP phone until a test says otherwise. One thread.
class ConfigurationFixture : public ListsFixture, public MgmtAgentIfc, public CSTAEventIfc {
public:
    ConfigurationFixture() {
        platform.m_localMgmt = &management;
        platform.m_context = &context;
        platform.m_digitAnalysisService = &digits;
    }

    /// Switches the own settings on that stand in `on`, "enabled missed delete", and the others off.
    void setOwn(const std::string& on) {
        settings.change([&on](journal::SettingsSnapshot& values) {
            values.m_callLogEnabled = on.find("enabled") != std::string::npos;
            values.m_missedLogging = on.find("missed") != std::string::npos;
            values.m_deleteMissedWhenCalled = on.find("delete") != std::string::npos;
        });
    }
    /// The own settings that are on.
    [[nodiscard]] std::string own() const {
        const auto now = settings.values();
        const std::string text = std::string(now->m_callLogEnabled ? " enabled" : "") +
                                 (now->m_missedLogging ? " missed" : "") +
                                 (now->m_deleteMissedWhenCalled ? " delete" : "");
        return text.empty() ? text : text.substr(1);
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
    FakeUC uc;
    FakePallax pallax;
    FakeWsi wsi;
    journal::CstaMonitors monitors{platform, settings, *this};
    journal::CallLogReadiness readiness;
    journal::PhoneValues managementValues{platform, settings, monitors, readiness};
    journal::JournalSettings ownSettings{settings, adapter, lists};
    journal::JournalPolicy gate{platform, settings};
    journal::JournalRefresh refresh{{platform, settings, ownSettings, managementValues, lists, notifier},
                                    [this] { loader.loadCallListsFromDb(); }};
    journal::ManagementAgent agent{{settings, ownSettings, managementValues, monitors, gate, lists, refresh,
                                    persistence.m_visitorCallLogSavePending}};
};

}  // namespace journaltest
