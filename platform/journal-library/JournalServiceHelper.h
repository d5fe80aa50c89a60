#pragma once

#include <deque>
#include <string>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// The service's side of the journal's messages: reads requests and list documents, builds responses and
/// observer messages. `docs/messages.md` shows each text. The clients' side is in `namespace journalxml`
/// (ClientRequest.h, ClientResponse.h, ObserverMessage.h), the database's in DataRequest.h and
/// DataResponse.h.
///
/// Thread-safe: static functions without state. No operation throws. A text is checked before it is parsed
/// (XmlLimits.h). For a text that fails, a reader returns false, -1 or an empty text, and leaves its outputs
/// unchanged. A text of a builder here is read back equal for any bytes in the fields.
class JournalServiceHelper {
public:
    JournalServiceHelper() = delete;

    static constexpr const char* UPDATEREQUEST = "update_request";
    /// The schema of the journal's settings.
    static constexpr const char* SETTINGS_SCHEMA = "JournalSettings";
    /// Field names of a remote request, beside `CallListDatabaseAdapterHelper::ENTRYID`.
    static constexpr const char* METHOD = "Method";
    static constexpr const char* VALUE = "Value";
    static constexpr const char* SENDDELETEMISSEDCALLREQUEST_XML = "SendDeleteMissedCallRequest";
    /// The response of the remote interface to a request that did not run or did not succeed.
    static constexpr const char* FAILURE = "failure";

    // Requests for the database

    [[nodiscard]] static std::string readDialledCallList();
    [[nodiscard]] static std::string readReceivedCallList();
    [[nodiscard]] static std::string readForwardedCallList();
    [[nodiscard]] static std::string readCallBackList();
    /// Requests the newest `rows` rows.
    [[nodiscard]] static std::string readDialledCallList(unsigned rows);
    [[nodiscard]] static std::string readReceivedCallList(unsigned rows);
    [[nodiscard]] static std::string readForwardedCallList(unsigned rows);
    [[nodiscard]] static std::string readCallBackList(unsigned rows);
    [[nodiscard]] static std::string readSettings();
    [[nodiscard]] static std::string updateSettings(const std::string& key, const std::string& value);

    // Fields of a message: children of its outermost element

    /// The method id of a remote request; -1 for a message without one and for an unreadable message.
    [[nodiscard]] static int getMethodFromXMLMsg(const std::string& message);
    /// Reads the first value of the field; false if it is absent. An empty field is present, with an empty
    /// value.
    [[nodiscard]] static bool getXMLValue(const std::string& message, const std::string& field,
                                          std::string& value);
    /// The same for a boolean; also false if `ClientUtils::isStringBool` rejects the first value.
    [[nodiscard]] static bool getXMLValue(const std::string& message, const std::string& field, bool& value);
    /// Removes the field's first value from the message and returns it; false if the message has none. Each
    /// call reads the whole message; for many values use `getXMLValues`.
    [[nodiscard]] static bool getAndRemoveXMLValue(std::string& message, const std::string& field,
                                                   std::string& value);
    /// All values of the field, in order, in one pass.
    [[nodiscard]] static std::vector<std::string> getXMLValues(const std::string& message,
                                                               const std::string& field);

    // Items and lists: the ENTRY elements of a message or of a list document

    /// Reads the first entry of that kind. Returns false if the text cannot be read or has no such entry.
    /// Fields that the entry does not name get their defaults.
    [[nodiscard]] static bool parseXMLMissedCallItem(const std::string& message, MissedCallItem& item);
    [[nodiscard]] static bool parseXMLDialledCallItem(const std::string& message, DialledCallItem& item);
    [[nodiscard]] static bool parseXMLReceivedCallItem(const std::string& message, ReceivedCallItem& item);
    [[nodiscard]] static bool parseXMLForwardedCallItem(const std::string& message, ForwardedCallItem& item);
    [[nodiscard]] static bool parseXMLCallBackItem(const std::string& message, CallBackItem& item);

    /// Appends every entry of that kind, in document order, and skips entries of other kinds. Returns false,
    /// with the list unchanged, if the document cannot be read.
    static bool parseXMLMissedCallList(const std::string& xml, std::deque<MissedCallItem>& list);
    static bool parseXMLDialledCallList(const std::string& xml, std::deque<DialledCallItem>& list);
    static bool parseXMLReceivedCallList(const std::string& xml, std::deque<ReceivedCallItem>& list);
    static bool parseXMLForwardedCallList(const std::string& xml, std::deque<ForwardedCallItem>& list);
    static bool parseXMLCallBackList(const std::string& xml, std::deque<CallBackItem>& list);

    /// Appends every entry of a mixed response to the container of its kind; skips callbacks and entries
    /// without a kind. Returns false, with everything unchanged, if the document cannot be read.
    static bool parseXMLdata(const std::string& response, std::deque<MissedCallItem>& missed,
                             std::deque<DialledCallItem>& dialled, std::deque<ReceivedCallItem>& received,
                             std::deque<ForwardedCallItem>& forwarded, std::vector<Contact>& contacts);

    /// The unique id of the last row that a write or delete request changed; empty if the response names
    /// none.
    [[nodiscard]] static std::string parseLastUniqueId(const std::string& response);

    // Responses of the remote interface

    [[nodiscard]] static std::string respBool(bool result);
    [[nodiscard]] static std::string respGetMissedCall(const MissedCallItem& item);
    [[nodiscard]] static std::string respGetMissedCallList(const std::deque<MissedCallItem>& list);
    [[nodiscard]] static std::string respGetDialledCall(const DialledCallItem& item);
    [[nodiscard]] static std::string respGetDialledCallList(const std::deque<DialledCallItem>& list);
    [[nodiscard]] static std::string respGetReceivedCall(const ReceivedCallItem& item);
    [[nodiscard]] static std::string respGetReceivedCallList(const std::deque<ReceivedCallItem>& list);
    [[nodiscard]] static std::string respGetForwardedCall(const ForwardedCallItem& item);
    [[nodiscard]] static std::string respGetForwardedCallList(const std::deque<ForwardedCallItem>& list);
    [[nodiscard]] static std::string respGetCallBackList(const std::deque<CallBackItem>& list);
    [[nodiscard]] static std::string respGetLastNumberDialled(const DialledCallItem& item);

    // Messages to a remote observer; `action` is the observer interface's ActionType

    [[nodiscard]] static std::string obsReqMissedCallsCountUpdate(unsigned count);
    [[nodiscard]] static std::string obsReqMissedCallsUpdate(const MissedCallItem& item,
                                                             const std::string& entryId, int action);
    [[nodiscard]] static std::string obsReqDialledCallsUpdate(const DialledCallItem& item,
                                                              const std::string& entryId, int action);
    [[nodiscard]] static std::string obsReqReceivedCallsUpdate(const ReceivedCallItem& item,
                                                               const std::string& entryId, int action);
    [[nodiscard]] static std::string obsReqForwardedCallsUpdate(const ForwardedCallItem& item,
                                                                const std::string& entryId, int action);
    [[nodiscard]] static std::string obsReqCallBacksUpdate(const CallBackItem& item,
                                                           const std::string& entryId, int action);
    [[nodiscard]] static std::string obsReqCallBacksCountUpdate(unsigned count);
};
