#include "apps/calljournal/RemoteSettings.h"

#include <optional>

#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"

namespace calljournal {

journalxml::ManagementResponse requestSettings(host::RemoteClient& client,
                                               const journalxml::ManagementRequest& request) {
    auto response =
        journalxml::parseManagementResponse(client.call(journalxml::buildManagementRequest(request)));
    if (!response) {
        throw host::RemoteError("calljournal could not read or change the settings; see its log");
    }
    return std::move(*response);
}

bool isJournalOff(host::RemoteClient& client) {
    const auto response = requestSettings(client, {"call-log-enabled", std::nullopt});
    return !response.settings.empty() && response.settings.front().value == "false";
}

}  // namespace calljournal
