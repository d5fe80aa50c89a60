#include "platform/journal-library/ClientRequest.h"

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/Frames.h"
#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journalxml {
namespace {

std::string methodField(MethodId method) {
    std::string field;
    appendField(field, JournalServiceHelper::METHOD, std::to_string(static_cast<int>(method)));
    return field;
}

}  // namespace

std::string buildRequest(MethodId method, const std::vector<std::string>& entryIds,
                         const std::optional<std::string>& value,
                         const std::optional<bool>& sendDeleteRequest) {
    std::string body = methodField(method);
    for (const std::string& entryId : entryIds) {
        appendField(body, CallListDatabaseAdapterHelper::ENTRYID, entryId);
    }
    if (value) {
        appendField(body, JournalServiceHelper::VALUE, *value);
    }
    if (sendDeleteRequest) {
        appendField(body, JournalServiceHelper::SENDDELETEMISSEDCALLREQUEST_XML,
                    *sendDeleteRequest ? "true" : "false");
    }
    return framed(kRequestFrame, body);
}

std::string buildUpdateMissedCallRequest(const MissedCallItem& item) {
    return framed(kRequestFrame, methodField(MethodId::eUpdateMissedCall) + entryElement(itemBody(item)));
}

}  // namespace journalxml
