#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"

#include <algorithm>

#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/texts/communicationsServiceTexts.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"

namespace journal {

namespace {

constexpr const char* kReturnedError = "Returned ERROR";

CSTAMonitorFilter ownLineFilter() {
    CSTAMonitorFilter filter;
    filter.setCallControlFilter(false);
    filter.setHeldFilter(true);
    filter.setRetrievedFilter(true);
    filter.setServiceInitiatedFilter(true);
    filter.setCallAssociatedFilter(true);
    filter.setCallInformationFilter(false);
    filter.setPhysicalDeviceFilter(true);
    filter.setLogicalDeviceFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setCallLogEntryFilter(false);
    filter.setSystemFilter(true);
    filter.setSystemStatusFilter(false);
    return filter;
}

CSTAMonitorFilter changeRequestFilter(bool useCallControlEvents) {
    CSTAMonitorFilter filter;
    filter.setCallControlFilter(false);
    filter.setCallAssociatedFilter(true);
    filter.setPhysicalDeviceFilter(true);
    filter.setLogicalDeviceFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setCallLogEntryFilter(false);
    filter.setSystemFilter(true);
    filter.setSystemStatusFilter(false);
    filter.setFS_DNDFilter(false);
    filter.setFS_COCFilter(false);
    if (useCallControlEvents) {
        filter.setHeldFilter(true);
        filter.setRetrievedFilter(true);
        filter.setServiceInitiatedFilter(true);
        filter.setCallInformationFilter(false);
    }
    return filter;
}

}  // namespace

void CstaMonitors::store(CrossRef& buffer, const std::string& crossRef) {
    buffer.fill('\0');
    std::copy_n(crossRef.begin(), std::min(crossRef.size(), buffer.size() - 1), buffer.begin());
}

bool CstaMonitors::transmit(CSTARequest& request) const {
    request.setSourceService(m_source);
    if (m_platform.m_cstaService != nullptr) {
        m_platform.m_cstaService->request(request);
    }
    return request.getResponseCode() == 0;
}

template <typename Response>
Response* CstaMonitors::send(CSTARequest& request, const char* operation, const char* failure) const {
    if (!transmit(request)) {
        LOG_EVENTS(5, "%s():%s", operation, failure);
        return nullptr;
    }
    auto* response = dynamic_cast<Response*>(request.getResponse());
    if (response == nullptr) {
        LOG_EVENTS(5, "%s():Returned NULL response", operation);
        return nullptr;
    }
    if (response->isErrorResponse()) {
        LOG_EVENTS(5, "%s():Returned an error response", operation);
        return nullptr;
    }
    return response;
}

bool CstaMonitors::start(OwnMonitor& monitor, CSTAMonitorStartRequest& request, const char* logName) {
    const auto* response = send<CSTAMonitorStartResponse>(request, logName, kReturnedError);
    if (response == nullptr) {
        return false;
    }
    store(monitor.crossRef, response->GetMonitorCrossRefID());
    monitor.started = true;
    return true;
}

bool CstaMonitors::stop(OwnMonitor& monitor, const char* logName) {
    CSTAMonitorStopRequest request;
    request.setMonitorCrossRefID(monitor.crossRef.data());
    if (send<CSTAMonitorStopResponse>(request, logName, kReturnedError) == nullptr) {
        return false;
    }
    LOG_EVENTS(5, "%s():OK", logName);
    store(monitor.crossRef, {});
    monitor.started = false;
    return true;
}

void CstaMonitors::start() {
    if (!m_settings.values()->isSip()) {
        startQorvexEvents();
    }
    CSTASystemRegister();
}

void CstaMonitors::CSTASystemRegister() {
    LOG_EVENTS(4, "JournalService::CSTASystemRegister - register with CSTA Service");
    if (m_platform.m_cstaService == nullptr) {
        return;
    }
    CSTASystemStatusRequest request;
    request.setCSTAEventIfc(&m_receiver);
    if (transmit(request)) {
        LOG_EVENTS(5, "JournalService() : response code is ok");
    } else {
        LOG_EVENTS(2, "JournalService() : response code is error");
    }
}

bool CstaMonitors::startQorvexEvents() {
    constexpr const char* kLogName = "startQorvexEvents";
    LOG_EVENTS(5, "JournalService():startQorvexEvents()");
    CSTAMonitorStartRequest request;
    request.setCSTAEventIfc(&m_receiver);
    request.setDeviceObject(CSTADevice::kLocalDevice);
    request.setRequestedMonitorFilter(ownLineFilter());
    if (!start(m_qorvex, request, kLogName)) {
        return false;
    }
    LOG_EVENTS(5, "%s():OK registered monitor cross filter [%s]", kLogName, m_qorvex.crossRef.data());
    return true;
}

bool CstaMonitors::stopQorvexEvents() {
    constexpr const char* kLogName = "stopQorvexEvents";
    LOG_EVENTS(5, "JournalService():stopQorvexEvents()");
    return stop(m_qorvex, kLogName);
}

bool CstaMonitors::startMonitoringBluetoothEvents() {
    constexpr const char* kLogName = "startMonitoringBluetoothEvents";
    LOG_EVENTS(5, "%s():startMonitoringBluetoothEvents:", kLogName);
    CSTAMonitorStartRequest request;
    request.setCSTAEventIfc(&m_receiver);
    request.setDeviceObject(communicationsServiceTexts::content_bluetoothDeviceId);
    if (!start(m_bluetooth, request, kLogName)) {
        return false;
    }
    LOG_EVENTS(5, "%s():startMonitoringBluetoothEvents: registered monitor cross filter [%s]", kLogName,
               m_bluetooth.crossRef.data());
    return true;
}

bool CstaMonitors::stopMonitoringBluetoothEvents() {
    constexpr const char* kLogName = "stopMonitoringBluetoothEvents";
    if (!m_bluetooth.started) {
        LOG_EVENTS(5, "%s(): - monitor not started, do nothing", kLogName);
        return false;
    }
    LOG_EVENTS(5, "%s():", kLogName);
    return stop(m_bluetooth, kLogName);
}

std::string CstaMonitors::startCSTAMonitor(const std::string& device) {
    LOG_EVENTS(5, "CSTAMonitor is started for Device: %s", device.c_str());
    if (m_platform.m_cstaService == nullptr) {
        LOG_EVENTS(3, "JournalService::startCSTAMonitor - Find CSTAServiceIfc - FAILED");
        return kNoMonitor;
    }
    CSTAMonitorStartRequest request;
    request.setCSTAEventIfc(&m_receiver);
    request.setDeviceObject(device);
    if (!transmit(request)) {
        LOG_EVENTS(3, "JournalService monitor start on %s - FAILED", device.c_str());
        return kNoMonitor;
    }
    std::string crossRef = kNoMonitor;
    if (const auto* response = dynamic_cast<CSTAMonitorStartResponse*>(request.getResponse())) {
        crossRef = response->GetMonitorCrossRefID();
        LOG_EVENTS(5, "%s():startCSTAMonitor: registered monitor cross filter [%s]", "startCSTAMonitor",
                   crossRef.c_str());
    }
    LOG_EVENTS(5, "JournalService monitor start on %s", device.c_str());
    return crossRef;
}

void CstaMonitors::stopCSTAMonitor(const std::string& crossRef) const {
    LOG_EVENTS(5, "CSTAMonitor is stopped for Device: %s", crossRef.c_str());
    if (m_platform.m_cstaService == nullptr) {
        LOG_EVENTS(3, "JournalService::stopCSTAMonitor - Find CSTAServiceIfc - FAILED");
        return;
    }
    CSTAMonitorStopRequest request;
    request.setMonitorCrossRefID(crossRef);
    if (transmit(request)) {
        LOG_EVENTS(5, "JournalService::stopCSTAMonitor : success response from csta");
    } else {
        LOG_EVENTS(3, "JournalService::stopCSTAMonitor : fail response from csta");
    }
}

void CstaMonitors::changeMonitorFilter() {
    constexpr const char* kLogName = "readLocalMgmtData";
    const auto settings = m_settings.values();
    if (settings->isSip() || m_platform.m_cstaService == nullptr) {
        return;
    }
    LOG_EVENTS(5, "%s():begin change monitor filter", kLogName);
    if (settings->m_useCSTACallControlEvents) {
        LOG_EVENTS(5, "%s():m_useCSTACallControlEvents == true => CallControl plus CallInfo", kLogName);
    }
    CSTAChangeMonitorFilterRequest request;
    request.setCSTAEventIfc(&m_receiver);
    request.setDeviceObject(CSTADevice::kLocalDevice);
    request.setRequestedFilterList(changeRequestFilter(settings->m_useCSTACallControlEvents));
    if (send<CSTAChangeMonitorFilterResponse>(request, kLogName, "changeMonitorFilterReq returned ERROR") !=
        nullptr) {
        LOG_EVENTS(5, "%s():readLocalMgmtData: registered change of cross filter", kLogName);
    }
}

}  // namespace journal
