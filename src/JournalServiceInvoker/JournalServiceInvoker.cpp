#include "journalservice/JournalServiceInvoker.h"

#include <cstddef>
#include <exception>
#include <string>

#include "journalservice/JournalServiceIfc.h"
#include "platform/framework/Executable.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "src/JournalServiceInvoker/InvokerLog.h"
#include "src/JournalServiceInvoker/InvokerMethods.h"

namespace {

std::string textOf(const char* message, int length) {
    return message && length > 0 ? std::string(message, static_cast<std::size_t>(length)) : std::string();
}

/// Runs `step`; what it throws ends in a log line.
template <typename Step>
void survives(const char* what, Step step) noexcept {
    try {
        step();
    } catch (const std::exception& error) {
        LOG_INVOKER(2, "%s failed: %s", what, error.what());
    } catch (...) {
        LOG_INVOKER(2, "%s failed", what);
    }
}

journal::InvokerResponseText responseTo(const std::string& message, JournalServiceIfc& service,
                                        FrameworkContext* context, const InvokerResponse& response) {
    const journal::InvokerMethod method =
        journal::invokerMethodOf(JournalServiceHelper::getMethodFromXMLMsg(message));
    return method ? method({service, message, context, response}) : journal::invokerFailure();
}

}  // namespace

void JournalServiceInvoker::handleMessage(Executable* target, const char* message, int length,
                                          InvokerResponse* response) {
    if (!response) {
        LOG_INVOKER(2, "Invoker response is NULL");
        return;
    }
    journal::InvokerResponseText answer = journal::invokerFailure();
    auto* const service = dynamic_cast<JournalServiceIfc*>(target);
    if (service) {
        survives("handling a message",
                 [&] { answer = responseTo(textOf(message, length), *service, m_context, *response); });
    } else {
        LOG_INVOKER(2, "Journal Service interface is NULL");
    }
    if (answer) {
        survives("setting an answer",
                 [&] { response->setPayload(answer->data(), static_cast<int>(answer->size())); });
    }
    survives("completing an answer", [&] { response->complete(); });
}
