#pragma once

#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/Occurrences.h"
#include "platform/journal-library/DataRequest.h"

/// Items and requests to the database in the words of the tests' tables.
namespace journaltest {

using Texts = std::vector<std::string>;

/// The texts in one, without the empty ones, with `between` between them.
inline std::string joined(const Texts& texts, const std::string& between = "; ") {
    std::string text;
    for (const std::string& part : texts) {
        text += (text.empty() || part.empty() ? "" : between) + part;
    }
    return text;
}

struct Occurrence {
    std::string number;
    std::string time;
    std::string lineKey{};  // of missed calls only, as the next
    std::string groupText{};
};

/// An item with these calls, newest first.
template <typename Item>
Item itemOf(const std::string& entryId, const std::string& uniqueId, const std::vector<Occurrence>& calls) {
    Item item;
    item.setEntryId(entryId);
    item.setUniqueId(uniqueId);
    std::decay_t<decltype(occurrencesOf(item))> infos;
    for (const Occurrence& call : calls) {
        auto& info = infos.emplace_back();
        info.setNumber(call.number);
        info.setTimeAndDate(call.time);
        if constexpr (std::is_same_v<Item, MissedCallItem>) {
            info.setLineKey(call.lineKey);
            info.setGroupText(call.groupText);
        }
    }
    setOccurrences(item, infos);
    return item;
}

inline CallBackItem callBackOf(const std::string& entryId, const std::string& number,
                               const std::string& time) {
    using Item = CallBackItem;
    return {entryId,
            {},
            {},
            number,
            NumberType::NT::eOffice,
            time,
            Item::CallBackType::eOnBusy,
            Item::CallBackState::eRequested,
            {}};
}

template <typename Items>
Texts entryIdsOf(const Items& items) {
    Texts ids;
    for (const auto& item : items) {
        ids.push_back(item.getEntryId());
    }
    return ids;
}

/// "MissedCalls".
inline std::string tableOf(const journalxml::DataRequest& request) {
    const std::string prefix = "CallLog";
    return request.schema.substr(request.schema.rfind(prefix, 0) == 0 ? prefix.size() : 0);
}

/// Returns the request as text: "write MissedCalls 11", "delete DialledCalls 21 23",
/// "delete ReceivedCalls all", "set missed-logging=true", "read Conversations 50 from 0 [A B]". Rows are
/// named by their unique id, or by their entry id where they have none.
inline std::string textOf(const journalxml::DataRequest& request) {
    using Reason = journalxml::DataRequest::Reason;
    if (request.reason == Reason::eRead) {
        const bool isAll = request.rowLimit == journalxml::DataRequest::kNoRowLimit;
        return "read " + tableOf(request) + (isAll ? " all" : " " + std::to_string(request.rowLimit)) +
               " from " + std::to_string(request.offset) + " [" + request.resultCols + "]";
    }
    Texts words;
    for (const auto& [key, value] : request.settings) {
        words.push_back(std::string(key).append("=").append(value));
    }
    const auto addRow = [&words](const std::string& uniqueId, const std::string& entryId) {
        words.push_back(uniqueId.empty() ? entryId : uniqueId);
    };
    for (const auto& item : request.items) {
        std::visit(
            [&addRow](const auto& held) {
                if constexpr (std::is_same_v<std::decay_t<decltype(held)>, CallBackItem>) {
                    addRow({}, held.getEntryId());
                } else {
                    addRow(held.getUniqueId(), held.getEntryId());
                }
            },
            item);
    }
    for (const auto& [uniqueId, entryId] : request.keys) {
        addRow(uniqueId, entryId);
    }
    if (request.allEntries) {
        words.emplace_back("all");
    }
    const std::string operation = request.reason == Reason::eUpdate  ? "set "
                                  : request.reason == Reason::eWrite ? "write " + tableOf(request) + " "
                                                                     : "delete " + tableOf(request) + " ";
    return operation + joined(words, " ");
}

}  // namespace journaltest
