#include "apps/calljournal/RemoteSettings.h"

#include <optional>

#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"

namespace calljournal {

journalxml::ManagementResponse askSettings(host::RemoteClient& client,
                                           const journalxml::ManagementRequest& request) {
    auto answer =
        journalxml::parseManagementResponse(client.call(journalxml::buildManagementRequest(request)));
    if (!answer) {
        throw host::RemoteError("calljournal could not answer; its log says why");
    }
    return std::move(*answer);
}

bool isJournalOff(host::RemoteClient& client) {
    const auto answer = askSettings(client, {"call-log-enabled", std::nullopt});
    return !answer.settings.empty() && answer.settings.front().value == "false";
}

}  // namespace calljournal
