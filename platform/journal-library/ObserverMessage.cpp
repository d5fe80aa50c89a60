#include "platform/journal-library/ObserverMessage.h"

#include <array>
#include <string_view>

#include "platform/journal-library/ItemReader.h"
#include "platform/journal-library/RootElements.h"
#include "platform/journal-library/XmlMessage.h"
#include "platform/journal-library/XmlNames.h"

namespace journalxml {
namespace {

using Event = ObserverMessage::Event;

bool readCount(const pugi::xml_node& root, ObserverMessage& message) {
    return readNumber(textOfChild(root, kCount), message.count);
}

template <typename Item>
bool readChange(const pugi::xml_node& root, ObserverMessage& message) {
    if (!readNumber(textOfChild(root, kAction), message.action)) {
        return false;
    }
    message.entryId = textOfChild(root, kEntryId);
    Item& item = message.item.emplace<Item>();
    const pugi::xml_node entry = childNamed(root, kEntry);
    if (entry && isEntryOf<Item>(entry)) {
        readItem(entry, item);
    }
    return true;
}

struct Kind {
    Event event;
    const char* name;
    bool (*read)(const pugi::xml_node&, ObserverMessage&);
};

constexpr std::array<Kind, 7> kKinds{{
    {Event::eMissedCallsCountUpdate, "missedCallsCountUpdate", &readCount},
    {Event::eMissedCallsUpdate, "missedCallsUpdate", &readChange<MissedCallItem>},
    {Event::eDialledCallsUpdate, "dialledCallsUpdate", &readChange<DialledCallItem>},
    {Event::eReceivedCallsUpdate, "receivedCallsUpdate", &readChange<ReceivedCallItem>},
    {Event::eForwardedCallsUpdate, "forwardedCallsUpdate", &readChange<ForwardedCallItem>},
    {Event::eCallBacksUpdate, "callBacksUpdate", &readChange<CallBackItem>},
    {Event::eCallBacksCountUpdate, "callBacksCountUpdate", &readCount},
}};

}  // namespace

const char* nameOf(ObserverMessage::Event event) noexcept {
    for (const Kind& kind : kKinds) {
        if (kind.event == event) {
            return kind.name;
        }
    }
    return "";
}

std::optional<ObserverMessage> parseObserverMessage(const std::string& message) {
    XmlMessage parsed;
    if (!parsed.parse(message)) {
        return std::nullopt;
    }
    const std::string name = textOfChild(parsed.root(), kEvent);
    for (const Kind& kind : kKinds) {
        if (std::string_view(kind.name) == name) {
            ObserverMessage read;
            read.event = kind.event;
            return kind.read(parsed.root(), read) ? std::optional(std::move(read)) : std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace journalxml
