#include "host/remote/InvokerRouter.h"

#include <cstddef>
#include <string_view>

#include "platform/journal-library/XmlScanner.h"

namespace host {

void InvokerRouter::add(const std::string& rootName, Invoker& invoker, Executable& target) {
    m_destinations.emplace(rootName, Destination{invoker, target});
}

void InvokerRouter::handleMessage(Executable* target, const char* message, int length,
                                  InvokerResponse* response) {
    const std::string_view text(message,
                                message != nullptr && length > 0 ? static_cast<std::size_t>(length) : 0);
    const auto found = m_destinations.find(journalxml::rootNameOf(text));
    if (found == m_destinations.end()) {
        m_rest.handleMessage(target, message, length, response);
    } else {
        found->second.invoker.handleMessage(&found->second.target, message, length, response);
    }
}

}  // namespace host
