#include "tests/journal-lists/JournalRig.h"

#include <algorithm>
#include <list>
#include <memory>
#include <regex>
#include <type_traits>
#include <utility>
#include <variant>

#include "journal-items/Occurrences.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/ListTable.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;
using journalxml::DataRequest;

std::string shortName(const std::string& schema) {
    const std::string prefix = "CallLog";
    return schema.rfind(prefix, 0) == 0 ? schema.substr(prefix.size()) : schema;
}

std::string nameOf(const DataRequest::Item& item) {
    return std::visit(
        [](const auto& held) {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, CallBackItem>) {
                return held.getEntryId();
            } else {
                return held.getUniqueId().empty() ? held.getEntryId() : held.getUniqueId();
            }
        },
        item);
}

std::string textOf(const DataRequest& request) {
    if (request.reason == DataRequest::Reason::eUpdate) {
        return "set " + request.settings.front().first + "=" + request.settings.front().second;
    }
    std::string text = request.reason == DataRequest::Reason::eDelete ? "delete " : "write ";
    text += shortName(request.schema);
    for (const DataRequest::Item& item : request.items) {
        text += " " + nameOf(item);
    }
    for (const DataRequest::Key& key : request.keys) {
        text += " " + (key.uniqueId.empty() ? key.entryId : key.uniqueId);
    }
    return request.allEntries ? text + " all" : text;
}

std::string textOf(const CallLogEntryRequest& request) {
    const std::string target = std::to_string(request.logTarget);
    if (request.numberKind == CallLogEntryRequest::eWholeLog) {
        return "all " + target;
    }
    if (request.action == CallLogEntryRequest::eDeleteAll) {
        return "group " + target + " " + request.subscriberNumber + " " + request.further.back().text;
    }
    return "one " + target + " " + request.subscriberNumber + " " + request.entryTime;
}

template <typename Item, typename Items>
void addContents(Texts& contents, const Items& items) {
    for (const Item& item : items) {
        contents.push_back(journal::ListMirror::entry(item, Helper::WRITEREQUEST));
    }
}

template <typename Item>
void addRows(Texts& contents, const FakeDataAccess& database) {
    addContents<Item>(contents, database.rows<Item>(journal::ListTable<Item>::kName));
}

template <typename Item>
void addIds(Texts& ids, const std::vector<Item>& items) {
    for (const Item& item : items) {
        ids.push_back(item.getEntryId());
    }
}

std::string textOf(const Callback& callback) {
    using Kind = Callback::Kind;
    switch (callback.kind) {
        case Kind::eMissedCallsCountUpdate: return "missedCount(" + std::to_string(callback.count) + ")";
        case Kind::eCallBacksCountUpdate: return "callBacksCount(" + std::to_string(callback.count) + ")";
        default: break;
    }
    const std::string text = callback.text();  // "missedCallsUpdate(item m1, entryId 11, action 2)"
    static const std::regex kUpdate("(.*?)(Calls)?Update\\(item (.*), entryId (.*), action (.*)\\)");
    return std::regex_replace(text, kUpdate, "$1($3, $4, $5)");
}

Texts sorted(Texts texts) {
    std::sort(texts.begin(), texts.end());
    return texts;
}

}  // namespace

std::string joined(const Texts& texts, const std::string& between) {
    std::string text;
    for (const std::string& part : texts) {
        text += (text.empty() ? "" : between) + part;
    }
    return text;
}

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

template MissedCallItem itemOf(const std::string&, const std::string&, const std::vector<Occurrence>&);
template DialledCallItem itemOf(const std::string&, const std::string&, const std::vector<Occurrence>&);
template ReceivedCallItem itemOf(const std::string&, const std::string&, const std::vector<Occurrence>&);
template ForwardedCallItem itemOf(const std::string&, const std::string&, const std::vector<Occurrence>&);

CallBackItem callBackOf(const std::string& entryId, const std::string& number, const std::string& time) {
    return {entryId,
            {},
            {},
            number,
            NumberType::NT::eOffice,
            time,
            CallBackItem::CallBackType::eOnBusy,
            CallBackItem::CallBackState::eRequested,
            {}};
}

