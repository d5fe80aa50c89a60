#include "src/JournalService/lists/ListLoader.h"

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/JournalLists.h"

namespace journal {

namespace {

using Helper = CallListDatabaseAdapterHelper;

void populateDialledCallListFromXml(const std::string& xml, std::deque<DialledCallItem>& items) {
    items.clear();
    JournalServiceHelper::parseXMLDialledCallList(xml, items);
}

void populateReceivedCallListFromXml(const std::string& xml, std::deque<ReceivedCallItem>& items) {
    items.clear();
    JournalServiceHelper::parseXMLReceivedCallList(xml, items);
}

void populateForwardedCallListFromXml(const std::string& xml, std::deque<ForwardedCallItem>& items) {
    items.clear();
    JournalServiceHelper::parseXMLForwardedCallList(xml, items);
}

}  // namespace

void ListLoader::loadWith(const std::function<void()>& loadCallLists) {
    const JournalLists::Change change(m_lists);
    if (!m_lists.repeatRefused()) {
        LOG_JOURNAL(2, "The database refuses entries, so the lists are not loaded and stay as they are");
        return;
    }
    loadCallLists();
    readCallBackList();
    m_hasLoaded = true;
}

void ListLoader::loadCallListsFromDb() {
    LOG_JOURNAL(6, "loadCallListsFromDb - BEGIN");
    const JournalLists::Change change(m_lists);
    readMissedCallList();
    readDialledCallList();
    readReceivedCallList();
    if (m_settings.values()->isSip()) {
        readForwardedCallList();
    }
    // A read may have failed, or found more rows than it brings.
    m_lists.olderEntries().loaded(true);
    m_listsLoaded = true;
    LOG_JOURNAL(6, "loadCallListsFromDb - END");
}

void ListLoader::readMissedCallList() {
    const std::string response = m_adapter.processRequest(Helper::readMissedCallList());
    if (response != Helper::FAILED) {
        LOG_JOURNAL(6, "response from readmissedcalllist:%s\n", response.c_str());
        processMissedCallDbXml(response);
    }
}

void ListLoader::readDialledCallList() {
    const std::string response = m_adapter.processRequest(JournalServiceHelper::readDialledCallList());
    if (response != Helper::FAILED) {
        LOG_JOURNAL(6, "response from readDialledCallList:%s\n", response.c_str());
        processDialledCallDbXml(response);
    }
}

void ListLoader::readReceivedCallList() {
    const std::string response = m_adapter.processRequest(JournalServiceHelper::readReceivedCallList());
    if (response != Helper::FAILED) {
        LOG_JOURNAL(6, "response from readReceivedCallList:%s\n", response.c_str());
        processReceivedCallDbXml(response);
    }
}

void ListLoader::readForwardedCallList() {
    const std::string response = m_adapter.processRequest(JournalServiceHelper::readForwardedCallList());
    if (response != Helper::FAILED) {
        LOG_JOURNAL(6, "response from readForwardedCallList:%s\n", response.c_str());
        processForwardedCallDbXml(response);
    }
}

void ListLoader::readCallBackList() {
    const std::string response = m_adapter.processRequest(JournalServiceHelper::readCallBackList());
    if (response != Helper::FAILED) {
        const auto items = m_lists.list<CallBackItem>().access();
        items->clear();
        JournalServiceHelper::parseXMLCallBackList(response, *items);
    }
}

void ListLoader::processMissedCallDbXml(const std::string& xml) {
    const auto items = m_lists.list<MissedCallItem>().access();
    m_adapter.processMissedCallDbXml(xml, *items);
}

void ListLoader::processDialledCallDbXml(const std::string& xml) {
    const auto items = m_lists.list<DialledCallItem>().access();
    populateDialledCallListFromXml(xml, *items);
    m_lists.normalizeDialledCallList(*items);
}

void ListLoader::processReceivedCallDbXml(const std::string& xml) {
    const auto items = m_lists.list<ReceivedCallItem>().access();
    populateReceivedCallListFromXml(xml, *items);
    m_lists.normalizeReceivedCallList(*items);
}

void ListLoader::processForwardedCallDbXml(const std::string& xml) {
    const auto items = m_lists.list<ForwardedCallItem>().access();
    populateForwardedCallListFromXml(xml, *items);
    m_lists.normalizeForwardedCallList(*items);
}

}  // namespace journal
