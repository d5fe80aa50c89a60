// The journal's monitors at the switch: filters in full, and what each kind of bad answer does and leaves in the log.

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using Kind = FakeCstaService::Kind;

/// Groups that are suppressed, that are let through, and that are left to the service.
std::string textOf(const CSTAMonitorFilter& filter) {
    const std::pair<const char*, CSTAMonitorFilter::Setting> groups[] = {
        {"callControl", filter.callControl()},
        {"held", filter.held()},
        {"retrieved", filter.retrieved()},
        {"serviceInitiated", filter.serviceInitiated()},
        {"callAssociated", filter.callAssociated()},
        {"callInformation", filter.callInformation()},
        {"physicalDevice", filter.physicalDevice()},
        {"logicalDevice", filter.logicalDevice()},
        {"vendorSpecific", filter.vendorSpecific()},
        {"callLogEntry", filter.callLogEntry()},
        {"system", filter.system()},
        {"systemStatus", filter.systemStatus()},
        {"dnd", filter.fsDnd()},
        {"coc", filter.fsCoc()}};
    std::string suppressed = "suppressed:";
    std::string through = "; through:";
    std::string unset = "; unset:";
    for (const auto& [name, setting] : groups) {
        std::string& text = !setting ? unset : *setting ? suppressed : through;
        text += std::string(" ") + name;
    }
    return suppressed + through + unset;
}

class CstaMonitors : public testing::Test {
protected:
    [[nodiscard]] std::string lastFilter() const { return textOf(rig.exchange.requests().back().filter); }

    ManagementRig rig;
};

TEST_F(CstaMonitors, OfTheOwnLineHaveAFilter) {
    EXPECT_TRUE(rig.monitors.startQorvexEvents());
    EXPECT_TRUE(rig.monitors.qorvexEventsStarted());
    EXPECT_EQ(rig.exchange.requests().back().device, "localDeviceID");
    EXPECT_EQ(rig.exchange.requests().back().receiver, &rig);
    EXPECT_EQ(lastFilter(),
              "suppressed: held retrieved serviceInitiated callAssociated physicalDevice logicalDevice "
              "vendorSpecific system; through: callControl callInformation callLogEntry systemStatus; "
              "unset: dnd coc");
    EXPECT_TRUE(CapturedLog::contains("JournalService():startQorvexEvents()"));
    EXPECT_TRUE(CapturedLog::contains("startQorvexEvents():OK registered monitor cross filter [1]"));

    EXPECT_TRUE(rig.monitors.stopQorvexEvents());
    EXPECT_FALSE(rig.monitors.qorvexEventsStarted());
    EXPECT_EQ(rig.asked(), "start localDeviceID; stop 1");
    EXPECT_TRUE(CapturedLog::contains("stopQorvexEvents():OK"));
    rig.monitors.stopQorvexEvents();
    EXPECT_EQ(rig.asked(), "start localDeviceID; stop 1; stop ") << "the cross reference is forgotten";
}

TEST_F(CstaMonitors, ChangeTheFilterByTheEventMode) {
    const std::string always =
        "suppressed: callAssociated physicalDevice logicalDevice vendorSpecific system; through: callControl "
        "callLogEntry systemStatus dnd coc; unset: held retrieved serviceInitiated callInformation";
    const std::string withCallControl =
        "suppressed: held retrieved serviceInitiated callAssociated physicalDevice logicalDevice "
        "vendorSpecific "
        "system; through: callControl callInformation callLogEntry systemStatus dnd coc; unset:";
    for (const int systemIdentifier : {0, 1, 2, 3}) {
        rig.phoneIs(softwareTypes::qorvex, systemIdentifier);
        rig.monitors.changeMonitorFilter();
        EXPECT_EQ(lastFilter(), systemIdentifier == 2 ? always : withCallControl) << systemIdentifier;
    }
    EXPECT_EQ(CapturedLog::count(
                  "readLocalMgmtData():m_useCSTACallControlEvents == true => CallControl plus CallInfo"),
              3);
    EXPECT_EQ(CapturedLog::count("readLocalMgmtData():readLocalMgmtData: registered change of cross filter"),
              4);
    rig.forget();
    rig.phoneIs(softwareTypes::sip);
    rig.monitors.changeMonitorFilter();
    rig.phoneIs(softwareTypes::qorvex);
    rig.collaborators.m_cstaService = nullptr;
    rig.monitors.changeMonitorFilter();
    EXPECT_EQ(rig.asked(), "");
}

