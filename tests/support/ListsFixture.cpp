#include "tests/support/ListsFixture.h"

#include <algorithm>
#include <memory>

#include "journal-items/ListTraits.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"
#include "platform/journal-library/ListXml.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using journalxml::DataRequest;

std::string textOf(const CallLogEntryRequest& request) {
    const std::string target = std::to_string(request.logTarget);
    const auto& [value, text] = request.further.back();
    if (request.numberKind == CallLogEntryRequest::eWholeLog) {
        return "all " + target;
    }
    return request.action == CallLogEntryRequest::eDeleteAll
               ? "group " + target + " " + request.subscriberNumber + " " + std::to_string(value) + " " + text
               : "one " + target + " " + request.subscriberNumber + " " + request.entryTime;
}

template <typename Items>
void addContents(Texts& contents, const Items& items) {
    for (const auto& item : items) {
        contents.push_back(journal::ListPersistence::entry(item, journal::RequestType::eWrite));
    }
    std::sort(contents.begin(), contents.end());
}

}  // namespace

ListsFixture::ListsFixture() {
    adapter.init(&database);
    platform.m_cstaService = &exchange;
    exchange.respond(FakeCstaService::Kind::eEscape, [this](CSTARequest& request) {
        readAllLists(reader);
        request.setOutcome(0, std::make_unique<CSTAEscapeResponse>());
    });
    phoneIs(softwaretypes::sip);
    notifier.init(&reader, softwaretypes::sip);
    notifier.subscribe(&observer, {});
    observer.clear();
    CapturedLog::reset();
}

void ListsFixture::phoneIs(const std::string& softwareType, int systemIdentifier) {
    settings.change([&](journal::SettingsSnapshot& values) {
        values.m_softwareType = softwareType;
        values.m_systemIdentifier = systemIdentifier;
        values.deriveEventModes();
    });
}

void ListsFixture::startWith(const std::vector<MissedCallItem>& missed,
                             const std::vector<DialledCallItem>& dialled,
                             const std::vector<ReceivedCallItem>& received,
                             const std::vector<ForwardedCallItem>& forwarded,
                             const std::vector<CallBackItem>& callBacks) {
    const auto add = [this]<typename Item>(const std::vector<Item>& items) {
        for (const Item& item : items) {
            database.addRow(ListXml<Item>::kTable, item);
        }
    };
    add(missed), add(dialled), add(received), add(forwarded), add(callBacks);
    const auto before = *settings.values();
    phoneIs(softwaretypes::sip);  // which loads every list
    load();
    phoneIs(before.m_softwareType, before.m_systemIdentifier);
    forget();
}

void ListsFixture::forget() {
    database.forgetRequests();
    exchange.forgetRequests();
    observer.clear();
}

std::string ListsFixture::written() const {
    Texts texts;
    for (const DataRequest& request : database.requests()) {
        if (request.reason != DataRequest::Reason::eRead) {
            texts.push_back(textOf(request));
        }
    }
    return joined(texts);
}

std::string ListsFixture::read() const {
    Texts tables;
    for (const DataRequest& request : database.requests()) {
        if (request.reason == DataRequest::Reason::eRead) {
            tables.push_back(tableOf(request));
        }
    }
    return joined(tables, " ");
}

std::string ListsFixture::sent() const {
    Texts texts;
    for (const CallLogEntryRequest& request : exchange.callLogEntries()) {
        texts.push_back(textOf(request));
    }
    return joined(texts);
}

std::string ListsFixture::entryIds() {
    Texts ids;
    forEachList([this, &ids]<typename Item>() {
        const Texts more = entryIdsOf(items<Item>());
        ids.insert(ids.end(), more.begin(), more.end());
    });
    return joined(ids, " ");
}

Texts ListsFixture::listContents() {
    Texts contents;
    forEachList([&]<typename Item>() { addContents(contents, items<Item>()); });
    return contents;
}

Texts ListsFixture::databaseContents() const {
    Texts contents;
    forEachList([&]<typename Item>() { addContents(contents, database.rows<Item>(ListXml<Item>::kTable)); });
    return contents;
}

}  // namespace journaltest
