#include "platform/journal-library/ListMessage.h"

#include <cstdint>

#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlLimits.h"
#include "platform/journal-library/XmlMessage.h"
#include "platform/journal-library/XmlNames.h"

namespace journalxml {
namespace {

constexpr RootElement kRequest{"<ListRequest>", "</ListRequest>"};
constexpr RootElement kResponse{"<ListResponse>", "</ListResponse>"};
constexpr const char* kResponseName = "ListResponse";

constexpr const char* kOperation = "Operation";
constexpr const char* kDelete = "delete";
constexpr const char* kCountUnloaded = "countUnloaded";
constexpr const char* kList = "List";
constexpr const char* kAllEntries = "AllEntries";
constexpr const char* kDeleted = "Deleted";
constexpr const char* kRemaining = "Remaining";
constexpr const char* kUnknown = "Unknown";
constexpr const char* kUnloaded = "Unloaded";

void append(std::string& text, const char* name, const std::vector<std::string>& values) {
    for (const std::string& value : values) {
        appendField(text, name, value);
    }
}

std::vector<std::string> textsIn(const pugi::xml_node& parent, const char* name) {
    std::vector<std::string> texts;
    for (auto node = childNamed(parent, name); node; node = nextNamed(node, name)) {
        texts.push_back(textOf(node));
    }
    return texts;
}

std::optional<std::size_t> countIn(const pugi::xml_node& parent, const char* name) {
    std::int32_t value = 0;
    return readNumber(textOfChild(parent, name), value) && value >= 0
               ? std::optional(static_cast<std::size_t>(value))
               : std::nullopt;
}

}  // namespace

std::string buildListRequest(const ListRequest& request) {
    std::string body;
    appendField(body, kOperation, request.countsUnloaded ? kCountUnloaded : kDelete);
    appendField(body, kList, std::string(wordOf(request.list)));
    append(body, kEntryId, request.entryIds);
    if (request.entryIds.empty() && !request.countsUnloaded) {
        appendField(body, kAllEntries, "true");
    }
    return inRootElement(kRequest, body);
}

std::optional<ListRequest> parseListRequest(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text, kMaxMessageBytes) || !isNamed(message.root(), kListRequest)) {
        return std::nullopt;
    }
    const std::string operation = textOfChild(message.root(), kOperation);
    const bool counts = operation == kCountUnloaded;
    const std::optional<ListName> list = listNamed(textOfChild(message.root(), kList));
    std::vector<std::string> entryIds = textsIn(message.root(), kEntryId);
    bool all = false;
    static_cast<void>(readBool(textOfChild(message.root(), kAllEntries), all));
    const bool namesEntries = all || !entryIds.empty();
    if (!list || (!counts && operation != kDelete) || namesEntries == counts || (all && !entryIds.empty())) {
        return std::nullopt;
    }
    return ListRequest{*list, std::move(entryIds), counts};
}

std::string buildListDeleted(const ListDeleted& deleted) {
    std::string body;
    appendField(body, kDeleted, std::to_string(deleted.deleted));
    appendField(body, kRemaining, std::to_string(deleted.remaining));
    append(body, kUnknown, deleted.unknown);
    return inRootElement(kResponse, body);
}

std::optional<ListDeleted> parseListDeleted(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text) || !isNamed(message.root(), kResponseName)) {
        return std::nullopt;
    }
    const auto deleted = countIn(message.root(), kDeleted);
    const auto remaining = countIn(message.root(), kRemaining);
    return deleted && remaining
               ? std::optional(ListDeleted{*deleted, *remaining, textsIn(message.root(), kUnknown)})
               : std::nullopt;
}

std::string buildUnloadedCount(std::size_t count) {
    std::string body;
    appendField(body, kUnloaded, std::to_string(count));
    return inRootElement(kResponse, body);
}

std::optional<std::size_t> parseUnloadedCount(std::string_view text) {
    XmlMessage message;
    return message.parse(text) && isNamed(message.root(), kResponseName) ? countIn(message.root(), kUnloaded)
                                                                         : std::nullopt;
}

}  // namespace journalxml
