#pragma once

#include <string>

#include "journal-items/Contact.h"
#include "journal-items/ListTraits.h"

/// The words and the building blocks of the documents that go to the database. `docs/messages.md` shows
/// each document.
///
/// Static functions without state: any thread may call. The constants are compile-time texts, so nothing
/// has to be initialised before use. Every builder returns valid UTF-8 whatever bytes it is given.
class CallListDatabaseAdapterHelper {
public:
    CallListDatabaseAdapterHelper() = delete;

    /// Element names.
    static constexpr const char* REASONFORMESSAGE = "ReasonForMessage";
    static constexpr const char* ENTRY = "ENTRY";
    static constexpr const char* ENTRYID = "EntryId";
    static constexpr const char* UNIQUEID = "UniqueId";
    static constexpr const char* LASTUNIQUEID = "LastUniqueId";
    static constexpr const char* ALLENTRIES = "AllEntries";
    static constexpr const char* RESULTCOLS = "ResultCols";
    static constexpr const char* OFFSET = "Offset";
    static constexpr const char* ROWLIMIT = "RowLimit";

    /// Values of `REASONFORMESSAGE`: what is wanted. Settings are changed with
    /// `JournalServiceHelper::UPDATEREQUEST`.
    static constexpr const char* READREQUEST = "read_request";
    static constexpr const char* WRITEREQUEST = "write_request";
    static constexpr const char* DELETEREQUEST = "delete_request";

    /// The answer to a request that changed nothing because something went wrong.
    static constexpr const char* FAILED = "failed";

    /// Table names, which are also the schema names of their documents.
    static constexpr const char* DAS_CALLLOGMISSEDCALLS = ListTraits<MissedCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGDIALLEDCALLS = ListTraits<DialledCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGRECEIVEDCALLS = ListTraits<ReceivedCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGFORWARDEDCALLS = ListTraits<ForwardedCallItem>::kTable;
    static constexpr const char* DAS_CALLLOGCALLBACKS = ListTraits<CallBackItem>::kTable;

    /// Schemas that answer with several tables at once.
    static constexpr const char* CONVERSATIONS_SCHEMA = "Conversations";
    static constexpr const char* CALLLOGPHONEBOOK_SCHEMA = "CallLogPhoneBook";

    /// A list is read in one document of this many rows, newest first.
    static constexpr unsigned kListRows = 1000;

    /// `<name>value</name>`, the value escaped. `name` must be an XML name.
    [[nodiscard]] static std::string createXMLField(const std::string& name, const std::string& value);
    /// `<name>body</name>` around text that is XML already (fields, an item body).
    [[nodiscard]] static std::string createXMLElement(const std::string& name, const std::string& body);
    /// The document: XML declaration and a `Schema` element of that name around fields and entries.
    [[nodiscard]] static std::string addXMLHeaderFooter(const std::string& body,
                                                        const std::string& schemaName);
    /// Stands for all entries of a table in a delete request. Deleting without entries and without this
    /// text is refused, so a forgotten entry can never empty a table.
    [[nodiscard]] static std::string allEntries();

    /// The read request of one table: its newest `rows` rows.
    [[nodiscard]] static std::string readCallList(const std::string& table, unsigned rows = kListRows);
    [[nodiscard]] static std::string readMissedCallList(unsigned rows = kListRows);

    /// An item as the content of an `ENTRY`: its fields and occurrences, or, when `requestType` is
    /// `DELETEREQUEST`, just the unique id and the entry id that name its row.
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

    /// The source's word in documents; "unknown" for a value without one.
    [[nodiscard]] static std::string getOrderedContactSourceToString(
        const Contact::eOrderedContactSource& source);
    /// The way back; `eUnknown` for an unknown word.
    [[nodiscard]] static Contact::eOrderedContactSource getOrderedContactSourceFromString(
        const std::string& word);
};
