#include "host/management/LocalMgmtInvoker.h"

#include <string>
#include <string_view>

#include "host/management/LocalManagement.h"
#include "host/management/SettingsFacade.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ManagementMessage.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kComponent = "Settings";

using journalxml::ManagementRequest;
using journalxml::ManagementResponse;
using journalxml::RefusedKey;

ManagementResponse managementResponseTo(const ManagementRequest& request, SettingsFacade settings) {
    if (request.key.empty()) {
        return {settings.all(), {}};
    }
    if (request.value) {
        const RejectReason reason = settings.set(request.key, *request.value);
        if (!reason.empty()) {
            return {{}, RefusedKey{request.key, reason.code, reason.text}};
        }
    }
    const auto setting = settings.find(request.key);
    if (!setting) {
        return {{}, RefusedKey{request.key, eRejectDataInvalid, "There is no setting " + request.key}};
    }
    return {{*setting}, {}};
}

}  // namespace

std::string LocalMgmtInvoker::responseTo(std::string_view message, Executable* target) const {
    auto* const management = dynamic_cast<LocalManagement*>(target);
    const auto request = journalxml::parseManagementRequest(message);
    if (management == nullptr || !request) {
        logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "a request for settings failed: %s",
                  request ? "there is no management" : "it is not valid");
        return JournalServiceHelper::FAILURE;
    }
    return journalxml::buildManagementResponse(managementResponseTo(*request, SettingsFacade(*management)));
}

}  // namespace host
