#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/digits/DigitAnalysis.h"
#include "host/directory/Phonebook.h"
#include "tests/host-data/TemporaryDatabase.h"

namespace journaltest {

/// The phonebook of line "2001" with the host's own dialling rules.
class PhonebookFixture : public testing::Test {
protected:
    static Contact named(const std::string& surname, const std::string& office = {}) {
        Contact contact;
        contact.setSurname(surname);
        contact.setOffice(office);
        return contact;
    }
    /// Stores the contact; answers its unique id.
    std::string knows(const Contact& contact) { return m_phonebook.add(contact).value_or("failed"); }
    /// Looks a number up; the contact that was asked with comes back either way.
    Contact lookedUp(const std::string& number) {
        Contact contact;
        contact.setSearchNumber(number);
        m_found = m_phonebook.lookUpContact(contact);
        return contact;
    }
    /// The surname of who has the number; empty for nobody.
    std::string whoHas(const std::string& number) { return lookedUp(number).getSurname(); }

    TemporaryDatabase m_database;
    host::DigitAnalysis m_digits{"DE", {}};
    host::Phonebook m_phonebook{*m_database, m_digits, "2001"};
    bool m_found = false;
};

}  // namespace journaltest
