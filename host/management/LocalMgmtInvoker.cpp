#include "host/management/LocalMgmtInvoker.h"

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

#include "host/management/LocalManagement.h"
#include "host/management/SettingsDoor.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ManagementMessage.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kComponent = "Settings";

using journalxml::ManagementAnswer;
using journalxml::ManagementRequest;
using journalxml::RefusedKey;

ManagementAnswer answerTo(const ManagementRequest& request, SettingsDoor settings) {
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

std::string answerTo(std::string_view message, Executable* target) {
    auto* const management = dynamic_cast<LocalManagement*>(target);
    const auto request = journalxml::parseManagementRequest(message);
    if (management == nullptr || !request) {
        logAppUni(kComponent, __FILE_NAME__, 3, __LINE__, "a request for settings cannot be carried out: %s",
                  request ? "there is no management" : "it cannot be read");
        return JournalServiceHelper::FAILURE;
    }
    return journalxml::buildManagementAnswer(answerTo(*request, SettingsDoor(*management)));
}

/// Runs `step`; what it throws ends in a log line.
template <typename Step>
void survives(const char* what, Step step) noexcept {
    try {
        step();
    } catch (const std::exception& error) {
        logAppUni(kComponent, __FILE_NAME__, 2, __LINE__, "%s failed: %s", what, error.what());
    } catch (...) {
        logAppUni(kComponent, __FILE_NAME__, 2, __LINE__, "%s failed", what);
    }
}

}  // namespace

void LocalMgmtInvoker::handleMessage(Executable* target, const char* message, int length,
                                     InvokerResponse* response) {
    if (response == nullptr) {
        return;
    }
    std::string answer = JournalServiceHelper::FAILURE;
    const std::string_view text(message,
                                message != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0);
    survives("handling a request", [&] { answer = answerTo(text, target); });
    survives("setting an answer",
             [&] { response->setPayload(answer.data(), static_cast<int>(answer.size())); });
    survives("completing an answer", [&] { response->complete(); });
}

}  // namespace host
