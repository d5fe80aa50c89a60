#include "host/framework/TextInvoker.h"

#include <cstddef>

#include "platform/framework/InvokerResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/logging/LogExceptions.h"

namespace host {

void TextInvoker::handleMessage(Executable* target, const char* message, int length,
                                InvokerResponse* response) {
    if (response == nullptr) {
        return;
    }
    std::string text = JournalServiceHelper::FAILURE;
    const std::string_view request(message,
                                   message != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0);
    const LogOrigin origin{.component = m_component, .sourceFile = __FILE_NAME__, .line = __LINE__};
    logExceptions(origin, "handling a request", [&] { text = responseTo(request, target); });
    logExceptions(origin, "setting a response",
                  [&] { response->setPayload(text.data(), static_cast<int>(text.size())); });
    logExceptions(origin, "completing a response", [&] { response->complete(); });
}

}  // namespace host
