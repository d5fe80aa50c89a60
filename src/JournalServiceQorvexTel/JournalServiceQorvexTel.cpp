#include "journalservice/JournalServiceQorvexTel.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <tuple>
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

/// The contents of the four call lists and of the contact list while they are prepared. No other thread sees
/// them before `swapInto`.
class PreparedLists {
public:
    /// Copies the contents of the lists.
    void copyFrom(JournalLists& lists) {
        copyList<MissedCallItem>(lists);
        copyList<DialledCallItem>(lists);
        copyList<ReceivedCallItem>(lists);
        copyList<ForwardedCallItem>(lists);
        lists.contacts().getContactList(m_contacts);
    }
    /// Appends the items of the response and normalises the lists. Returns the number of items in the four
    /// lists before normalisation.
    unsigned add(const std::string& response, journal::JournalComponents& components) {
        std::deque<MissedCallItem> missed;
        std::deque<DialledCallItem> dialled;
        std::deque<ReceivedCallItem> received;
        std::deque<ForwardedCallItem> forwarded;
        std::vector<Contact> contacts;
        m_isWhole =
            JournalServiceHelper::parseXMLdata(response, missed, dialled, received, forwarded, contacts);
        journal::ListLoader& loader = components.loader;
        unsigned count = append(missed, "missed");
        components.adapter.normalizeMissedCallList(items<MissedCallItem>());
        count += append(dialled, "dialled");
        loader.normalizeDialledCallList(items<DialledCallItem>());
        count += append(received, "received");
        loader.normalizeReceivedCallList(items<ReceivedCallItem>());
        count += append(forwarded, "forwarded");
        loader.normalizeForwardedCallList(items<ForwardedCallItem>());
        LOG_LOADING(6, "Found %d contact(s)\n", static_cast<int>(contacts.size()));
        m_contacts.insert(m_contacts.end(), contacts.begin(), contacts.end());
        LOG_LOADING(6, "total contact(s) [%d]\n", static_cast<int>(m_contacts.size()));
        LOG_LOADING(4, "processReadResponse: processed %d call(s)\n", static_cast<int>(count));
        return count;
    }
    /// False if the last response could not be parsed to its end.
    [[nodiscard]] bool isWhole() const noexcept { return m_isWhole; }
    /// Replaces the contents of the lists, each under its own lock.
    void swapInto(JournalLists& lists) {
        swapList<MissedCallItem>(lists);
        swapList<DialledCallItem>(lists);
        swapList<ReceivedCallItem>(lists);
        swapList<ForwardedCallItem>(lists);
        lists.contacts().swap(m_contacts);
    }

private:
    template <typename Item>
    std::deque<Item>& items() {
        return std::get<std::deque<Item>>(m_lists);
    }
    template <typename Item>
    void copyList(JournalLists& lists) {
        items<Item>() = *lists.read<Item>();
    }
    template <typename Item>
    void swapList(JournalLists& lists) {
        ListTransaction(lists).open<Item>().swap(items<Item>());
    }
    /// Returns the size of the list.
    template <typename Item>
    unsigned append(const std::deque<Item>& found, const char* word) {
        LOG_LOADING(6, "Found %d %s call(s)\n", static_cast<int>(found.size()), word);
        items<Item>().insert(items<Item>().end(), found.begin(), found.end());
        const auto total = static_cast<unsigned>(items<Item>().size());
        LOG_LOADING(6, "total %s call(s) [%d]\n", word, static_cast<int>(total));
        return total;
    }

    std::tuple<std::deque<MissedCallItem>, std::deque<DialledCallItem>, std::deque<ReceivedCallItem>,
               std::deque<ForwardedCallItem>>
        m_lists;
    std::vector<Contact> m_contacts;
    bool m_isWhole = true;
};

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
    PreparedLists prepared;
    bool whole = true;
    if (callsRead) {
        count = prepared.add(response, components());
        whole = prepared.isWhole();
        inLists = count;
        budget -= std::min(count, budget);
    } else {
        prepared.copyFrom(components().lists);
        transaction.setIncomplete();
    }
    if (budget > 0) {
        response = loadCallLists(Helper::CALLLOGPHONEBOOK_SCHEMA, budget);
        LOG_LOADING(5, "response from read all:%s\n", response.c_str());
        if (ifNotReadFailure(response)) {
            // Counts whole lists, so the items of the first response are counted again.
            inLists = prepared.add(response, components());
            count += inLists;
        }
    }
    prepared.swapInto(components().lists);
    LOG_LOADING(5, "Found %d call(s) in total\n", static_cast<int>(count));
    transaction.setLoaded(!callsRead || !whole || inLists >= kRowBudget);
}

void JournalServiceQorvexTel::clearPreviousCachedData() const {
    PreparedLists().swapInto(components().lists);
}

unsigned JournalServiceQorvexTel::processReadResponse(const std::string& response) {
    const ListTransaction transaction(components().lists);
    PreparedLists prepared;
    prepared.copyFrom(components().lists);
    const unsigned count = prepared.add(response, components());
    prepared.swapInto(components().lists);
    return count;
}
