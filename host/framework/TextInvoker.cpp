#include "host/framework/TextInvoker.h"

#include <cstddef>
#include <exception>

#include "platform/framework/InvokerResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/logging/Logging.h"

namespace host {

/// Runs `step` and logs its exceptions.
template <typename Step>
void TextInvoker::survives(const char* what, Step step) const noexcept {
    try {
        step();
    } catch (const std::exception& error) {
        logAppUni(m_component, __FILE_NAME__, 2, __LINE__, "%s failed: %s", what, error.what());
    } catch (...) {
        logAppUni(m_component, __FILE_NAME__, 2, __LINE__, "%s failed", what);
    }
}

void TextInvoker::handleMessage(Executable* target, const char* message, int length,
                                InvokerResponse* response) {
    if (response == nullptr) {
        return;
    }
    std::string text = JournalServiceHelper::FAILURE;
    const std::string_view request(message,
                                   message != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0);
    survives("handling a request", [&] { text = responseTo(request, target); });
    survives("setting a response", [&] { response->setPayload(text.data(), static_cast<int>(text.size())); });
    survives("completing a response", [&] { response->complete(); });
}

}  // namespace host
