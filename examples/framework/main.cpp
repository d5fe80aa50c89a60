// The least framework that loads the journal: it has a clock, a log and a switch, reports one call by hand,
// and prints what the journal files. docs/embedding.md describes each step.

#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <map>
#include <memory>
#include <string>

#include "journalservice/JournalServiceIfc.h"
#include "journalservice/JournalServiceObserverIfc.h"
#include "platform/clock/ClockServiceIfc.h"
#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/framework/Context.h"
#include "platform/framework/Service.h"
#include "platform/hardware/HardwareVersion.h"
#include "platform/logging/Logging.h"

// The three functions that the library expects of the process.
bool loggingOnAppUni(const char* /*component*/, int level) noexcept {
    return level <= 2;  // errors
}
void logAppUni(const char* component, const char* /*file*/, int level, int /*line*/, const char* format,
               ...) noexcept {
    if (loggingOnAppUni(component, level)) {
        va_list arguments;
        va_start(arguments, format);
        std::fprintf(stderr, "%s: ", component);
        std::vfprintf(stderr, format, arguments);
        std::fputc('\n', stderr);
        va_end(arguments);
    }
}
int HardwareVersion::getHWSubPlatformVariant() noexcept {
    return 0;
}

namespace {

class Clock : public Executable, public ClockServiceIfc {
public:
    DateTime getDateTime() override {
        const std::time_t now = std::time(nullptr);
        const std::tm* utc = std::gmtime(&now);
        return {utc->tm_year + 1900, utc->tm_mon + 1, utc->tm_mday, utc->tm_hour, utc->tm_min, utc->tm_sec};
    }
    long getSeconds() override { return std::time(nullptr); }
    std::string formatTimeDate(long seconds) override {
        const std::time_t time = seconds;
        char text[32];
        return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&time))};
    }
    bool splitTimeDate(const std::string& text, DateTime& at) override {
        return std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &at.year, &at.month, &at.day, &at.hour,
                           &at.minute, &at.second) == 6;
    }
};

/// A switch that grants the monitor, remembers who gets its events, and has no other service.
class Switch : public Executable, public CSTAServiceIfc {
public:
    CSTAEventIfc* receiver = nullptr;

    void request(CSTARequest& request) override {
        if (dynamic_cast<CSTAMonitorStartRequest*>(&request) != nullptr) {
            receiver = request.getCSTAEventIfc();
            request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>("1"));
        }
    }
};

/// Finds the services. This framework's timers never expire; a real one calls `timerEvent`.
class Framework : public Context {
public:
    Clock clock;
    Switch telephoneSwitch;

    Executable* findService(const std::string& name) override {
        return name == "ClockServiceIfc"  ? static_cast<Executable*>(&clock)
               : name == "CSTAServiceIfc" ? static_cast<Executable*>(&telephoneSwitch)
                                          : nullptr;
    }
    int createTimer(Executable& /*handler*/, int /*milliseconds*/) override {
        m_timers[++m_last] = false;
        return m_last;
    }
    bool startTimer(int id) override { return set(id, true); }
    bool stopTimer(int id) override { return set(id, false); }
    bool restartTimer(int id) override { return set(id, true); }
    bool deleteTimer(int id) override { return m_timers.erase(id) != 0; }
    bool isTimerRunning(int id) override { return m_timers.count(id) != 0 && m_timers[id]; }

private:
    bool set(int id, bool runs) {
        const auto timer = m_timers.find(id);
        return timer != m_timers.end() && ((timer->second = runs), true);
    }

    std::map<int, bool> m_timers;
    int m_last = 0;
};

class Observer : public JournalServiceObserverIfc {
public:
    void missedCallsCountUpdate(int count) override { std::printf("new missed calls: %d\n", count); }
    void missedCallsUpdate(MissedCallItem item, std::string /*entryId*/, ActionType /*action*/) override {
        for (const auto& call : item.getMissedCallInfoList()) {
            std::printf("missed: %s %s\n", call.getNumber().c_str(), item.getSurname().c_str());
        }
    }
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override {}
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override {}
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override {}
    void callBacksUpdate(CallBackItem, std::string, ActionType) override {}
    void callBacksCountUpdate(int /*count*/) override {}
};

/// A call that rings at the telephone, and whose caller gives up.
void reportCall(CSTAEventIfc& receiver) {
    const CSTADevice own{CSTADevice::kLocalDevice, ""};
    const CSTADevice caller{"+4930123456", "Ann Miller"};
    CSTADeliveredEvent rings;
    rings.setMonitorCrossRefID("1");
    rings.setConnection("c1", CSTADevice::kLocalDevice);
    rings.setAlertingDevice(own);
    rings.setCallingDevice(caller);
    rings.setCalledDevice(own);
    rings.setLocalConnectionInfo(CSTA_LCS_Alerting);
    receiver.deliverEvent(&rings);

    CSTAConnectionClearedEvent ends;
    ends.setMonitorCrossRefID("1");
    ends.setConnection("c1", CSTADevice::kLocalDevice);
    ends.setReleasingDevice(caller);
    receiver.deliverEvent(&ends);
}

}  // namespace

int main() {
    void* const library = dlopen("libjournalservice.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const auto create = reinterpret_cast<void* (*)()>(dlsym(library, "createJournalService"));
    Framework framework;  // outlives the service
    const std::unique_ptr<Service> service(static_cast<Service*>(create()));
    auto* const journal = dynamic_cast<JournalServiceIfc*>(service.get());

    service->init(framework);
    service->run();
    Observer observer;
    journal->subscribeForJournalEvents(&observer);
    if (framework.telephoneSwitch.receiver != nullptr) {
        reportCall(*framework.telephoneSwitch.receiver);
    }
    journal->unsubscribeForJournalEvents(&observer);
    service->shutdown();
    return 0;
}
