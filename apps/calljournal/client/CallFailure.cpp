#include "apps/calljournal/client/CallFailure.h"

#include <algorithm>
#include <exception>
#include <nlohmann/json.hpp>
#include <variant>

#include "apps/calljournal/output/JsonText.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/PlainText.h"
#include "journal-items/Occurrences.h"
#include "journalservice/JournalServiceObserverIfc.h"
#include "platform/logging/Logging.h"

namespace calljournal {
namespace {

/// The unique id of the entry; empty if the message is not that of a dialled call without a conversation.
std::string entryOf(const journalxml::ObserverMessage& message) {
    const auto* const item = std::get_if<DialledCallItem>(&message.item);
    const bool isCall = message.action == JournalServiceObserverIfc::eItemAdded ||
                        message.action == JournalServiceObserverIfc::eItemUpdated;
    if (item == nullptr || !isCall || occurrencesOf(*item).empty() ||
        !occurrencesOf(*item).front().getDuration().empty()) {
        return {};
    }
    return item->getUniqueId();
}

}  // namespace

std::string failureText(const std::filesystem::path& dataDirectory,
                        const journalxml::ObserverMessage& message) {
    const std::string entry = entryOf(message);
    if (entry.empty()) {
        return {};
    }
    try {
        host::ApiClient client(host::ApiServer::in(dataDirectory));
        const auto page = client.get({"calls"}, {{"list", "dialled"}, {"limit", "20"}});
        const auto& calls = page.at("items");
        const auto call = std::find_if(calls.begin(), calls.end(), [&entry](const auto& each) {
            return textIn(each, "uniqueId") == entry;
        });
        const std::string reason = call == calls.end() ? std::string() : textIn(*call, "reason");
        return reason.empty() ? reason : ", " + host::printable(reason);
    } catch (const std::exception& error) {
        logAppUni("Watch", __FILE_NAME__, 4, __LINE__, "the reason of a call is not known: %s", error.what());
        return {};
    }
}

}  // namespace calljournal
