#include "host/contact-files/ContactWriter.h"

#include <array>
#include <string_view>

#include "host/contact-files/VCardContact.h"
#include "host/contact-files/VCardProperty.h"
#include "host/presentation/ContactFields.h"
#include "host/presentation/PlainText.h"
#include "host/text-files/CsvCell.h"
#include "host/text-files/FileText.h"
#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

namespace host {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kMaxLineBytes = 75;

/// Appends a text line, folded after 75 bytes and never within a character.
void addLine(std::string& card, const std::string& line) {
    std::size_t used = 0;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t length = utf8::next(line, at).length;
        if (used + length > kMaxLineBytes) {
            card += kLineEnd;
            card += ' ';
            used = 1;
        }
        card.append(line, at, length);
        used += length;
        at += length;
    }
    card += kLineEnd;
}

std::string value(const std::string& text) {
    return VCardProperty::escaped(cleaned(text));
}

void addText(std::string& card, const std::string& name, const std::string& text) {
    if (const std::string escaped = value(text); !escaped.empty()) {
        addLine(card, name + ":" + escaped);
    }
}

void addNumbers(std::string& card, const Contact& contact) {
    constexpr std::array<const char*, 4> kTypes{"work", "cell", "home", "work"};
    for (int position = 1; position <= 4; ++position) {
        std::string name = std::string("TEL;TYPE=") + kTypes[static_cast<std::size_t>(position) - 1];
        if (position == contact.getDefaultNumber()) {
            name += ",pref";
        }
        if (position == 4 && cleaned(contact.getOffice()).empty()) {
            name += std::string(";") + VCardNumbers::kPlace + "=office2";
        }
        addText(card, name, contact.getPhoneNumber(position));
    }
}

void addAddress(std::string& card, const std::string& address) {
    if (const std::string street = value(address); !street.empty()) {
        addLine(card, "ADR:;;" + street + ";;;;");
    }
}

/// FN must not be empty.
std::string shownName(const Contact& contact) {
    std::string name = fullName(cleaned(contact.getFirstname()), cleaned(contact.getSurname()));
    if (name.empty()) {
        name = cleaned(contact.getCompany());
    }
    return name.empty() ? "unknown" : name;
}

std::string card(const Contact& contact) {
    std::string text;
    addLine(text, "BEGIN:VCARD");
    addLine(text, "VERSION:3.0");
    addLine(text, "N:" + value(contact.getSurname()) + ";" + value(contact.getFirstname()) + ";;;");
    addText(text, "FN", shownName(contact));
    addNumbers(text, contact);
    addText(text, "EMAIL", contact.getEmail());
    addText(text, "ORG", contact.getCompany());
    addText(text, "TITLE", contact.getJobFunction());
    addText(text, "CATEGORIES", contact.getGroup());
    addAddress(text, contact.getAddress());
    addAddress(text, contact.getAddress2());
    addText(text, "PHOTO;VALUE=uri", contact.getPicture());
    addText(text, VCardContact::kVoiceDial, contact.getVoiceDial());
    addText(text, "UID", contact.getExternalId());
    if (contact.getContactSource() != Contact::eOrderedContactSource::ePersonal) {
        addText(text, VCardContact::kSource,
                CallListDatabaseAdapterHelper::getOrderedContactSourceToString(contact.getContactSource()));
    }
    addLine(text, "END:VCARD");
    return text;
}

template <typename CellOf>
std::string row(const CellOf& cellOf) {
    std::string text;
    const char* between = "";
    for (const ContactField& field : contactFields()) {
        text += between + cellOf(field);
        between = ",";
    }
    return text.append(kLineEnd);
}

}  // namespace

std::string contactFileHead(ContactFormat format) {
    return format == ContactFormat::eVCard
               ? std::string()
               : row([](const ContactField& field) { return std::string(field.name); });
}

std::string contactFileEntry(ContactFormat format, const Contact& contact) {
    return format == ContactFormat::eVCard
               ? card(contact)
               : row([&contact](const ContactField& field) { return csvCell(cleaned(field.get(contact))); });
}

}  // namespace host
