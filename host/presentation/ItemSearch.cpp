#include "host/presentation/ItemSearch.h"

#include "host/presentation/PlainText.h"

namespace host {

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
