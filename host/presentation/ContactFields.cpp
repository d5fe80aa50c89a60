#include "host/presentation/ContactFields.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"

namespace host {
namespace {

using Words = CallListDatabaseAdapterHelper;

template <const std::string& (Contact::*Get)() const, void (Contact::*Set)(const std::string&)>
constexpr ContactField text(const char* name) {
    return {name, [](const Contact& contact) { return (contact.*Get)(); },
            [](Contact& contact, const std::string& value) {
                (contact.*Set)(value);
                return true;
            }};
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
        text<&Contact::getOffice, &Contact::setOffice>("office"),
        text<&Contact::getMobile, &Contact::setMobile>("mobile"),
        text<&Contact::getPrivate, &Contact::setPrivate>("private"),
        text<&Contact::getOffice2, &Contact::setOffice2>("office2"),
        {"defaultNumber", &defaultNumberOf, &setDefaultNumber},
        text<&Contact::getEmail, &Contact::setEmail>("email"),
        text<&Contact::getCompany, &Contact::setCompany>("company"),
        text<&Contact::getJobFunction, &Contact::setJobFunction>("jobFunction"),
        text<&Contact::getGroup, &Contact::setGroup>("group"),
        text<&Contact::getAddress, &Contact::setAddress>("address"),
        text<&Contact::getAddress2, &Contact::setAddress2>("address2"),
        text<&Contact::getPicture, &Contact::setPicture>("picture"),
        text<&Contact::getVoiceDial, &Contact::setVoiceDial>("voiceDial"),
        text<&Contact::getExternalId, &Contact::setExternalId>("externalId"),
        {"source", &sourceOf, &setSource},
    };
    return kFields;
}

}  // namespace host
