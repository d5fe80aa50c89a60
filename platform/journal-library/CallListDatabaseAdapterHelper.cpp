#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/RootElements.h"

namespace {

template <typename Item>
std::string bodyFor(const Item& item, const std::string& requestType) {
    return requestType == CallListDatabaseAdapterHelper::DELETEREQUEST ? journalxml::keyBody(item)
                                                                       : journalxml::itemBody(item);
}

}  // namespace

std::string CallListDatabaseAdapterHelper::createXMLField(const std::string& name, const std::string& value) {
    return createXMLElement(name, ClientUtils::escapeXMLString(value));
}

std::string CallListDatabaseAdapterHelper::createXMLElement(const std::string& name,
                                                            const std::string& body) {
    std::string element;
    journalxml::appendElement(element, name.c_str(), body);
    return element;
}

std::string CallListDatabaseAdapterHelper::addXMLHeaderFooter(const std::string& body,
                                                              const std::string& schemaName) {
    std::string document = journalxml::kXmlDeclaration;
    document.append("<Schema name=\"").append(ClientUtils::escapeXMLString(schemaName)).append("\">");
    document.append(body).append("</Schema>");
    return document;
}

std::string CallListDatabaseAdapterHelper::allEntries() {
    return createXMLField(ALLENTRIES, "true");
}

std::string CallListDatabaseAdapterHelper::readCallList(const std::string& table, unsigned rows) {
    return addXMLHeaderFooter(createXMLField(REASONFORMESSAGE, READREQUEST) + createXMLField(OFFSET, "0") +
                                  createXMLField(ROWLIMIT, ClientUtils::itos(rows)),
                              table);
}

std::string CallListDatabaseAdapterHelper::readMissedCallList(unsigned rows) {
    return readCallList(DAS_CALLLOGMISSEDCALLS, rows);
}

std::string CallListDatabaseAdapterHelper::createXMLMissedCallItemBody(const MissedCallItem& item,
                                                                       const std::string& requestType) {
    return bodyFor(item, requestType);
}

std::string CallListDatabaseAdapterHelper::createXMLDialledCallItemBody(const DialledCallItem& item,
                                                                        const std::string& requestType) {
    return bodyFor(item, requestType);
}

std::string CallListDatabaseAdapterHelper::createXMLReceivedCallItemBody(const ReceivedCallItem& item,
                                                                         const std::string& requestType) {
    return bodyFor(item, requestType);
}

std::string CallListDatabaseAdapterHelper::createXMLForwardedCallItemBody(const ForwardedCallItem& item,
                                                                          const std::string& requestType) {
    return bodyFor(item, requestType);
}

std::string CallListDatabaseAdapterHelper::createXMLCallBackItemBody(const CallBackItem& item,
                                                                     const std::string& requestType) {
    return bodyFor(item, requestType);
}

std::string CallListDatabaseAdapterHelper::getOrderedContactSourceToString(
    const Contact::eOrderedContactSource& source) {
    return journalxml::nameOf(source);
}

Contact::eOrderedContactSource CallListDatabaseAdapterHelper::getOrderedContactSourceFromString(
    const std::string& word) {
    return journalxml::contactSourceNamed(word);
}
