#include "platform/journal-library/ClientResponse.h"

#include <utility>

#include "platform/journal-library/ItemReader.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlMessage.h"

namespace journalxml {

bool isFailure(const std::string& response) noexcept {
    return response == JournalServiceHelper::FAILURE;
}

std::optional<bool> parseBoolResponse(const std::string& response) {
    bool result = false;
    if (!JournalServiceHelper::getXMLValue(response, kResult, result)) {
        return std::nullopt;
    }
    return result;
}

bool parseContactList(const std::string& text, std::vector<Contact>& contacts) {
    XmlMessage message;
    if (!message.parse("<ContactList>" + text + "</ContactList>")) {
        return false;
    }
    for (auto node = childNamed(message.root(), "Entry"); node; node = nextNamed(node, "Entry")) {
        readItem(node, contacts.emplace_back());
    }
    return true;
}

}  // namespace journalxml
