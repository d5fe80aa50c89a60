#include "host/remote/ChangeReporter.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/MethodId.h"

namespace host {
namespace {

bool isChangingMethod(const std::string& message) {
    using journalxml::MethodId;
    const auto method = journalxml::methodOf(JournalServiceHelper::getMethodFromXMLMsg(message));
    return method && *method != MethodId::eUnsubscribeForJournalEvents &&
           std::string_view(journalxml::nameOf(*method)).substr(0, 3) != "get";
}

}  // namespace

void ChangeReporter::handleMessage(Executable* target, const char* message, int length,
                                   InvokerResponse* response) {
    m_invoker.handleMessage(target, message, length, response);
    if (target != nullptr && message != nullptr && length > 0 &&
        isChangingMethod(std::string(message, static_cast<std::size_t>(length)))) {
        m_listener(*target);
    }
}

}  // namespace host
