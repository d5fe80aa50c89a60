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

/// The journal's message vocabulary, service side: reads requests and list documents, builds answers and
/// observer messages. `docs/messages.md` shows each text; the clients' side is in `namespace journalxml`
/// (ClientRequest.h, ClientResponse.h, ObserverMessage.h), the database's in DataRequest.h and DataResponse.h.
///
/// Static functions without state: any thread may call. Nothing throws. Whatever is read is checked before
/// it is parsed (see XmlLimits.h); a text that fails is answered with false, -1 or an empty text, and
/// outputs are unchanged. A text that a builder here has written is read back equal, whatever bytes the
/// fields hold.
class JournalServiceHelper {
public:
    JournalServiceHelper() = delete;

    static constexpr const char* UPDATEREQUEST = "update_request";
    /// The schema of the service's own settings.
    static constexpr const char* SETTINGS_SCHEMA = "JournalSettings";
    /// Field names of a remote request, beside `CallListDatabaseAdapterHelper::ENTRYID`.
    static constexpr const char* METHOD = "Method";
    static constexpr const char* VALUE = "Value";
    static constexpr const char* SENDDELETEMISSEDCALLREQUEST_XML = "SendDeleteMissedCallRequest";
    /// The answer of the remote interface to a request that did not run or did not succeed.
    static constexpr const char* FAILURE = "failure";

    // Requests for the database

    [[nodiscard]] static std::string readDialledCallList();
    [[nodiscard]] static std::string readReceivedCallList();
    [[nodiscard]] static std::string readForwardedCallList();
    [[nodiscard]] static std::string readCallBackList();
    /// With the number of newest rows that are wanted.
    [[nodiscard]] static std::string readDialledCallList(unsigned rows);
    [[nodiscard]] static std::string readReceivedCallList(unsigned rows);
    [[nodiscard]] static std::string readForwardedCallList(unsigned rows);
    [[nodiscard]] static std::string readCallBackList(unsigned rows);
    [[nodiscard]] static std::string readSettings();
    [[nodiscard]] static std::string updateSettings(const std::string& key, const std::string& value);

    // Fields of a message: children of its outermost element

    /// The method id of a remote request; -1 when the message has none or cannot be read.
    [[nodiscard]] static int getMethodFromXMLMsg(const std::string& message);
    /// The first value of the field; false when it is absent. An empty field is there, with an empty value.
    [[nodiscard]] static bool getXMLValue(const std::string& message, const std::string& field,
                                          std::string& value);
    /// The same for a boolean; false also when the first value is not one that `ClientUtils::isStringBool`
    /// accepts.
    [[nodiscard]] static bool getXMLValue(const std::string& message, const std::string& field, bool& value);
    /// Takes the first remaining value of the field out of the message, which stays a message; false when
    /// none is left. Each call reads the whole message: for many values `getXMLValues` is the cheaper way.
    [[nodiscard]] static bool getAndRemoveXMLValue(std::string& message, const std::string& field,
                                                   std::string& value);
    /// All values of the field, in order, in one pass.
    [[nodiscard]] static std::vector<std::string> getXMLValues(const std::string& message,
                                                               const std::string& field);

    // Items and lists: the ENTRY elements of a message or of a list document

    /// Reads the first entry of that kind. False when the text cannot be read or holds none; fields that
    /// the entry does not name get their defaults.
    [[nodiscard]] static bool parseXMLMissedCallItem(const std::string& message, MissedCallItem& item);
    [[nodiscard]] static bool parseXMLDialledCallItem(const std::string& message, DialledCallItem& item);
    [[nodiscard]] static bool parseXMLReceivedCallItem(const std::string& message, ReceivedCallItem& item);
    [[nodiscard]] static bool parseXMLForwardedCallItem(const std::string& message, ForwardedCallItem& item);
    [[nodiscard]] static bool parseXMLCallBackItem(const std::string& message, CallBackItem& item);

    /// Appends every entry of that kind at the back, in document order; entries of other kinds are passed
    /// over. False, with the list unchanged, when the document cannot be read.
    static bool parseXMLMissedCallList(const std::string& xml, std::deque<MissedCallItem>& list);
    static bool parseXMLDialledCallList(const std::string& xml, std::deque<DialledCallItem>& list);
    static bool parseXMLReceivedCallList(const std::string& xml, std::deque<ReceivedCallItem>& list);
    static bool parseXMLForwardedCallList(const std::string& xml, std::deque<ForwardedCallItem>& list);
    static bool parseXMLCallBackList(const std::string& xml, std::deque<CallBackItem>& list);

    /// Appends every entry of a mixed answer to the container of its kind; entries that do not name their
    /// kind, and callbacks, are passed over. False, with everything unchanged, when the document cannot be
    /// read.
    static bool parseXMLdata(const std::string& response, std::deque<MissedCallItem>& missed,
                             std::deque<DialledCallItem>& dialled, std::deque<ReceivedCallItem>& received,
                             std::deque<ForwardedCallItem>& forwarded, std::vector<Contact>& contacts);

    /// The unique id of the last row that a write or delete request touched; empty when the answer names
    /// none.
    [[nodiscard]] static std::string parseLastUniqueId(const std::string& response);

    // Answers of the remote interface

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
