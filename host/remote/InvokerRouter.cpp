#include "host/remote/InvokerRouter.h"

#include <cstddef>
#include <string_view>

#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ListMessage.h"
#include "platform/journal-library/ManagementMessage.h"
#include "platform/journal-library/MethodId.h"
#include "platform/journal-library/XmlScanner.h"

namespace host {
namespace {

bool setsValue(std::string_view message) {
    const auto request = journalxml::parseManagementRequest(message);
    return request && request->value;
}

bool deletesEntries(std::string_view message) {
    const auto request = journalxml::parseListRequest(message);
    return request && !request->countsUnloaded;
}

bool isChangingMethod(std::string_view message) {
    using journalxml::MethodId;
    const auto method = journalxml::methodOf(JournalServiceHelper::getMethodFromXMLMsg(std::string(message)));
    return method && *method != MethodId::eUnsubscribeForJournalEvents &&
           std::string_view(journalxml::nameOf(*method)).substr(0, 3) != "get";
}

}  // namespace

void InvokerRouter::add(const std::string& rootName, Invoker& invoker, Executable& target) {
    m_destinations.emplace(rootName, Destination{invoker, target});
}

void InvokerRouter::handleMessage(Executable* target, const char* message, int length,
                                  InvokerResponse* response) {
    const std::string_view text(message,
                                message != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0);
    const auto found = m_destinations.find(journalxml::rootNameOf(text));
    bool mayChange = false;
    if (found == m_destinations.end()) {
        m_fallback.handleMessage(target, message, length, response);
        mayChange = isChangingMethod(text);
    } else {
        found->second.invoker.handleMessage(&found->second.target, message, length, response);
        mayChange = (found->first == journalxml::kListRequest && deletesEntries(text)) ||
                    (found->first == journalxml::kManagementRequest && setsValue(text));
    }
    if (mayChange && m_changeListener) {
        m_changeListener();
    }
}

}  // namespace host
