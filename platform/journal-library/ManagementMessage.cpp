#include "platform/journal-library/ManagementMessage.h"

#include <cstdint>

#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlMessage.h"

namespace journalxml {
namespace {

constexpr RootElement kRequest{"<ManagementRequest>", "</ManagementRequest>"};
constexpr RootElement kResponse{"<ManagementResponse>", "</ManagementResponse>"};

constexpr const char* kOperation = "Operation";
constexpr const char* kRead = "read";
constexpr const char* kWrite = "write";
constexpr const char* kSetting = "Setting";
constexpr const char* kRejected = "Rejected";
constexpr const char* kKey = "Key";
constexpr const char* kKind = "Kind";
constexpr const char* kJournal = "journal";
constexpr const char* kPhone = "phone";
constexpr const char* kValue = "Value";
constexpr const char* kCode = "Code";
constexpr const char* kText = "Text";

std::optional<std::string> optionalText(const pugi::xml_node& parent, const char* name) {
    const pugi::xml_node node = childNamed(parent, name);
    return node ? std::optional(textOf(node)) : std::nullopt;
}

Setting readSetting(const pugi::xml_node& node) {
    return {textOfChild(node, kKey), textOfChild(node, kKind) == kJournal, optionalText(node, kValue)};
}

RefusedKey readRefused(const pugi::xml_node& node) {
    std::int32_t code = 0;
    static_cast<void>(readNumber(textOfChild(node, kCode), code));
    return {textOfChild(node, kKey), code, textOfChild(node, kText)};
}

}  // namespace

std::string buildManagementRequest(const ManagementRequest& request) {
    std::string body;
    appendField(body, kOperation, request.value ? kWrite : kRead);
    if (!request.key.empty()) {
        appendField(body, kKey, request.key);
    }
    if (request.value) {
        appendField(body, kValue, *request.value);
    }
    return inRootElement(kRequest, body);
}

std::optional<ManagementRequest> parseManagementRequest(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text, kMaxMessageBytes) || !isNamed(message.root(), kManagementRequest)) {
        return std::nullopt;
    }
    const std::string operation = textOfChild(message.root(), kOperation);
    ManagementRequest request{textOfChild(message.root(), kKey), std::nullopt};
    if (operation == kRead) {
        return request;
    }
    request.value = optionalText(message.root(), kValue);
    const bool writes = operation == kWrite && !request.key.empty() && request.value;
    return writes ? std::optional(request) : std::nullopt;
}

std::string buildManagementResponse(const ManagementResponse& response) {
    std::string body;
    for (const Setting& setting : response.settings) {
        std::string fields;
        appendField(fields, kKey, setting.key);
        appendField(fields, kKind, setting.ofJournal ? kJournal : kPhone);
        if (setting.value) {
            appendField(fields, kValue, *setting.value);
        }
        appendElement(body, kSetting, fields);
    }
    if (response.refused) {
        std::string fields;
        appendField(fields, kKey, response.refused->key);
        appendField(fields, kCode, std::to_string(response.refused->code));
        appendField(fields, kText, response.refused->text);
        appendElement(body, kRejected, fields);
    }
    return inRootElement(kResponse, body);
}

std::optional<ManagementResponse> parseManagementResponse(std::string_view text) {
    XmlMessage message;
    if (!message.parse(text) || !isNamed(message.root(), "ManagementResponse")) {
        return std::nullopt;
    }
    ManagementResponse response;
    for (auto node = childNamed(message.root(), kSetting); node; node = nextNamed(node, kSetting)) {
        response.settings.push_back(readSetting(node));
    }
    if (const auto node = childNamed(message.root(), kRejected)) {
        response.refused = readRefused(node);
    }
    return response;
}

}  // namespace journalxml
