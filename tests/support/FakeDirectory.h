#pragma once

#include <string>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A phonebook of the contacts that a test puts in before calls may come; register it as
/// "DirectoryServiceIfc". The first contact one of whose four numbers equals the search number byte for byte
/// is the one.
class FakeDirectory final : public Executable, public DirectoryServiceIfc {
public:
    std::vector<Contact> contacts;

    /// A contact with an office number only.
    void add(const std::string& number, const std::string& firstname, const std::string& surname) {
        Contact& contact = contacts.emplace_back();
        contact.setOffice(number);
        contact.setFirstname(firstname);
        contact.setSurname(surname);
    }

    [[nodiscard]] bool lookUpContact(Contact& contact) override {
        const std::string number = contact.getSearchNumber();
        for (const Contact& known : contacts) {
            for (int position = 1; position <= 4 && !number.empty(); ++position) {
                if (known.getPhoneNumber(position) == number) {
                    contact = known;
                    contact.setSearchNumber(number);
                    // The journal takes kind 1 for the fourth number and kinds 2 to 4 for the first to the
                    // third.
                    contact.setMatchedKindCode(position % 4 + 1);
                    return true;
                }
            }
        }
        return false;
    }
};

}  // namespace journaltest
