#include "journalservice/JournalServiceQorvexTel.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <vector>

#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "src/JournalService/JournalComponents.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListTransaction.h"

#define LOG_LOADING(level, ...) \
    JOURNAL_LOG("Journal Service", "./src/JournalServiceQorvexTel", level, __VA_ARGS__)

namespace {

using journal::JournalLists;
using journal::ListTransaction;

using Helper = CallListDatabaseAdapterHelper;

constexpr const char* kResultColumns = "CALL_LOG.* PHONE_BOOK.*";
/// The limit of both requests of a load together, in rows.
constexpr unsigned kRowBudget = 200;

template <typename Item>
void clearList(JournalLists& lists) {
    ListTransaction(lists).open<Item>().clear();
}

/// Appends the items to their list and normalises the list. Returns the size of the list before
/// normalisation.
template <typename Item, typename Normalize>
unsigned addToList(JournalLists& lists, const std::deque<Item>& found, const char* word,
                   Normalize normalize) {
    ListTransaction transaction(lists);
    auto& items = transaction.open<Item>();
    LOG_LOADING(6, "Found %d %s call(s)\n", static_cast<int>(found.size()), word);
    items.insert(items.end(), found.begin(), found.end());
    const auto total = static_cast<unsigned>(items.size());
    LOG_LOADING(6, "total %s call(s) [%d]\n", word, static_cast<int>(total));
    normalize(items);
    return total;
}

}  // namespace

std::string JournalServiceQorvexTel::buildXmlElement(const std::string& name,
                                                     const std::string& value) const {
    return Helper::createXMLField(name, value);
}

std::string JournalServiceQorvexTel::buildXmlHeader(const std::string& schemaName,
                                                    const std::string& reason) const {
    return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schemaName + R"(">)" +
           buildXmlElement(Helper::REASONFORMESSAGE, reason);
}

std::string JournalServiceQorvexTel::loadCallLists(const std::string& schemaName,
                                                   const std::string& resultCols, unsigned rowLimit) const {
    return components().adapter.processRequest(
        buildXmlHeader(schemaName, Helper::READREQUEST) + buildXmlElement(Helper::RESULTCOLS, resultCols) +
        buildXmlElement(Helper::OFFSET, "0") +
        buildXmlElement(Helper::ROWLIMIT, ClientUtils::itos(rowLimit)) + "</Schema>");
}

std::string JournalServiceQorvexTel::loadCallLists(const std::string& schemaName, unsigned rowLimit) const {
    return loadCallLists(schemaName, kResultColumns, rowLimit);
}

bool JournalServiceQorvexTel::ifNotReadFailure(const std::string& response) const {
    return response != Helper::FAILED && response.find(JournalServiceHelper::FAILURE) == std::string::npos;
}

void JournalServiceQorvexTel::loadCallListsFromDb() {
    ListTransaction transaction(components().lists);
    unsigned count = 0;
    unsigned inLists = 0;
    unsigned budget = kRowBudget;
    std::string response = loadCallLists(Helper::CONVERSATIONS_SCHEMA, budget);
    LOG_LOADING(5, "response from read all:%s\n", response.c_str());
    const bool callsRead = ifNotReadFailure(response);
    bool whole = true;
    if (callsRead) {
        clearPreviousCachedData();
        count = processReadResponse(response);
        whole = m_wholeResponse;
        inLists = count;
        budget -= std::min(count, budget);
    }
    if (budget > 0) {
        response = loadCallLists(Helper::CALLLOGPHONEBOOK_SCHEMA, budget);
        LOG_LOADING(5, "response from read all:%s\n", response.c_str());
        if (ifNotReadFailure(response)) {
            // Counts whole lists, so the items of the first response are counted again.
            inLists = processReadResponse(response);
            count += inLists;
        }
    }
    LOG_LOADING(5, "Found %d call(s) in total\n", static_cast<int>(count));
    transaction.setLoaded(!callsRead || !whole || inLists >= kRowBudget);
}

void JournalServiceQorvexTel::clearPreviousCachedData() const {
    JournalLists& lists = components().lists;
    clearList<MissedCallItem>(lists);
    clearList<DialledCallItem>(lists);
    clearList<ReceivedCallItem>(lists);
    clearList<ForwardedCallItem>(lists);
    lists.contacts().clear();
}

unsigned JournalServiceQorvexTel::processReadResponse(const std::string& response) {
    std::deque<MissedCallItem> missed;
    std::deque<DialledCallItem> dialled;
    std::deque<ReceivedCallItem> received;
    std::deque<ForwardedCallItem> forwarded;
    std::vector<Contact> contacts;
    m_wholeResponse =
        JournalServiceHelper::parseXMLdata(response, missed, dialled, received, forwarded, contacts);

    JournalLists& lists = components().lists;
    unsigned count = addToList(lists, missed, "missed", [this](std::deque<MissedCallItem>& items) {
        components().adapter.normalizeMissedCallList(items);
    });
    count += addToList(lists, dialled, "dialled", [this](std::deque<DialledCallItem>& items) {
        components().loader.normalizeDialledCallList(items);
    });
    count += addToList(lists, received, "received", [this](std::deque<ReceivedCallItem>& items) {
        components().loader.normalizeReceivedCallList(items);
    });
    count += addToList(lists, forwarded, "forwarded", [this](std::deque<ForwardedCallItem>& items) {
        components().loader.normalizeForwardedCallList(items);
    });
    LOG_LOADING(6, "Found %d contact(s)\n", static_cast<int>(contacts.size()));
    const std::size_t known = lists.contacts().add(contacts);
    LOG_LOADING(6, "total contact(s) [%d]\n", static_cast<int>(known));
    LOG_LOADING(4, "processReadResponse: processed %d call(s)\n", static_cast<int>(count));
    return count;
}
