#include "platform/journal-library/CallListDatabaseAdapter.h"

#include <algorithm>
#include <exception>

#include "journal-items/Occurrences.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/logging/Logging.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;

constexpr const char* kComponent = "Journal Service";
constexpr const char* kSourceFile = "./platform/journal-library";
constexpr int kError = 2;

}  // namespace

std::string CallListDatabaseAdapter::processRequest(const std::string& request) const {
    if (m_service == nullptr) {
        logAppUni(kComponent, kSourceFile, kError, __LINE__, "No data access service, request is lost");
        return Helper::FAILED;
    }
    try {
        return m_service->processRequest(request);
    } catch (const std::exception& error) {
        logAppUni(kComponent, kSourceFile, kError, __LINE__, "Data access service failed: %s", error.what());
    } catch (...) {
        logAppUni(kComponent, kSourceFile, kError, __LINE__, "Data access service failed");
    }
    return Helper::FAILED;
}

std::string CallListDatabaseAdapter::updateEntries(const std::string& entries, const std::string& requestType,
                                                   const std::string& table) const {
    if (entries.empty() && requestType == Helper::DELETEREQUEST) {
        logAppUni(kComponent, kSourceFile, kError, __LINE__,
                  "Delete request for %s names no entries, not sent", table.c_str());
        return Helper::FAILED;
    }
    const std::string reason = Helper::createXMLField(Helper::REASONFORMESSAGE, requestType);
    return processRequest(Helper::addXMLHeaderFooter(reason + entries, table));
}

void CallListDatabaseAdapter::processMissedCallDbXml(const std::string& xml,
                                                     std::deque<MissedCallItem>& list) const {
    list.clear();
    if (!JournalServiceHelper::parseXMLMissedCallList(xml, list)) {
        logAppUni(kComponent, kSourceFile, kError, __LINE__,
                  "Missed call list of the database is not readable");
    }
    normalizeMissedCallList(list);
}

void CallListDatabaseAdapter::normalizeMissedCallList(std::deque<MissedCallItem>& list) const {
    const auto hasOccurrences = [](const MissedCallItem& item) { return !occurrencesOf(item).empty(); };
    const auto isNewer = [](const MissedCallItem& a, const MissedCallItem& b) {
        return sortKeyOf(a) > sortKeyOf(b);
    };
    const auto firstEmpty = std::stable_partition(list.begin(), list.end(), hasOccurrences);
    std::string dropped;
    for (auto item = firstEmpty; item != list.end(); ++item) {
        dropped += Helper::createXMLElement(
            Helper::ENTRY, Helper::createXMLMissedCallItemBody(*item, Helper::DELETEREQUEST));
    }
    list.erase(firstEmpty, list.end());
    std::stable_sort(list.begin(), list.end(), isNewer);
    if (!dropped.empty() && m_service != nullptr) {
        // A row that the database keeps is dropped again by the next load.
        static_cast<void>(updateEntries(dropped, Helper::DELETEREQUEST, Helper::DAS_CALLLOGMISSEDCALLS));
    }
}
