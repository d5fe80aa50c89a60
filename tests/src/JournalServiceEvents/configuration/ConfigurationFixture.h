#pragma once

#include <string>

#include "platform/csta/CSTAEventIfc.h"
#include "platform/framework/Executable.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalServiceEvents/configuration/JournalRefresh.h"
#include "src/JournalServiceEvents/configuration/JournalSettings.h"
#include "src/JournalServiceEvents/configuration/ManagementAgent.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"
#include "src/JournalServiceEvents/configuration/VisitorCallLog.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeLocalMgmt.h"
#include "tests/support/FakeServices.h"
#include "tests/support/ListsFixture.h"

namespace journaltest {

/// The components that depend on the phone's management, on a SIP phone by default. Call from one thread.
class ConfigurationFixture : public ListsFixture,
                             public MgmtAgentIfc,
                             public CSTAEventIfc,
                             public Executable {
public:
    ConfigurationFixture() {
        platform.m_localMgmt = &management;
        platform.m_context = &context;
        platform.m_digitAnalysisService = &digits;
    }

    /// Turns the own settings named in `on` ("enabled missed delete") on and the others off.
    void setOwn(const std::string& on) {
        settings.change([&on](journal::SettingsSnapshot& values) {
            values.m_callLogEnabled = on.find("enabled") != std::string::npos;
            values.m_missedLogging = on.find("missed") != std::string::npos;
            values.m_deleteMissedWhenCalled = on.find("delete") != std::string::npos;
        });
    }
    /// Returns the own settings that are on.
    [[nodiscard]] std::string own() const {
        const auto now = settings.values();
        const std::string text = std::string(now->m_callLogEnabled ? " enabled" : "") +
                                 (now->m_missedLogging ? " missed" : "") +
                                 (now->m_deleteMissedWhenCalled ? " delete" : "");
        return text.empty() ? text : text.substr(1);
    }

    // Delegation as in the service.
    bool setData(ManageableData& data) override { return agent.setData(data); }
    bool getData(ManageableData& data) override { return agent.getData(data); }
    void manageableDataChanged(ManageableData& data) override { agent.manageableDataChanged(data); }
    bool resetUserData() override { return refresh.resetUserData(); }
    void deliverEvent(CSTAEvent* /*event*/) override {}
    void timerEvent(int id) override { visitorCallLog.onTimer(id); }

    FakeLocalMgmt management;
    FakeContext context;
    FakeDigits digits;
    FakeUC uc;
    FakePallax pallax;
    FakeWsi wsi;
    journal::CstaMonitors monitors{platform, settings, nullptr, *this};
    journal::CallLogReadiness readiness;
    journal::PhoneValues phoneValues{platform, settings, monitors, readiness};
    journal::JournalSettings journalSettings{settings, adapter, deletion};
    journal::JournalPolicy policy{platform, settings};
    journal::JournalRefresh refresh{platform, settings, journalSettings, phoneValues,
                                    lists,    deletion, loader};
    journal::VisitorCallLog visitorCallLog{platform, settings, *this};
    journal::ManagementAgent agent{settings, journalSettings, phoneValues, monitors,
                                   policy,   deletion,        refresh,     visitorCallLog};
};

}  // namespace journaltest
