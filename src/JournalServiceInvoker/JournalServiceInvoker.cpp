#include "journalservice/JournalServiceInvoker.h"

#include <cstddef>
#include <string>

#include "journalservice/JournalServiceIfc.h"
#include "platform/framework/Executable.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/logging/LogExceptions.h"
#include "src/JournalServiceInvoker/InvokerLog.h"
#include "src/JournalServiceInvoker/InvokerMethods.h"

namespace {

std::string textOf(const char* message, int length) {
    return message && length > 0 ? std::string(message, static_cast<std::size_t>(length)) : std::string();
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
    const LogOrigin origin{journal::kInvokerComponent, journal::kInvokerSource, __LINE__};
    journal::InvokerResponseText responseText = journal::invokerFailure();
    auto* const service = dynamic_cast<JournalServiceIfc*>(target);
    if (service) {
        logExceptions(origin, "handling a message", [&] {
            responseText = responseTo(textOf(message, length), *service, m_context, *response);
        });
    } else {
        LOG_INVOKER(2, "Journal Service interface is NULL");
    }
    if (responseText) {
        logExceptions(origin, "setting a response", [&] {
            response->setPayload(responseText->data(), static_cast<int>(responseText->size()));
        });
    }
    logExceptions(origin, "completing a response", [&] { response->complete(); });
}
