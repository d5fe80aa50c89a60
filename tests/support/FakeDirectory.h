#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "journal-items/Contact.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A phonebook of the contacts that a test puts in; register it as "DirectoryServiceIfc". The first contact one of
/// whose four numbers equals the search number byte for byte is the one. Any thread may call.
class FakeDirectory final : public Executable, public DirectoryServiceIfc {
public:
    void add(const Contact& contact) {
        const std::lock_guard lock(m_mutex);
        m_contacts.push_back(contact);
    }
    /// A contact with an office number only.
    void add(const std::string& number, const std::string& firstname, const std::string& surname) {
        Contact contact;
        contact.setOffice(number);
        contact.setFirstname(firstname);
        contact.setSurname(surname);
        add(contact);
    }
    void clear() {
        const std::lock_guard lock(m_mutex);
        m_contacts.clear();
    }

    /// The numbers that were looked up, in order.
    [[nodiscard]] std::vector<std::string> lookUps() const {
        const std::lock_guard lock(m_mutex);
        return m_lookUps;
    }

    [[nodiscard]] bool lookUpContact(Contact& contact) override {
        const std::lock_guard lock(m_mutex);
        const std::string number = contact.getSearchNumber();
        m_lookUps.push_back(number);
        for (const Contact& known : m_contacts) {
            const int kind = number.empty() ? 0 : kindOf(known, number);
            if (kind != 0) {
                contact = known;
                contact.setSearchNumber(number);
                contact.setMatchedKind(kind);
                return true;
            }
        }
        return false;
    }

private:
    /// The journal takes kind 1 for the fourth number and kinds 2 to 4 for the first to the third.
    static int kindOf(const Contact& contact, const std::string& number) {
        for (int position = 1; position <= 4; ++position) {
            if (contact.getPhoneNumber(position) == number) {
                return position == 4 ? 1 : position + 1;
            }
        }
        return 0;
    }

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::vector<Contact> m_contacts;
    std::vector<std::string> m_lookUps;
};

}  // namespace journaltest
