#pragma once

#include <string>
#include <string_view>

#include "platform/csta/CSTAMonitorFilter.h"

struct CallLogEntryRequest;

namespace host {

/// Builds every message that the link sends, by the schema of one edition. A plain value.
class LinkMessages {
public:
    explicit LinkMessages(std::string_view edition);

    [[nodiscard]] std::string requestSystemStatus() const;
    /// `withDevices` also requests notifications of changes of the phone's devices.
    [[nodiscard]] std::string systemRegister(bool withDevices) const;
    [[nodiscard]] std::string getSwitchingFunctionDevices(std::string_view ownDevice) const;
    /// Has no filter element if `filter` suppresses no event.
    [[nodiscard]] std::string monitorStart(std::string_view device, const CSTAMonitorFilter& filter) const;
    [[nodiscard]] std::string monitorStop(std::string_view crossRefId) const;
    [[nodiscard]] std::string changeMonitorFilter(std::string_view crossRefId,
                                                  const CSTAMonitorFilter& filter) const;

    [[nodiscard]] std::string snapshotDevice(std::string_view device) const;
    [[nodiscard]] std::string snapshotCall(std::string_view callId, std::string_view device) const;

    /// A private request about the switch's call log.
    [[nodiscard]] std::string escape(const CallLogEntryRequest& request) const;

    // Responses to the switch's requests.
    [[nodiscard]] std::string systemStatusResponse() const;
    [[nodiscard]] std::string requestSystemStatusResponse() const;
    [[nodiscard]] std::string monitorStopResponse() const;
    [[nodiscard]] std::string switchingFunctionDevicesChangedResponse() const;
    [[nodiscard]] std::string serviceNotSupported() const;

    // Application session.
    [[nodiscard]] std::string startApplicationSession(int durationSeconds) const;
    [[nodiscard]] std::string resetApplicationSessionTimer(std::string_view sessionId,
                                                           int durationSeconds) const;

private:
    std::string m_nameSpace;
};

}  // namespace host
