#include "journalservice/ContactGetterInvoker.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "journal-items/Contact.h"
#include "journalservice/ContactGetterIfc.h"
#include "platform/framework/Executable.h"
#include "platform/framework/FrameworkContext.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/framework/Method.h"
#include "platform/framework/ProtocolAdapter.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/logging/LogExceptions.h"
#include "src/JournalService/base/Log.h"

#define LOG_CONTACTS(level, ...) JOURNAL_LOG(kComponent, kSource, level, __VA_ARGS__)

namespace {

constexpr const char* kComponent = "Journal Service Invoker";
constexpr const char* kSource = "./src/ContactGetterInvoker";
constexpr const char* kFailure = "fail";
constexpr const char* kMethod = "getContactList";
constexpr const char* kInterface = "ContactGetterIfc";
constexpr const char* kParameter = "contactList";
/// A longer list is cut after this number of contacts.
constexpr std::size_t kMaxContacts = 200;

struct TextField {
    const char* name;
    const std::string& (Contact::*get)() const noexcept;
};

// In document order; the default number stands between the two tables.
constexpr TextField kFieldsBeforeDefault[] = {
    {"UniqueId", &Contact::getUniqueId},   {"Surname", &Contact::getSurname},
    {"Firstname", &Contact::getFirstname}, {"Office", &Contact::getOffice},
    {"Mobile", &Contact::getMobile},       {"Private", &Contact::getPrivate},
    {"Email", &Contact::getEmail},         {"Group", &Contact::getGroup},
};
constexpr TextField kFieldsAfterDefault[] = {
    {"Company", &Contact::getCompany},         {"Office2", &Contact::getOffice2},
    {"Address", &Contact::getAddress},         {"Address2", &Contact::getAddress2},
    {"JobFunction", &Contact::getJobFunction}, {"Picture", &Contact::getPicture},
    {"VoiceDial", &Contact::getVoiceDial},     {"ExternalId", &Contact::getExternalId},
};

/// The elements of one contact list document, appended to a text.
class Document {
public:
    explicit Document(const ContactGetterInvoker& invoker) : m_invoker(invoker) {}

    void add(const Contact& contact) {
        m_text += "<Entry>";
        addFields(contact, kFieldsBeforeDefault);
        const std::int32_t position = contact.getDefaultNumber();
        m_text += "<DefaultNumber>" + std::to_string(position >= 1 && position <= 4 ? position : 0) +
                  "</DefaultNumber>";
        addFields(contact, kFieldsAfterDefault);
        add("ContactSource",
            CallListDatabaseAdapterHelper::getOrderedContactSourceToString(contact.getContactSource()));
        m_text += "<CallRecords>";
        for (const Contact::CallRecord& record : contact.getCallRecords()) {
            m_text += "<CallRecord>";
            add("UniqueId", record.entryId);
            add("Type", record.type);
            m_text += "</CallRecord>";
        }
        m_text += "</CallRecords></Entry>";
    }

    [[nodiscard]] const std::string& text() const noexcept { return m_text; }

private:
    void add(const char* name, const std::string& value) { m_text += m_invoker.buildXmlElement(name, value); }

    template <std::size_t Count>
    void addFields(const Contact& contact, const TextField (&fields)[Count]) {
        for (const TextField& field : fields) {
            add(field.name, (contact.*field.get)());
        }
    }

    const ContactGetterInvoker& m_invoker;
    std::string m_text;
};

/// Returns the response to a message for a contact getter.
std::string responseTo(const ContactGetterInvoker& invoker, ContactGetterIfc& getter,
                       const std::string& message, FrameworkContext* context,
                       const InvokerResponse& response) {
    std::string protocol = response.getRequestedProtocol();
    const ProtocolAdapter* const adapter = context ? context->findProtocolAdapter(protocol) : nullptr;
    if (!adapter) {
        LOG_CONTACTS(2, "handleMessage[%s] no pa found for '%s'\n", message.c_str(), protocol.c_str());
        return kFailure;
    }
    LOG_CONTACTS(6, "ContactGetterInvoker[%s]", message.c_str());
    Method request;
    if (!adapter->decode(message, request) || request.getName() != kMethod) {
        return kFailure;
    }
    std::vector<Contact> contacts;
    getter.getContactList(contacts);
    Document document(invoker);
    const std::size_t count = std::min(contacts.size(), kMaxContacts);
    std::for_each_n(contacts.begin(), count, [&document](const Contact& contact) { document.add(contact); });
    Method encoded(request.getName(), Method::Kind::eResponse, kInterface);
    encoded.addStringParameter(kParameter, document.text(), Method::ParameterKind::eOut);
    return adapter->encode(encoded);
}

}  // namespace

std::string ContactGetterInvoker::buildXmlElement(const std::string& name, const std::string& value) const {
    return CallListDatabaseAdapterHelper::createXMLField(name, value);
}

void ContactGetterInvoker::handleMessage(Executable* target, const char* message, int length,
                                         InvokerResponse* response) {
    if (!response) {
        LOG_CONTACTS(2, "Invoker response is NULL");
        return;
    }
    const LogOrigin origin{kComponent, kSource, __LINE__};
    std::string payload = kFailure;
    auto* const getter = dynamic_cast<ContactGetterIfc*>(target);
    if (getter) {
        logExceptions(origin, "handling a message", [&] {
            const bool isEmpty = !message || length <= 0;
            const std::string text = isEmpty ? "" : std::string(message, static_cast<std::size_t>(length));
            payload = responseTo(*this, *getter, text, m_context, *response);
        });
    } else {
        LOG_CONTACTS(2, "Contact getter interface is NULL");
    }
    logExceptions(origin, "setting a response",
                  [&] { response->setPayload(payload.data(), static_cast<int>(payload.size())); });
    logExceptions(origin, "completing a response", [&] { response->complete(); });
}
