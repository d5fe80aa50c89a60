#include "host/presentation/ContactFields.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/limits/TextLimits.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

namespace host {
namespace {

using Words = CallListDatabaseAdapterHelper;

template <const std::string& (Contact::*Get)() const, void (Contact::*Set)(const std::string&)>
constexpr ContactField text(const char* name, std::size_t maxBytes = limits::kNameBytes) {
    return {name, [](const Contact& contact) { return (contact.*Get)(); },
            [](Contact& contact, const std::string& value) {
                (contact.*Set)(value);
                return true;
            },
            maxBytes};
}

/// By position.
constexpr std::array<std::string_view, 5> kNumbers{"", "office", "mobile", "private", "office2"};
std::string defaultNumberOf(const Contact& contact) {
    const std::int32_t position = contact.getDefaultNumber();
    return position > 0 && position < static_cast<std::int32_t>(kNumbers.size())
               ? std::string(kNumbers[static_cast<std::size_t>(position)])
               : std::string();
}

bool setDefaultNumber(Contact& contact, const std::string& word) {
    const auto* const found = std::find(kNumbers.begin(), kNumbers.end(), word);
    if (found == kNumbers.end()) {
        return false;
    }
    contact.setDefaultNumber(static_cast<std::int32_t>(found - kNumbers.begin()));
    return true;
}

std::string sourceOf(const Contact& contact) {
    return Words::getOrderedContactSourceToString(contact.getContactSource());
}

bool setSource(Contact& contact, const std::string& word) {
    const auto source = Words::getOrderedContactSourceFromString(word);
    if (!word.empty() && Words::getOrderedContactSourceToString(source) != word) {
        return false;
    }
    contact.setContactSource(source);
    return true;
}

}  // namespace

const std::vector<ContactField>& contactFields() {
    static const std::vector<ContactField> kFields = {
        text<&Contact::getSurname, &Contact::setSurname>("surname"),
        text<&Contact::getFirstname, &Contact::setFirstname>("firstName"),
        text<&Contact::getOffice, &Contact::setOffice>("office", limits::kNumberBytes),
        text<&Contact::getMobile, &Contact::setMobile>("mobile", limits::kNumberBytes),
        text<&Contact::getPrivate, &Contact::setPrivate>("private", limits::kNumberBytes),
        text<&Contact::getOffice2, &Contact::setOffice2>("office2", limits::kNumberBytes),
        {"defaultNumber", &defaultNumberOf, &setDefaultNumber, limits::kNameBytes},
        text<&Contact::getEmail, &Contact::setEmail>("email"),
        text<&Contact::getCompany, &Contact::setCompany>("company"),
        text<&Contact::getJobFunction, &Contact::setJobFunction>("jobFunction"),
        text<&Contact::getGroup, &Contact::setGroup>("group"),
        text<&Contact::getAddress, &Contact::setAddress>("address", limits::kTextBytes),
        text<&Contact::getAddress2, &Contact::setAddress2>("address2", limits::kTextBytes),
        text<&Contact::getPicture, &Contact::setPicture>("picture", limits::kTextBytes),
        text<&Contact::getVoiceDial, &Contact::setVoiceDial>("voiceDial"),
        text<&Contact::getExternalId, &Contact::setExternalId>("externalId"),
        {"source", &sourceOf, &setSource, limits::kNameBytes},
    };
    return kFields;
}

std::optional<std::string> tooLongField(const Contact& contact) {
    for (const ContactField& field : contactFields()) {
        if (field.get(contact).size() > field.maxBytes) {
            return limits::tooLong(field.name, field.maxBytes);
        }
    }
    return std::nullopt;
}

}  // namespace host
