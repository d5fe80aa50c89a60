#include "platform/journal-library/ClientRequest.h"

#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlNames.h"

namespace journalxml {
std::string buildRequest(MethodId method, const std::vector<std::string>& entryIds,
                         const std::optional<std::string>& value,
                         const std::optional<bool>& sendDeleteRequest) {
    std::string body;
    appendField(body, JournalServiceHelper::METHOD, std::to_string(static_cast<int>(method)));
    for (const std::string& entryId : entryIds) {
        appendField(body, kEntryId, entryId);
    }
    if (value) {
        appendField(body, JournalServiceHelper::VALUE, *value);
    }
    if (sendDeleteRequest) {
        appendField(body, JournalServiceHelper::SENDDELETEMISSEDCALLREQUEST_XML,
                    *sendDeleteRequest ? "true" : "false");
    }
    return inRootElement(kRequestElement, body);
}

}  // namespace journalxml
