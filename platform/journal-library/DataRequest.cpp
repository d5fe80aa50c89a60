#include "platform/journal-library/DataRequest.h"

#include <array>
#include <string_view>

#include "journal-items/ListTraits.h"
#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ItemReader.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/XmlMessage.h"

namespace journalxml {
namespace {

using Helper = CallListDatabaseAdapterHelper;
using Reason = DataRequest::Reason;

struct ReasonWord {
    std::string_view word;
    Reason reason;
};

constexpr std::array<ReasonWord, 4> kReasons{{
    {Helper::READREQUEST, Reason::eRead},
    {Helper::WRITEREQUEST, Reason::eWrite},
    {JournalServiceHelper::UPDATEREQUEST, Reason::eUpdate},
    {Helper::DELETEREQUEST, Reason::eDelete},
}};

template <typename Item>
bool readEntry(const pugi::xml_node& entry, std::vector<DataRequest::Item>& items) {
    if (!isEntryOf<Item>(entry)) {
        return false;
    }
    readItem(entry, std::get<Item>(items.emplace_back(Item())));
    return true;
}

std::optional<Reason> reasonOf(const pugi::xml_node& root) {
    const std::string word = textOfChild(root, Helper::REASONFORMESSAGE);
    for (const ReasonWord& known : kReasons) {
        if (known.word == word) {
            return known.reason;
        }
    }
    return std::nullopt;
}

std::string schemaOf(const pugi::xml_node& root) {
    for (const pugi::xml_attribute& attribute : root.attributes()) {
        if (localName(attribute.name()) == "name") {
            return ClientUtils::unescapeText(attribute.value());
        }
    }
    return {};
}

bool readRead(const pugi::xml_node& root, DataRequest& request) {
    request.resultCols = textOfChild(root, Helper::RESULTCOLS);
    // A number that is missing or senseless leaves the default.
    static_cast<void>(readNumber(textOfChild(root, Helper::OFFSET), request.offset));
    static_cast<void>(readNumber(textOfChild(root, Helper::ROWLIMIT), request.rowLimit));
    return true;
}

bool readWrite(const pugi::xml_node& root, DataRequest& request) {
    const std::optional<ListName> list = listOfTable(request.schema);
    if (!list) {
        return false;
    }
    for (auto entry = childNamed(root, Helper::ENTRY); entry; entry = nextNamed(entry, Helper::ENTRY)) {
        const bool taken =
            withItemOf(*list, [&]<typename Item>() { return readEntry<Item>(entry, request.items); });
        if (!taken) {
            return false;
        }
    }
    return true;
}

bool readUpdate(const pugi::xml_node& root, DataRequest& request) {
    if (request.schema != JournalServiceHelper::SETTINGS_SCHEMA) {
        return false;
    }
    for (const pugi::xml_node& field : root.children()) {
        if (field.type() == pugi::node_element && !isNamed(field, Helper::REASONFORMESSAGE)) {
            request.settings.emplace_back(std::string(localName(field.name())), textOf(field));
        }
    }
    return !request.settings.empty();
}

bool readDelete(const pugi::xml_node& root, DataRequest& request) {
    if (!listOfTable(request.schema)) {
        return false;
    }
    static_cast<void>(readBool(textOfChild(root, Helper::ALLENTRIES), request.allEntries));
    for (auto entry = childNamed(root, Helper::ENTRY); entry; entry = nextNamed(entry, Helper::ENTRY)) {
        DataRequest::Key key{textOfChild(entry, Helper::UNIQUEID), textOfChild(entry, Helper::ENTRYID)};
        if (key == DataRequest::Key{}) {
            return false;
        }
        request.keys.push_back(std::move(key));
    }
    return request.allEntries || !request.keys.empty();
}

bool readContent(const pugi::xml_node& root, DataRequest& request) {
    switch (request.reason) {
        case Reason::eRead: return readRead(root, request);
        case Reason::eWrite: return readWrite(root, request);
        case Reason::eUpdate: return readUpdate(root, request);
        case Reason::eDelete: return readDelete(root, request);
    }
    return false;
}

}  // namespace

std::optional<DataRequest> parseDataRequest(const std::string& request) {
    XmlMessage message;
    if (!message.parse(request) || !isNamed(message.root(), "Schema")) {
        return std::nullopt;
    }
    const std::optional<Reason> reason = reasonOf(message.root());
    if (!reason) {
        return std::nullopt;
    }
    DataRequest read;
    read.reason = *reason;
    read.schema = schemaOf(message.root());
    if (!readContent(message.root(), read)) {
        return std::nullopt;
    }
    return read;
}

}  // namespace journalxml
