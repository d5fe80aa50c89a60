#include "host/csta/requests/LinkMessages.h"

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/NameSpaces.h"
#include "host/csta/requests/FilterGroups.h"

namespace host {

LinkMessages::LinkMessages(std::string_view edition) : m_nameSpace(cstaNameSpace(edition)) {}

std::string LinkMessages::requestSystemStatus() const {
    return MessageWriter("RequestSystemStatus", m_nameSpace).finish();
}

std::string LinkMessages::systemRegister(bool withDevices) const {
    MessageWriter writer("SystemRegister", m_nameSpace);
    writer.open("requestTypes").flag("systemStatus", true).flag("requestSystemStatus", true);
    if (withDevices) {
        writer.flag("switchingFunctionDevicesChanged", true);
    }
    return writer.finish();
}

std::string LinkMessages::getSwitchingFunctionDevices(std::string_view ownDevice) const {
    return MessageWriter("GetSwitchingFunctionDevices", m_nameSpace)
        .text("requestedDeviceID", ownDevice)
        .finish();
}

std::string LinkMessages::monitorStart(std::string_view device, const CSTAMonitorFilter& filter) const {
    MessageWriter writer("MonitorStart", m_nameSpace);
    writer.open("monitorObject").text("deviceObject", device).close();
    if (suppressesAnything(filter)) {
        writer.open("requestedMonitorFilter");
        writeFilterGroups(writer, filter, false);
        writer.close();
    }
    writer.text("monitorType", "device");
    return writer.finish();
}

std::string LinkMessages::monitorStop(std::string_view crossRefId) const {
    return MessageWriter("MonitorStop", m_nameSpace).text("monitorCrossRefID", crossRefId).finish();
}

std::string LinkMessages::changeMonitorFilter(std::string_view crossRefId,
                                              const CSTAMonitorFilter& filter) const {
    MessageWriter writer("ChangeMonitorFilter", m_nameSpace);
    writer.text("monitorCrossRefID", crossRefId).open("requestedFilterList");
    writeFilterGroups(writer, filter, true);
    return writer.finish();
}

std::string LinkMessages::snapshotDevice(std::string_view device) const {
    return MessageWriter("SnapshotDevice", m_nameSpace).text("snapshotObject", device).finish();
}

std::string LinkMessages::snapshotCall(std::string_view callId, std::string_view device) const {
    MessageWriter writer("SnapshotCall", m_nameSpace);
    writer.open("snapshotObject").text("callID", callId).text("deviceID", device);
    return writer.finish();
}

std::string LinkMessages::escape(const CallLogEntryRequest& request) const {
    MessageWriter writer("Escape", m_nameSpace);
    writeCallLogEntryRequest(writer, request);
    return writer.finish();
}

std::string LinkMessages::systemStatusResponse() const {
    return MessageWriter("SystemStatusResponse", m_nameSpace).finish();
}

std::string LinkMessages::requestSystemStatusResponse() const {
    return MessageWriter("RequestSystemStatusResponse", m_nameSpace).text("systemStatus", "normal").finish();
}

std::string LinkMessages::monitorStopResponse() const {
    return MessageWriter("MonitorStopResponse", m_nameSpace).finish();
}

std::string LinkMessages::switchingFunctionDevicesChangedResponse() const {
    return MessageWriter("SwitchingFunctionDevicesChangedResponse", m_nameSpace).finish();
}

std::string LinkMessages::serviceNotSupported() const {
    return MessageWriter("CSTAErrorCode", m_nameSpace).text("operation", "serviceNotSupported").finish();
}

std::string LinkMessages::startApplicationSession(int durationSeconds) const {
    MessageWriter writer("StartApplicationSession", kSessionNameSpace);
    writer.open("applicationInfo").text("applicationID", "calljournal").close();
    writer.open("requestedProtocolVersions").text("protocolVersion", m_nameSpace).close();
    writer.text("requestedSessionDuration", std::to_string(durationSeconds));
    return writer.finish();
}

std::string LinkMessages::resetApplicationSessionTimer(std::string_view sessionId,
                                                       int durationSeconds) const {
    MessageWriter writer("ResetApplicationSessionTimer", kSessionNameSpace);
    writer.text("sessionID", sessionId);
    writer.text("requestedSessionDuration", std::to_string(durationSeconds));
    return writer.finish();
}

}  // namespace host
