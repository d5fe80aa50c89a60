#include "host/presentation/ItemSearch.h"

#include <algorithm>

#include "host/presentation/PlainText.h"
#include "journal-items/Occurrences.h"

namespace host {
namespace {

template <typename Item>
bool callItemMatches(const Item& item, const SearchText& text) {
    const auto& occurrences = occurrencesOf(item);
    return text.isEmpty() || text.isIn(fullName(item.getFirstname(), item.getSurname())) ||
           std::any_of(occurrences.begin(), occurrences.end(), [&text](const auto& occurrence) {
               return text.isInNumber(occurrence.getNumber()) ||
                      text.isInNumber(occurrence.getConnectedNumber());
           });
}

}  // namespace

bool itemMatches(const MissedCallItem& item, const SearchText& text) {
    return callItemMatches(item, text);
}

bool itemMatches(const DialledCallItem& item, const SearchText& text) {
    return callItemMatches(item, text);
}

bool itemMatches(const ReceivedCallItem& item, const SearchText& text) {
    return callItemMatches(item, text);
}

bool itemMatches(const ForwardedCallItem& item, const SearchText& text) {
    return callItemMatches(item, text);
}

bool itemMatches(const CallBackItem& item, const SearchText& text) {
    return text.isEmpty() || text.isIn(fullName(item.getFirstname(), item.getSurname())) ||
           text.isInNumber(item.getNumber());
}

bool itemMatches(const Contact& contact, const SearchText& text) {
    if (text.isEmpty() || text.isIn(fullName(contact.getFirstname(), contact.getSurname())) ||
        text.isIn(contact.getCompany()) || text.isIn(contact.getEmail())) {
        return true;
    }
    for (int position = 1; position <= 4; ++position) {
        if (text.isInNumber(contact.getPhoneNumber(position))) {
            return true;
        }
    }
    return false;
}

}  // namespace host
