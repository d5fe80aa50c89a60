#include "src/JournalServiceEvents/configuration/VisitorCallLog.h"

#include <charconv>

#include "platform/framework/Context.h"
#include "platform/services/MobilityServiceIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"

namespace journal {

namespace {

constexpr int kHourMs = 3600000;
constexpr int kSpreadMsPerByte = 14000;

}  // namespace

VisitorCallLog::~VisitorCallLog() {
    if (m_platform.m_context != nullptr) {
        m_platform.m_context->deleteTimer(m_autoSaveVisitorCallLogTimerId);
        m_platform.m_context->deleteTimer(m_hourlyVisitorCallLogTimerId);
    }
}

int VisitorCallLog::getLastByteOfMacAddr(const std::string& macAddress) {
    // Unsigned, because a signed number accepts the "-" that separates the bytes of an address.
    unsigned byte = 0;
    if (macAddress.size() >= 2) {
        const char* begin = macAddress.data() + macAddress.size() - 2;
        const auto parsed = std::from_chars(begin, begin + 2, byte, 16);
        if (parsed.ptr != begin + 2) {
            byte = 0;
        }
    }
    return static_cast<int>(byte);
}

void VisitorCallLog::createFirstTimer(const PhoneValues& phoneValues) {
    Context& context = *m_platform.m_context;
    std::string macAddress;
    if (!phoneValues.getUlmoValue("mac-addr", macAddress)) {
        context.startTimer(m_autoSaveVisitorCallLogTimerId);
        return;
    }
    const int delayMs = kSpreadMsPerByte * getLastByteOfMacAddr(macAddress) + kHourMs;
    LOG_JOURNAL(6, "inital timeout for auto calllog save:%d", delayMs);
    m_autoSaveVisitorCallLogTimerId = context.createTimer(m_handler, delayMs);
    if (m_autoSaveVisitorCallLogTimerId == -1) {
        LOG_JOURNAL(2, "could not start autoSaveVisitorCallLogToVantor timer");
    }
}

void VisitorCallLog::onTimer(int id) {
    if (id == -1) {
        return;
    }
    if (id == m_autoSaveVisitorCallLogTimerId) {
        startHourlyTimer();
    } else if (id == m_hourlyVisitorCallLogTimerId) {
        m_platform.m_context->startTimer(id);
        save();
    }
}

void VisitorCallLog::startHourlyTimer() {
    Context& context = *m_platform.m_context;
    context.deleteTimer(m_autoSaveVisitorCallLogTimerId);
    m_autoSaveVisitorCallLogTimerId = -1;
    if (!m_settings.values()->isQorvex()) {
        return;
    }
    m_hourlyVisitorCallLogTimerId = context.createTimer(m_handler, kHourMs);
    if (m_hourlyVisitorCallLogTimerId == -1) {
        LOG_JOURNAL(2, "could not create timer");
        return;
    }
    context.startTimer(m_hourlyVisitorCallLogTimerId);
    save();
}

void VisitorCallLog::save() {
    auto* mobility = m_platform.m_mobilityService;
    if (mobility == nullptr || !m_visitorCallLogSavePending.exchange(false)) {
        return;
    }
    if (mobility->saveVisitorCallLog()) {
        LOG_JOURNAL(5, "mobility svc returned true!");
    } else {
        LOG_JOURNAL(5, "mobility svc returned false");
        m_visitorCallLogSavePending = true;
    }
}

}  // namespace journal
