#include "host/csta-server/RequestResponder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/csta-server/SnapshotWriter.h"
#include "host/csta-wire/CallControlWire.h"
#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/NameSpaces.h"

namespace host {

struct RequestResponder::Row {
    std::string_view request;
    Responder responder;
};

RequestResponder::RequestResponder(Settings settings, SwitchMonitors& monitors, CallLogStore& callLogs,
                                   std::function<std::vector<LiveCall>(const std::string&)> liveCalls)
    : m_nameSpace(cstaNameSpace(settings.edition)),
      m_ownDevice(std::move(settings.ownDevice)),
      m_hasOnlyOwnDevice(settings.hasOnlyOwnDevice),
      m_monitors(monitors),
      m_callLogs(callLogs),
      m_liveCalls(std::move(liveCalls)) {}

RequestResponder::Outcome RequestResponder::respond(const WireDocument& request, int client) {
    static constexpr std::array rows = {
        Row{"MonitorStart", &RequestResponder::monitorStart},
        Row{"MonitorStop", &RequestResponder::stopMonitor},
        Row{"ChangeMonitorFilter", &RequestResponder::changeFilter},
        Row{"SystemRegister", &RequestResponder::systemRegister},
        Row{"SystemRegisterCancel", &RequestResponder::emptyResponse},
        Row{"RequestSystemStatus", &RequestResponder::requestSystemStatus},
        Row{"SystemStatus", &RequestResponder::emptyResponse},
        Row{"Escape", &RequestResponder::escape},
        Row{"SnapshotDevice", &RequestResponder::snapshotDevice},
        Row{"SnapshotCall", &RequestResponder::snapshotCall},
        Row{"GetSwitchingFunctionDevices", &RequestResponder::devices},
        Row{"StartApplicationSession", &RequestResponder::startSession},
        Row{"ResetApplicationSessionTimer", &RequestResponder::resetSession},
        Row{"StopApplicationSession", &RequestResponder::stopSession},
    };
    if (request.kind() != MessageKind::eRequest) {
        return {};
    }
    const auto* const row =
        std::find_if(rows.begin(), rows.end(),
                     [name = request.name()](const Row& candidate) { return candidate.request == name; });
    return row == rows.end() ? Outcome{error("operation", "serviceNotSupported")}
                             : (this->*row->responder)(request, client);
}

std::string RequestResponder::wrongResponse(std::string_view requestName) const {
    const std::string_view name =
        requestName == "MonitorStop" ? "SystemStatusResponse" : "MonitorStopResponse";
    return MessageWriter(name, m_nameSpace).finish();
}

void RequestResponder::addLines(const std::string& device, const std::vector<std::string>& lines) {
    if (lines.empty()) {
        return;
    }
    std::vector<std::string>& devices = m_devices[comparableNumber(device)];
    if (devices.empty()) {
        devices.push_back(device);
    }
    for (const std::string& line : lines) {
        if (std::find(devices.begin(), devices.end(), line) == devices.end()) {
            devices.push_back(line);
        }
    }
}

std::string RequestResponder::systemStatus(std::string_view word) const {
    return MessageWriter("SystemStatus", m_nameSpace).text("systemStatus", word).finish();
}

std::string RequestResponder::monitorStop(std::string_view id) const {
    return MessageWriter("MonitorStop", m_nameSpace).text("monitorCrossRefID", id).finish();
}

RequestResponder::Outcome RequestResponder::monitorStart(const WireDocument& request, int client) {
    const pugi::xml_node object = childNamed(request.root(), "monitorObject");
    if (!childNamed(object, "deviceObject")) {
        return {error("operation", "invalidMonitorObject")};
    }
    const std::string device = childText(object, "deviceObject");
    if (!hasDevice(device)) {
        return {error("operation", "invalidDeviceID")};
    }
    const SwitchMonitor& monitor =
        m_monitors.add(device.empty() ? m_ownDevice : device, client,
                       WireFilter::read(childNamed(request.root(), "requestedMonitorFilter")));
    MessageWriter writer("MonitorStartResponse", m_nameSpace);
    writer.text("monitorCrossRefID", monitor.id);
    if (!monitor.filter.empty()) {
        writer.open("actualMonitorFilter");
        monitor.filter.write(writer);
        writer.close();
    }
    return {.response = writer.finish(), .monitorStarted = true};
}

RequestResponder::Outcome RequestResponder::stopMonitor(const WireDocument& request, int client) {
    const std::string id = childText(request.root(), "monitorCrossRefID");
    if (m_monitors.find(id, client) == nullptr) {
        return {error("operation", "invalidMonitorCrossRefID")};
    }
    m_monitors.remove(id);
    return emptyResponse(request, client);
}

RequestResponder::Outcome RequestResponder::changeFilter(const WireDocument& request, int client) {
    SwitchMonitor* monitor = m_monitors.find(childText(request.root(), "monitorCrossRefID"), client);
    if (monitor == nullptr) {
        return {error("operation", "invalidMonitorCrossRefID")};
    }
    monitor->filter.apply(childNamed(request.root(), "requestedFilterList"));
    MessageWriter writer("ChangeMonitorFilterResponse", m_nameSpace);
    writer.open("actualFilterList");
    monitor->filter.write(writer);
    return {writer.finish()};
}

RequestResponder::Outcome RequestResponder::systemRegister(const WireDocument& /*request*/, int /*client*/) {
    MessageWriter writer("SystemRegisterResponse", m_nameSpace);
    writer.text("sysStatRegisterID", std::to_string(++m_registrations));
    return {.response = writer.finish(), .registered = true};
}

RequestResponder::Outcome RequestResponder::requestSystemStatus(const WireDocument& /*request*/,
                                                                int /*client*/) {
    return {
        MessageWriter("RequestSystemStatusResponse", m_nameSpace).text("systemStatus", m_status).finish()};
}

/// The request contains no device: it applies to the logs of the devices that the client monitors.
RequestResponder::Outcome RequestResponder::escape(const WireDocument& request, int client) {
    const pugi::xml_node root = request.root();
    if (!childNamed(childNamed(privateDataOf(root), "private"), kCallLogEntryRequest)) {
        return emptyResponse(request, client);
    }
    const std::optional<CallLogEntryRequest> logRequest = readCallLogEntryRequest(root);
    if (!logRequest) {
        return {error("operation", "invalidParameterValue")};
    }
    Outcome outcome = emptyResponse(request, client);
    for (const std::string& device : m_monitors.devicesOf(client)) {
        std::optional<CallLog::Events> events =
            m_callLogs.change(device, [&logRequest](CallLog& log) { return log.apply(*logRequest); });
        if (!events) {
            return {error("operation", "invalidParameterValue")};
        }
        outcome.callLogChanges.emplace_back(device, std::move(*events));
    }
    return outcome;
}

RequestResponder::Outcome RequestResponder::snapshotDevice(const WireDocument& request, int /*client*/) {
    std::string device = firstText(childNamed(request.root(), "snapshotObject"));
    if (!hasDevice(device)) {
        return {error("operation", "invalidDeviceID")};
    }
    device = device.empty() ? m_ownDevice : device;
    return {writeDeviceSnapshot(m_nameSpace, device, m_liveCalls(device))};
}

RequestResponder::Outcome RequestResponder::snapshotCall(const WireDocument& request, int /*client*/) {
    const WireConnection connection = readConnection(childNamed(request.root(), "snapshotObject"));
    if (!hasDevice(connection.deviceId)) {
        return {error("operation", "invalidDeviceID")};
    }
    const std::string& device = connection.deviceId.empty() ? m_ownDevice : connection.deviceId;
    for (const LiveCall& call : m_liveCalls(device)) {
        if (call.callId == connection.callId) {
            return {writeCallSnapshot(m_nameSpace, call)};
        }
    }
    return {error("operation", "invalidCallID")};
}

RequestResponder::Outcome RequestResponder::devices(const WireDocument& request, int /*client*/) {
    const std::string device = childText(request.root(), "requestedDeviceID");
    const auto devices = m_devices.find(comparableNumber(device.empty() ? m_ownDevice : device));
    if (devices == m_devices.end()) {
        return {error("operation", "serviceNotSupported")};
    }
    const std::string crossRefId = std::to_string(++m_deviceLists);
    MessageWriter list("SwitchingFunctionDevices", m_nameSpace);
    list.text("serviceCrossRefID", crossRefId).flag("lastSegment", true).open("deviceList");
    for (const std::string& one : devices->second) {
        list.open("deviceListItem").text("deviceID", one).text("deviceCategory", "station").close();
    }
    Outcome outcome{MessageWriter("GetSwitchingFunctionDevicesResponse", m_nameSpace)
                        .text("serviceCrossRefID", crossRefId)
                        .finish()};
    outcome.followUp = list.finish();
    return outcome;
}

RequestResponder::Outcome RequestResponder::startSession(const WireDocument& request, int /*client*/) {
    const pugi::xml_node versions = childNamed(request.root(), "requestedProtocolVersions");
    MessageWriter writer("StartApplicationSessionPosResponse", kSessionNameSpace);
    writer.text("sessionID", std::to_string(++m_sessions));
    writer.text("actualProtocolVersion", childText(versions, "protocolVersion"));
    writer.text("actualSessionDuration", childText(request.root(), "requestedSessionDuration"));
    return {writer.finish()};
}

RequestResponder::Outcome RequestResponder::resetSession(const WireDocument& request, int /*client*/) {
    MessageWriter writer("ResetApplicationSessionTimerPosResponse", kSessionNameSpace);
    writer.text("actualSessionDuration", childText(request.root(), "requestedSessionDuration"));
    return {writer.finish()};
}

RequestResponder::Outcome RequestResponder::emptyResponse(const WireDocument& request, int /*client*/) {
    return {MessageWriter(std::string(request.name()) + "Response", m_nameSpace).finish()};
}

RequestResponder::Outcome RequestResponder::stopSession(const WireDocument& /*request*/, int /*client*/) {
    return {MessageWriter("StopApplicationSessionPosResponse", kSessionNameSpace).finish()};
}

bool RequestResponder::hasDevice(std::string_view device) const {
    return !m_hasOnlyOwnDevice || device.empty() || comparableNumber(device) == comparableNumber(m_ownDevice);
}

std::string RequestResponder::error(std::string_view category, std::string_view value) const {
    return MessageWriter("CSTAErrorCode", m_nameSpace).text(category, value).finish();
}

}  // namespace host