TEST_F(CstaMonitors, OfTheBluetoothTelephoneHaveNone) {
    EXPECT_FALSE(rig.monitors.stopMonitoringBluetoothEvents());
    EXPECT_EQ(rig.asked(), "") << "nothing to stop";
    EXPECT_TRUE(CapturedLog::contains("stopMonitoringBluetoothEvents(): - monitor not started, do nothing"));

    EXPECT_TRUE(rig.monitors.startMonitoringBluetoothEvents());
    EXPECT_EQ(rig.exchange.requests().back().filter, CSTAMonitorFilter());
    EXPECT_TRUE(
        CapturedLog::contains("startMonitoringBluetoothEvents():startMonitoringBluetoothEvents: registered "
                              "monitor cross filter [1]"));
    EXPECT_TRUE(rig.monitors.stopMonitoringBluetoothEvents());
    EXPECT_FALSE(rig.monitors.bluetoothEventsStarted());
    EXPECT_EQ(rig.asked(), "start bluetoothDeviceID; stop 1");
}

struct Operation {
    const char* name;
    Kind kind;
    std::function<bool(ManagementRig&)> run;
    std::function<bool(const ManagementRig&)> isOn;
    bool onBefore;
    const char* function;  // as the log names it
    const char* errorText;
};

std::ostream& operator<<(std::ostream& out, const Operation& operation) {
    return out << operation.name;
}

class CstaMonitorsAnswered : public testing::TestWithParam<Operation> {
protected:
    CstaMonitorsAnswered() {
        rig.phoneIs(softwareTypes::qorvex);
        if (GetParam().onBefore) {
            rig.monitors.startQorvexEvents();
            rig.monitors.startMonitoringBluetoothEvents();
        }
    }
    void expectFailure(const std::string& text) {
        CapturedLog::reset();
        EXPECT_FALSE(GetParam().run(rig));
        EXPECT_EQ(GetParam().isOn(rig), GetParam().onBefore) << "nothing has changed";
        EXPECT_EQ(CapturedLog::count(std::string(GetParam().function) + "():" + text), 1)
            << CapturedLog::dump();
    }

    ManagementRig rig;
};

TEST_P(CstaMonitorsAnswered, BadlyStayAsTheyAre) {
    rig.exchange.fail(GetParam().kind, 7);
    expectFailure(GetParam().errorText);
    rig.exchange.answer(GetParam().kind, [](CSTARequest& request) { request.setOutcome(0, nullptr); });
    expectFailure("Returned NULL response");
    rig.exchange.answer(GetParam().kind, [](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAEscapeResponse>());
    });
    expectFailure("Returned NULL response");
    rig.exchange.refuse(GetParam().kind, "operation", "invalidDeviceID");
    expectFailure("Returned an error response");
    rig.exchange.grantAll();
    GetParam().run(rig);
    EXPECT_EQ(GetParam().isOn(rig), GetParam().kind != Kind::eMonitorStop) << "the next try may succeed";
}

