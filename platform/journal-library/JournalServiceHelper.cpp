#include "platform/journal-library/JournalServiceHelper.h"

#include <cstdint>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ItemReader.h"
#include "platform/journal-library/XmlLimits.h"
#include "platform/journal-library/XmlMessage.h"
#include "platform/journal-library/XmlScanner.h"

using journalxml::childNamed;
using journalxml::isEntryOf;
using journalxml::nextNamed;
using journalxml::readItem;
using journalxml::textOf;
using journalxml::XmlMessage;

namespace {

using Helper = CallListDatabaseAdapterHelper;

template <typename Item>
bool readFirst(const std::string& text, Item& item) {
    XmlMessage message;
    if (!message.parse(text)) {
        return false;
    }
    auto node = childNamed(message.root(), Helper::ENTRY);
    while (node && !isEntryOf<Item>(node)) {
        node = nextNamed(node, Helper::ENTRY);
    }
    if (!node) {
        return false;
    }
    readItem(node, item);
    return true;
}

template <typename Item>
bool readAll(const std::string& text, std::deque<Item>& list) {
    XmlMessage message;
    if (!message.parse(text)) {
        return false;
    }
    for (auto node = childNamed(message.root(), Helper::ENTRY); node; node = nextNamed(node, Helper::ENTRY)) {
        if (isEntryOf<Item>(node)) {
            readItem(node, list.emplace_back());
        }
    }
    return true;
}

// In a mixed response the type alone gives the kind of an entry.
template <typename Container>
bool takeIfTyped(const pugi::xml_node& node, const std::string& type, Container& container) {
    using Item = typename Container::value_type;
    if (type != journalxml::kTypeOf<Item>) {
        return false;
    }
    readItem(node, container.emplace_back());
    return true;
}

}  // namespace

std::string JournalServiceHelper::readDialledCallList() {
    return readDialledCallList(Helper::kListRows);
}

std::string JournalServiceHelper::readReceivedCallList() {
    return readReceivedCallList(Helper::kListRows);
}

std::string JournalServiceHelper::readForwardedCallList() {
    return readForwardedCallList(Helper::kListRows);
}

std::string JournalServiceHelper::readCallBackList() {
    return readCallBackList(Helper::kListRows);
}

std::string JournalServiceHelper::readDialledCallList(unsigned rows) {
    return Helper::readCallList(Helper::DAS_CALLLOGDIALLEDCALLS, rows);
}

std::string JournalServiceHelper::readReceivedCallList(unsigned rows) {
    return Helper::readCallList(Helper::DAS_CALLLOGRECEIVEDCALLS, rows);
}

std::string JournalServiceHelper::readForwardedCallList(unsigned rows) {
    return Helper::readCallList(Helper::DAS_CALLLOGFORWARDEDCALLS, rows);
}

std::string JournalServiceHelper::readCallBackList(unsigned rows) {
    return Helper::readCallList(Helper::DAS_CALLLOGCALLBACKS, rows);
}

std::string JournalServiceHelper::readSettings() {
    return Helper::addXMLHeaderFooter(Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::READREQUEST),
                                      SETTINGS_SCHEMA);
}

std::string JournalServiceHelper::updateSettings(const std::string& key, const std::string& value) {
    return Helper::addXMLHeaderFooter(
        Helper::createXMLField(Helper::REASONFORMESSAGE, UPDATEREQUEST) + Helper::createXMLField(key, value),
        SETTINGS_SCHEMA);
}

int JournalServiceHelper::getMethodFromXMLMsg(const std::string& message) {
    std::string value;
    std::int32_t method = -1;
    if (!getXMLValue(message, METHOD, value) || !journalxml::readNumber(value, method) || method < 0) {
        return -1;
    }
    return method;
}

bool JournalServiceHelper::getXMLValue(const std::string& message, const std::string& field,
                                       std::string& value) {
    XmlMessage parsed;
    if (!parsed.parse(message, journalxml::kMaxMessageBytes)) {
        return false;
    }
    const pugi::xml_node node = childNamed(parsed.root(), field);
    if (!node) {
        return false;
    }
    value = textOf(node);
    return true;
}

