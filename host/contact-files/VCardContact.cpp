#include "host/contact-files/VCardContact.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "host/text-files/FileText.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

namespace host {
namespace {

using Words = CallListDatabaseAdapterHelper;

/// The components of a structured value, each a list of texts separated by commas.
std::vector<std::string> components(const VCardProperty& property, const std::string& between) {
    std::vector<std::string> parts;
    VCardProperty part;
    std::size_t begin = 0;
    for (std::size_t at = 0; at <= property.value.size(); ++at) {
        if (at < property.value.size() && property.value[at] == '\\') {
            ++at;
        } else if (at == property.value.size() || property.value[at] == ';') {
            part.value = property.value.substr(begin, at - begin);
            parts.emplace_back();
            for (const std::string& text : part.texts(',')) {
                parts.back() += (parts.back().empty() || text.empty() ? std::string() : between) + text;
            }
            begin = at + 1;
        }
    }
    return parts;
}

std::string at(const std::vector<std::string>& parts, std::size_t index) {
    return index < parts.size() ? parts[index] : std::string();
}

void append(std::string& line, std::string_view between, const std::string& text) {
    line += (line.empty() || text.empty() ? std::string() : std::string(between)) + text;
}

bool isQuotedPrintable(const VCardProperty& property) {
    return property.parameter("ENCODING") == "quoted-printable" || property.isOfType("quoted-printable");
}

}  // namespace

void VCardContact::take(const VCardProperty& property) {
    using Taker = void (VCardContact::*)(const VCardProperty&);
    struct Entry {
        const char* name;
        Taker taker;
    };
    static constexpr std::array<Entry, 14> kTakers{{
        {"VERSION", &VCardContact::takeVersion},
        {"N", &VCardContact::takeName},
        {"EMAIL", &VCardContact::takeEmail},
        {"ADR", &VCardContact::takeAddress},
        {"PHOTO", &VCardContact::takePhoto},
        {"UID", &VCardContact::takeUid},
        {kSource, &VCardContact::takeSource},
        {"FN", &VCardContact::takeOther},
        {"TEL", &VCardContact::takeOther},
        {"ORG", &VCardContact::takeOther},
        {"TITLE", &VCardContact::takeOther},
        {"ROLE", &VCardContact::takeOther},
        {"CATEGORIES", &VCardContact::takeOther},
        {kVoiceDial, &VCardContact::takeOther},
    }};
    const auto* const entry = std::find_if(kTakers.begin(), kTakers.end(), [&property](const Entry& each) {
        return property.name == each.name;
    });
    if (entry == kTakers.end()) {
        return;
    }
    if (!isUtf8(property.value)) {
        refuse("its " + property.name + " is not UTF-8");
    } else if (isQuotedPrintable(property)) {
        refuse("its " + property.name + " is quoted-printable, which belongs to vCard 2.1");
    } else {
        (this->*(entry->taker))(property);
    }
}

ContactRecord VCardContact::finish(std::size_t line) {
    ContactRecord record;
    record.line = line;
    if (m_contact.getSurname().empty() && m_contact.getFirstname().empty()) {
        m_contact.setSurname(m_formattedName.empty() ? m_contact.getCompany() : m_formattedName);
    }
    if (m_contact.getSurname().empty() && m_contact.getFirstname().empty()) {
        refuse("it has no name");
    }
    if (m_contact.getJobFunction().empty()) {
        m_contact.setJobFunction(m_role);
    }
    record.contact = std::move(m_contact);
    record.refusal = std::move(m_refusal);
    m_numbers.fill(record);
    if (record.refusal.empty()) {
        record.refusal = refusalOfLength(record.contact);
    }
    return record;
}

void VCardContact::takeVersion(const VCardProperty& property) {
    const std::string version = property.text();
    if (version != "3.0" && version != "4.0") {
        refuse("it is vCard " + version + "; save it as vCard 3.0 or 4.0");
    }
}

void VCardContact::takeName(const VCardProperty& property) {
    const std::vector<std::string> parts = components(property, " ");
    if (m_contact.getSurname().empty() && m_contact.getFirstname().empty()) {
        m_contact.setSurname(at(parts, 0));
        m_contact.setFirstname(at(parts, 1));
    }
}

void VCardContact::takeEmail(const VCardProperty& property) {
    std::string address = property.text();
    if (!address.empty() && (m_contact.getEmail().empty() || property.preference() < m_emailPreference)) {
        m_contact.setEmail(address);
        m_emailPreference = property.preference();
    }
}

// Post-office box, extension, street, locality, region, postal code, country.
void VCardContact::takeAddress(const VCardProperty& property) {
    const std::vector<std::string> parts = components(property, ", ");
    std::string line;
    for (const std::size_t index : {std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
        append(line, ", ", at(parts, index));
    }
    append(line, ", ", at(parts, 5));
    append(line, at(parts, 5).empty() ? ", " : " ", at(parts, 3));
    append(line, ", ", at(parts, 4));
    append(line, ", ", at(parts, 6));
    if (m_contact.getAddress().empty()) {
        m_contact.setAddress(line);
    } else if (m_contact.getAddress2().empty()) {
        m_contact.setAddress2(line);
    }
}

void VCardContact::takePhoto(const VCardProperty& property) {
    const std::string reference = property.text();
    const std::string encoding = property.parameter("ENCODING");
    const bool isReference = property.parameter("VALUE") == "uri" || beginsWith(reference, "http://") ||
                             beginsWith(reference, "https://") || beginsWith(reference, "file:");
    if (isReference && encoding.empty() && !beginsWith(reference, "data:")) {
        m_contact.setPicture(reference);
    }
}

// Some address books write "urn:uuid:ID" into cards of version 4.0 and "ID" into those of 3.0.
void VCardContact::takeUid(const VCardProperty& property) {
    constexpr std::string_view kScheme = "urn:uuid:";
    std::string id = property.text();
    while (beginsWith(id, kScheme)) {
        id = stripped(std::string_view(id).substr(kScheme.size()));
    }
    m_contact.setExternalId(id);
}

void VCardContact::takeSource(const VCardProperty& property) {
    m_contact.setContactSource(Words::getOrderedContactSourceFromString(property.text()));
}

void VCardContact::takeOther(const VCardProperty& property) {
    if (property.name == "TEL") {
        m_numbers.take(property);
    } else if (property.name == "FN") {
        m_formattedName = property.text();
    } else if (property.name == "ORG") {
        m_contact.setCompany(property.texts(';').front());
    } else if (property.name == "TITLE") {
        m_contact.setJobFunction(property.text());
    } else if (property.name == "ROLE") {
        m_role = property.text();
    } else if (property.name == kVoiceDial) {
        m_contact.setVoiceDial(property.text());
    } else {
        std::string group;
        for (const std::string& category : property.texts(',')) {
            append(group, ", ", category);
        }
        m_contact.setGroup(group);
    }
}

void VCardContact::refuse(const std::string& reason) {
    if (m_refusal.empty()) {
        m_refusal = reason;
    }
}

}  // namespace host