const auto qorvexIsOn = [](const ManagementRig& rig) { return rig.monitors.qorvexEventsStarted(); };
const auto bluetoothIsOn = [](const ManagementRig& rig) { return rig.monitors.bluetoothEventsStarted(); };
const Operation kOperations[] = {
    {"StartOwnLine", Kind::eMonitorStart, [](ManagementRig& rig) { return rig.monitors.startQorvexEvents(); },
     qorvexIsOn, false, "startQorvexEvents", "Returned ERROR"},
    {"StopOwnLine", Kind::eMonitorStop, [](ManagementRig& rig) { return rig.monitors.stopQorvexEvents(); },
     qorvexIsOn, true, "stopQorvexEvents", "Returned ERROR"},
    {"StartBluetooth", Kind::eMonitorStart,
     [](ManagementRig& rig) { return rig.monitors.startMonitoringBluetoothEvents(); }, bluetoothIsOn, false,
     "startMonitoringBluetoothEvents", "Returned ERROR"},
    {"StopBluetooth", Kind::eMonitorStop,
     [](ManagementRig& rig) { return rig.monitors.stopMonitoringBluetoothEvents(); }, bluetoothIsOn, true,
     "stopMonitoringBluetoothEvents", "Returned ERROR"},
    {"ChangeFilter", Kind::eChangeMonitorFilter,
     [](ManagementRig& rig) {
         rig.monitors.changeMonitorFilter();
         return CapturedLog::contains("registered change of cross filter");
     },
     qorvexIsOn, true, "readLocalMgmtData", "changeMonitorFilterReq returned ERROR"},
};
INSTANTIATE_TEST_SUITE_P(Table, CstaMonitorsAnswered, testing::ValuesIn(kOperations), kRowName);

TEST_F(CstaMonitors, OfOtherDevicesAnswerTheirCrossReferenceOrError) {
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2002"), "1");
    EXPECT_EQ(rig.exchange.requests().back().filter, CSTAMonitorFilter());
    EXPECT_TRUE(
        CapturedLog::contains("startCSTAMonitor():startCSTAMonitor: registered monitor cross filter [1]"));

    rig.exchange.fail(Kind::eMonitorStart);
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2003"), "ERROR");
    EXPECT_TRUE(CapturedLog::contains("JournalService monitor start on 2003 - FAILED"));

    rig.exchange.answer(Kind::eMonitorStart, [](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAEscapeResponse>());
    });
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2004"), "ERROR");
    EXPECT_TRUE(CapturedLog::lines().back().text == "JournalService monitor start on 2004");

    rig.exchange.answer(Kind::eMonitorStart, [](CSTARequest& request) {
        auto response = std::make_unique<CSTAMonitorStartResponse>("5");
        response->setError("operation", "invalidDeviceID");
        request.setOutcome(0, std::move(response));
    });
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2005"), "5") << "a refusal is not asked for here";

    rig.forget();
    rig.monitors.stopCSTAMonitor("5");
    EXPECT_EQ(rig.asked(), "stop 5");
    rig.exchange.fail(Kind::eMonitorStop);
    rig.monitors.stopCSTAMonitor("6");
    rig.collaborators.m_cstaService = nullptr;
    EXPECT_EQ(rig.monitors.startCSTAMonitor("2006"), "ERROR");
    rig.monitors.stopCSTAMonitor("7");
    for (const char* line :
         {"CSTAMonitor is started for Device: 2002", "CSTAMonitor is stopped for Device: 5",
          "JournalService::stopCSTAMonitor : success response from csta",
          "JournalService::stopCSTAMonitor : fail response from csta",
          "JournalService::startCSTAMonitor - Find CSTAServiceIfc - FAILED",
          "JournalService::stopCSTAMonitor - Find CSTAServiceIfc - FAILED"}) {
        EXPECT_TRUE(CapturedLog::contains(line)) << line;
    }
}

TEST_F(CstaMonitors, KeepACrossReferenceOfNineteenCharacters) {
    const std::string longest(19, 'x');
    rig.exchange.answer(Kind::eMonitorStart, [&longest](CSTARequest& request) {
        request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>(longest));
    });
    rig.monitors.startQorvexEvents();
    rig.monitors.stopQorvexEvents();
    EXPECT_EQ(rig.asked(), "start localDeviceID; stop " + longest);
}

TEST_F(CstaMonitors, AskForTheSystemStatusAndLogTheOutcome) {
    rig.monitors.CSTASystemRegister();
    rig.exchange.fail(Kind::eSystemStatus);
    rig.monitors.CSTASystemRegister();
    EXPECT_EQ(rig.asked(), "status; status");
    EXPECT_EQ(CapturedLog::lines("Journal Service Events"),
              (Texts{"JournalService::CSTASystemRegister - register with CSTA Service",
                     "JournalService() : response code is ok",
                     "JournalService::CSTASystemRegister - register with CSTA Service",
                     "JournalService() : response code is error"}));
}

}  // namespace
}  // namespace journaltest
