#pragma once

#include <string>

#include "journal-items/Contact.h"
#include "journal-items/ListTraits.h"
#include "platform/journal-library/XmlNames.h"

/// The words and the builders of the documents for the database; `docs/messages.md` shows each document.
///
/// Thread-safe: static functions and compile-time constants. Every builder returns valid UTF-8 for any bytes.
class CallListDatabaseAdapterHelper {
public:
    CallListDatabaseAdapterHelper() = delete;

    /// Element names.
    static constexpr const char* REASONFORMESSAGE = "ReasonForMessage";
    static constexpr const char* ENTRY = journalxml::kEntry;
    static constexpr const char* ENTRYID = journalxml::kEntryId;
    static constexpr const char* UNIQUEID = journalxml::kUniqueId;
    static constexpr const char* LASTUNIQUEID = "LastUniqueId";
    static constexpr const char* ALLENTRIES = "AllEntries";
    static constexpr const char* RESULTCOLS = "ResultCols";
    static constexpr const char* OFFSET = "Offset";
    static constexpr const char* ROWLIMIT = "RowLimit";

    /// Values of `REASONFORMESSAGE`: the kind of request. Settings are changed with
    /// `JournalServiceHelper::UPDATEREQUEST`.
    static constexpr const char* READREQUEST = "read_request";
    static constexpr const char* WRITEREQUEST = "write_request";
    static constexpr const char* DELETEREQUEST = "delete_request";

    /// The response to a request that failed without a change.
    static constexpr const char* FAILED = "failed";

    /// Table names, which are also the schema names of their documents.
    static constexpr const char* DAS_CALLLOGMISSEDCALLS = ListTraits<MissedCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGDIALLEDCALLS = ListTraits<DialledCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGRECEIVEDCALLS = ListTraits<ReceivedCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGFORWARDEDCALLS = ListTraits<ForwardedCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGCALLBACKS = ListTraits<CallBackItem>::kTable;

    /// Schemas that return several tables at once.
    static constexpr const char* CONVERSATIONS_SCHEMA = "Conversations";
    static constexpr const char* CALLLOGPHONEBOOK_SCHEMA = "CallLogPhoneBook";

    /// The number of rows that one list document holds, newest first.
    static constexpr unsigned kListRows = 1000;

    /// `<name>value</name>`, the value escaped. Requires: `name` is an XML name.
    [[nodiscard]] static std::string createXMLField(const std::string& name, const std::string& value);
    /// `<name>body</name>`; the body is XML already (fields, an item body).
    [[nodiscard]] static std::string createXMLElement(const std::string& name, const std::string& body);
    /// A whole document: the XML declaration and a `Schema` element of that name around fields and entries.
    [[nodiscard]] static std::string addXMLHeaderFooter(const std::string& body,
                                                        const std::string& schemaName);
    /// Stands for all entries of a table in a delete request. A delete request with neither entries nor this
    /// text is refused, so a missing entry never empties a table.
    [[nodiscard]] static std::string allEntries();

    /// The read request for the newest `rows` rows of one table.
    [[nodiscard]] static std::string readCallList(const std::string& table, unsigned rows = kListRows);
    [[nodiscard]] static std::string readMissedCallList(unsigned rows = kListRows);

    /// The content of an item's `ENTRY`: its fields and occurrences, or, for `DELETEREQUEST`, only the unique
    /// id and the entry id, which name its row.
    [[nodiscard]] static std::string createXMLMissedCallItemBody(const MissedCallItem& item,
                                                                 const std::string& requestType);
    [[nodiscard]] static std::string createXMLDialledCallItemBody(const DialledCallItem& item,
                                                                  const std::string& requestType);
    [[nodiscard]] static std::string createXMLReceivedCallItemBody(const ReceivedCallItem& item,
                                                                   const std::string& requestType);
    [[nodiscard]] static std::string createXMLForwardedCallItemBody(const ForwardedCallItem& item,
                                                                    const std::string& requestType);
    [[nodiscard]] static std::string createXMLCallBackItemBody(const CallBackItem& item,
                                                               const std::string& requestType);

    /// The word for a source in documents; "unknown" for a value without one.
    [[nodiscard]] static std::string getOrderedContactSourceToString(
        const Contact::eOrderedContactSource& source);
    /// The inverse; `eUnknown` for an unknown word.
    [[nodiscard]] static Contact::eOrderedContactSource getOrderedContactSourceFromString(
        const std::string& word);
};
