#include "apps/calljournal/output/WatchText.h"

#include <nlohmann/json.hpp>
#include <type_traits>
#include <variant>

#include "host/presentation/ChangeText.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using journalxml::ObserverMessage;
using Json = nlohmann::ordered_json;

template <typename Item>
constexpr bool kIsNone = std::is_same_v<Item, std::monostate>;

/// The item; null for an event without one, whose item is default-constructed.
Json itemOrNull(const ObserverMessage::Item& item) {
    return std::visit(
        [](const auto& each) -> Json {
            if constexpr (kIsNone<std::decay_t<decltype(each)>>) {
                return nullptr;
            } else {
                return each.getEntryId().empty() ? Json(nullptr) : host::itemJson(each);
            }
        },
        item);
}

}  // namespace

bool isCount(const ObserverMessage& message) noexcept {
    return message.event == ObserverMessage::Event::eMissedCallsCountUpdate ||
           message.event == ObserverMessage::Event::eCallBacksCountUpdate;
}

std::string watchText(const ObserverMessage& message) {
    if (isCount(message)) {
        const int count = static_cast<int>(message.count);
        return message.event == ObserverMessage::Event::eMissedCallsCountUpdate
                   ? host::describeMissedCount(count)
                   : host::describeCallbackCount(count);
    }
    return std::visit(
        [&message](const auto& item) -> std::string {
            if constexpr (kIsNone<std::decay_t<decltype(item)>>) {
                return "something changed";
            } else {
                return host::printable(host::describeChange(item, message.action));
            }
        },
        message.item);
}

std::string watchJson(const ObserverMessage& message) {
    Json data;
    if (isCount(message)) {
        data["count"] = message.count;
    } else {
        data["action"] = message.action;
        data["entryId"] = message.entryId;
        data["item"] = itemOrNull(message.item);
    }
    return host::jsonText({{"event", nameOf(message.event)}, {"data", std::move(data)}});
}

}  // namespace calljournal
