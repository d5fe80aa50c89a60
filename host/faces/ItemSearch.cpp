#include "host/faces/ItemSearch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/faces/PlainText.h"
#include "journal-items/Occurrences.h"
#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

bool isBetween(std::uint32_t character, std::uint32_t first, std::uint32_t last) {
    return character >= first && character <= last;
}

std::uint32_t smallLetter(std::uint32_t character) {
    const bool plus32 = isBetween(character, 'A', 'Z') ||
                        (isBetween(character, 0xC0, 0xDE) && character != 0xD7) ||
                        isBetween(character, 0x391, 0x3A9) || isBetween(character, 0x410, 0x42F);
    if (plus32) {
        return character + 32;
    }
    if (isBetween(character, 0x400, 0x40F)) {
        return character + 80;
    }
    // In these blocks capital and small letters alternate; the capital is the even one, or the odd one.
    const bool evenCapital = isBetween(character, 0x100, 0x137) || isBetween(character, 0x14A, 0x177);
    const bool oddCapital = isBetween(character, 0x139, 0x148) || isBetween(character, 0x179, 0x17E);
    if ((evenCapital && character % 2 == 0 && character != 0x130) || (oddCapital && character % 2 == 1)) {
        return character + 1;
    }
    return character;
}

std::string folded(std::string_view text) {
    std::string small;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        if (step.character == utf8::kInvalid) {
            small += text.substr(at, step.length);
        } else {
            utf8::append(small, smallLetter(step.character));
        }
        at += step.length;
    }
    return small;
}

bool contains(const std::string& field, const std::string& foldedText) {
    return folded(field).find(foldedText) != std::string::npos;
}

template <typename Item>
bool callItemMatches(const Item& item, std::string_view text) {
    const std::string wanted = folded(text);
    const auto& occurrences = occurrencesOf(item);
    return wanted.empty() || contains(fullName(item.getFirstname(), item.getSurname()), wanted) ||
           std::any_of(occurrences.begin(), occurrences.end(), [&wanted](const auto& occurrence) {
               return contains(occurrence.getNumber(), wanted) ||
                      contains(occurrence.getConnectedNumber(), wanted);
           });
}

}  // namespace

bool itemMatches(const MissedCallItem& item, std::string_view text) {
    return callItemMatches(item, text);
}

bool itemMatches(const DialledCallItem& item, std::string_view text) {
    return callItemMatches(item, text);
}

bool itemMatches(const ReceivedCallItem& item, std::string_view text) {
    return callItemMatches(item, text);
}

bool itemMatches(const ForwardedCallItem& item, std::string_view text) {
    return callItemMatches(item, text);
}

bool itemMatches(const CallBackItem& item, std::string_view text) {
    const std::string wanted = folded(text);
    return wanted.empty() || contains(fullName(item.getFirstname(), item.getSurname()), wanted) ||
           contains(item.getNumber(), wanted);
}

bool itemMatches(const Contact& contact, std::string_view text) {
    const std::string wanted = folded(text);
    if (wanted.empty() || contains(fullName(contact.getFirstname(), contact.getSurname()), wanted) ||
        contains(contact.getCompany(), wanted) || contains(contact.getEmail(), wanted)) {
        return true;
    }
    for (int position = 1; position <= 4; ++position) {
        if (contains(contact.getPhoneNumber(position), wanted)) {
            return true;
        }
    }
    return false;
}

}  // namespace host