JournalRig::JournalRig() {
    adapter.init(&database);
    collaborators.m_cstaService = &exchange;
    exchange.answer(FakeCstaService::Kind::eEscape, [this](CSTARequest& request) {
        readAllLists(reader);
        request.setOutcome(0, std::make_unique<CSTAEscapeResponse>());
    });
    phoneIs(softwareTypes::sip);
    notifier.init(&reader, softwareTypes::sip);
    notifier.subscribe(&observer, {});
    observer.clear();
    CapturedLog::reset();
}

void JournalRig::phoneIs(const std::string& softwareType, int systemIdentifier) {
    settings.change([&](journal::SettingValues& values) {
        values.m_softwareType = softwareType;
        values.m_systemIdentifier = systemIdentifier;
        values.deriveEventModes();
    });
}

void JournalRig::startWith(const std::vector<MissedCallItem>& missed,
                           const std::vector<DialledCallItem>& dialled,
                           const std::vector<ReceivedCallItem>& received,
                           const std::vector<ForwardedCallItem>& forwarded,
                           const std::vector<CallBackItem>& callBacks) {
    const auto addAll = [this](const auto& items) {
        for (const auto& item : items) {
            database.addRow(journal::ListTable<std::decay_t<decltype(item)>>::kName, item);
        }
    };
    addAll(missed);
    addAll(dialled);
    addAll(received);
    addAll(forwarded);
    addAll(callBacks);
    const std::string softwareType = settings.values()->m_softwareType;
    const int systemIdentifier = settings.values()->m_systemIdentifier;
    phoneIs(softwareTypes::sip);  // which loads every list
    load();
    phoneIs(softwareType, systemIdentifier);
    forget();
}

void JournalRig::forget() {
    database.forgetRequests();
    exchange.forgetRequests();
    observer.clear();
}

std::string JournalRig::heard() const {
    Texts texts;
    for (const Callback& callback : observer.callbacks()) {
        texts.push_back(textOf(callback));
    }
    return joined(texts);
}

std::string JournalRig::written() const {
    Texts texts;
    for (const DataRequest& request : database.requests()) {
        if (request.reason != DataRequest::Reason::eRead) {
            texts.push_back(textOf(request));
        }
    }
    return joined(texts);
}

std::string JournalRig::read() const {
    Texts texts;
    for (const DataRequest& request : database.requests()) {
        if (request.reason == DataRequest::Reason::eRead) {
            texts.push_back(shortName(request.schema));
        }
    }
    return joined(texts, " ");
}

std::string JournalRig::sent() const {
    Texts texts;
    for (const CallLogEntryRequest& request : exchange.callLogEntries()) {
        texts.push_back(textOf(request));
    }
    return joined(texts);
}

std::string JournalRig::entryIds() {
    Texts ids;
    addIds(ids, items<MissedCallItem>());
    addIds(ids, items<DialledCallItem>());
    addIds(ids, items<ReceivedCallItem>());
    addIds(ids, items<ForwardedCallItem>());
    addIds(ids, items<CallBackItem>());
    return joined(ids, " ");
}

Texts JournalRig::listContents() {
    Texts contents;
    addContents<MissedCallItem>(contents, items<MissedCallItem>());
    addContents<DialledCallItem>(contents, items<DialledCallItem>());
    addContents<ReceivedCallItem>(contents, items<ReceivedCallItem>());
    addContents<ForwardedCallItem>(contents, items<ForwardedCallItem>());
    addContents<CallBackItem>(contents, items<CallBackItem>());
    return sorted(contents);
}

Texts JournalRig::databaseContents() const {
    Texts contents;
    addRows<MissedCallItem>(contents, database);
    addRows<DialledCallItem>(contents, database);
    addRows<ReceivedCallItem>(contents, database);
    addRows<ForwardedCallItem>(contents, database);
    addRows<CallBackItem>(contents, database);
    return sorted(contents);
}

}  // namespace journaltest