bool JournalServiceHelper::getXMLValue(const std::string& message, const std::string& field, bool& value) {
    std::string text;
    return getXMLValue(message, field, text) && journalxml::readBool(text, value);
}

bool JournalServiceHelper::getAndRemoveXMLValue(std::string& message, const std::string& field,
                                                std::string& value) {
    XmlMessage parsed;
    if (!parsed.parse(message, journalxml::kMaxMessageBytes)) {
        return false;
    }
    const pugi::xml_node node = childNamed(parsed.root(), field);
    if (!node) {
        return false;
    }
    value = textOf(node);
    // The parser returns the offset of the name; the element begins one character before it.
    const auto begin = static_cast<std::size_t>(node.offset_debug()) - 1;
    message.erase(begin, journalxml::elementEnd(message, begin) - begin);
    return true;
}

std::vector<std::string> JournalServiceHelper::getXMLValues(const std::string& message,
                                                            const std::string& field) {
    std::vector<std::string> values;
    XmlMessage parsed;
    if (parsed.parse(message, journalxml::kMaxMessageBytes)) {
        for (auto node = childNamed(parsed.root(), field); node; node = nextNamed(node, field)) {
            values.push_back(textOf(node));
        }
    }
    return values;
}

bool JournalServiceHelper::parseXMLMissedCallItem(const std::string& message, MissedCallItem& item) {
    return readFirst(message, item);
}

bool JournalServiceHelper::parseXMLDialledCallItem(const std::string& message, DialledCallItem& item) {
    return readFirst(message, item);
}

bool JournalServiceHelper::parseXMLReceivedCallItem(const std::string& message, ReceivedCallItem& item) {
    return readFirst(message, item);
}

bool JournalServiceHelper::parseXMLForwardedCallItem(const std::string& message, ForwardedCallItem& item) {
    return readFirst(message, item);
}

bool JournalServiceHelper::parseXMLCallBackItem(const std::string& message, CallBackItem& item) {
    return readFirst(message, item);
}

bool JournalServiceHelper::parseXMLMissedCallList(const std::string& xml, std::deque<MissedCallItem>& list) {
    return readAll(xml, list);
}

bool JournalServiceHelper::parseXMLDialledCallList(const std::string& xml,
                                                   std::deque<DialledCallItem>& list) {
    return readAll(xml, list);
}

bool JournalServiceHelper::parseXMLReceivedCallList(const std::string& xml,
                                                    std::deque<ReceivedCallItem>& list) {
    return readAll(xml, list);
}

bool JournalServiceHelper::parseXMLForwardedCallList(const std::string& xml,
                                                     std::deque<ForwardedCallItem>& list) {
    return readAll(xml, list);
}

bool JournalServiceHelper::parseXMLCallBackList(const std::string& xml, std::deque<CallBackItem>& list) {
    return readAll(xml, list);
}

bool JournalServiceHelper::parseXMLdata(const std::string& response, std::deque<MissedCallItem>& missed,
                                        std::deque<DialledCallItem>& dialled,
                                        std::deque<ReceivedCallItem>& received,
                                        std::deque<ForwardedCallItem>& forwarded,
                                        std::vector<Contact>& contacts) {
    XmlMessage message;
    if (!message.parse(response)) {
        return false;
    }
    for (auto node = childNamed(message.root(), Helper::ENTRY); node; node = nextNamed(node, Helper::ENTRY)) {
        const std::string type = journalxml::textOfChild(node, journalxml::kTypeField);
        static_cast<void>(takeIfTyped(node, type, missed) || takeIfTyped(node, type, dialled) ||
                          takeIfTyped(node, type, received) || takeIfTyped(node, type, forwarded) ||
                          takeIfTyped(node, type, contacts));
    }
    return true;
}

std::string JournalServiceHelper::parseLastUniqueId(const std::string& response) {
    std::string uniqueId;
    static_cast<void>(getXMLValue(response, Helper::LASTUNIQUEID, uniqueId));
    return uniqueId;
}
