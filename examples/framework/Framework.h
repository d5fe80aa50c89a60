#pragma once

#include <cstdio>
#include <ctime>
#include <map>
#include <memory>
#include <string>

#include "platform/clock/ClockServiceIfc.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/framework/Context.h"
#include "platform/framework/Executable.h"

/// The time in UTC.
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
