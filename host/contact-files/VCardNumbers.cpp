#include "host/contact-files/VCardNumbers.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "host/limits/TextLimits.h"
#include "host/text-files/FileText.h"

namespace host {
namespace {

constexpr int kOffice = 1;
constexpr int kMobile = 2;
constexpr int kPrivate = 3;
constexpr int kOffice2 = 4;
constexpr std::array<int, 4> kFreePlaces{kOffice, kOffice2, kMobile, kPrivate};
constexpr int kLeastPreference = 100;
/// A card with more numbers does not describe a person.
constexpr std::size_t kMaxNumbers = 100;

/// The digits of "tel:7042;phone-context=+49-30" or "tel:+49-30-1234;ext=5", and of a number without scheme.
std::string numberIn(const VCardProperty& property) {
    std::string text = property.text();
    if (!beginsWith(text, "tel:")) {
        return text;
    }
    while (beginsWith(text, "tel:")) {
        text = stripped(std::string_view(text).substr(4));
    }
    const std::size_t end = std::min(text.find(';'), text.size());
    constexpr std::string_view kContext = ";phone-context=";
    const std::size_t context = lower(text).find(kContext);
    std::string number(stripped(std::string_view(text).substr(0, end)));
    if (context != std::string::npos && text.compare(context + kContext.size(), 1, "+") == 0) {
        const std::size_t begin = context + kContext.size();
        number.insert(0, text.substr(begin, text.find(';', begin) - begin));
    }
    return cleaned(number);
}

/// True if a person can be called there; a machine's number only if it is also marked as a voice number.
bool isVoice(const VCardProperty& property) {
    const bool machine = property.isOfType("fax") || property.isOfType("pager") ||
                         property.isOfType("modem") || property.isOfType("bbs");
    return !machine || property.isOfType("voice");
}

void setNumber(Contact& contact, int position, const std::string& number) {
    switch (position) {
        case kOffice: contact.setOffice(number); break;
        case kMobile: contact.setMobile(number); break;
        case kPrivate: contact.setPrivate(number); break;
        default: contact.setOffice2(number); break;
    }
}

/// For a remark.
std::string shown(const std::string& number) {
    return std::string(limits::cut(number, limits::kNumberBytes));
}

}  // namespace

void VCardNumbers::take(const VCardProperty& property) {
    Number number{numberIn(property), placesFor(property), property.preference(), isVoice(property)};
    if (!number.text.empty() && m_numbers.size() < kMaxNumbers) {
        m_numbers.push_back(std::move(number));
    }
}

VCardNumbers::Places VCardNumbers::placesFor(const VCardProperty& property) {
    if (property.parameter(kPlace) == "office2") {
        return {kOffice2, 0};
    }
    if (property.isOfType("cell") || property.isOfType("car") || property.isOfType("iphone")) {
        return {kMobile, 0};
    }
    if (property.isOfType("work")) {
        return {kOffice, kOffice2};
    }
    return property.isOfType("home") ? Places{kPrivate, 0} : Places{};
}

bool VCardNumbers::put(const Number& number, const int* first, const int* last, Slots& slots) {
    const int* const place = std::find_if(first, last, [&slots](int position) {
        return position > 0 && slots[static_cast<std::size_t>(position)] == nullptr;
    });
    if (place == last) {
        return false;
    }
    slots[static_cast<std::size_t>(*place)] = &number;
    return true;
}

void VCardNumbers::fill(ContactRecord& record) const {
    Slots slots{};
    std::vector<const Number*> rest;
    for (const Number& number : m_numbers) {
        if (!number.voice) {
            record.remarks.push_back("its fax or pager number " + shown(number.text) + " is left out");
        } else if (!put(number, number.wanted.data(), number.wanted.data() + number.wanted.size(), slots)) {
            rest.push_back(&number);
        }
    }
    for (const Number* number : rest) {
        if (!put(*number, kFreePlaces.data(), kFreePlaces.data() + kFreePlaces.size(), slots)) {
            record.remarks.push_back("its number " + shown(number->text) +
                                     " is left out: a contact has four at most");
        }
    }
    int preferred = kLeastPreference;
    for (int position = kOffice2; position >= kOffice; --position) {
        const Number* const number = slots[static_cast<std::size_t>(position)];
        if (number != nullptr) {
            setNumber(record.contact, position, number->text);
            if (number->preference <= preferred) {
                preferred = number->preference;
                record.contact.setDefaultNumber(position);
            }
        }
    }
}

}  // namespace host
