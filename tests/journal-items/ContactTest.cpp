#include <string>

#include <gtest/gtest.h>

#include "journal-items/Contact.h"

namespace {

Contact full() {
    Contact contact;
    contact.setUniqueId("5");
    contact.setSurname("Miller");
    contact.setFirstname("Ada");
    contact.setSearchNumber("+49 4711");
    contact.setMatchedKind(4);
    contact.setOffice("1");
    contact.setMobile("2");
    contact.setPrivate("3");
    contact.setOffice2("4");
    contact.setDefaultNumber(2);
    contact.setEmail("ada@example.org");
    contact.setGroup("friends");
    contact.setCompany("Mill");
    contact.setAddress("Road 1");
    contact.setAddress2("Town");
    contact.setJobFunction("miller");
    contact.setPicture("pictures/ada.png");
    contact.setVoiceDial("ada");
    contact.setExternalId("ldap:5");
    contact.setContactSource(Contact::eOrderedContactSource::eLdap);
    contact.addCallRecord({"2026-11-21T05:22:05Z0000002A", "missed"});
    contact.addCallRecord({"2026-11-20T05:22:05Z0000002B", "dialled"});
    return contact;
}

TEST(Contact, NumbersStandAtTheirPositions) {
    const Contact contact = full();
    EXPECT_EQ(contact.getPhoneNumber(1), contact.getOffice());
    EXPECT_EQ(contact.getPhoneNumber(2), contact.getMobile());
    EXPECT_EQ(contact.getPhoneNumber(3), contact.getPrivate());
    EXPECT_EQ(contact.getPhoneNumber(4), contact.getOffice2());
    EXPECT_EQ(contact.getPhoneNumber(0), "");
    EXPECT_EQ(contact.getPhoneNumber(5), "");
}

TEST(Contact, IsReadBackFromItsLine) {
    Contact read;
    ASSERT_TRUE(Contact::deserialize(full().serialize(), read));
    EXPECT_EQ(read, full());
}

TEST(Contact, WritesOnlyWhatItHolds) {
    Contact contact;
    EXPECT_EQ(contact.serialize(), "");
    contact.setSurname("Müller");
    contact.setMobile("0170;1=2");
    EXPECT_EQ(contact.serialize(), "surname=Müller;mobile=0170\\x3b1\\x3d2;");
}

TEST(Contact, KeepsAnyBytesOnOnePrintableLine) {
    Contact contact;
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    contact.setSurname(bytes);
    contact.addCallRecord({bytes, bytes});

    const std::string line = contact.serialize();
    for (const char character : line) {
        const auto byte = static_cast<unsigned char>(character);
        EXPECT_TRUE(byte >= 0x20 && byte != 0x7f) << static_cast<int>(byte);
    }
    Contact read;
    ASSERT_TRUE(Contact::deserialize(line, read));
    EXPECT_EQ(read, contact);
}

TEST(Contact, RefusesADamagedLineAndStaysAsItWas) {
    for (const char* line : {"surname=Miller", "surname", "surname;", "surname=\\;", "surname=\\x4;",
                             "surname=\\x4g;", "surname=a\\y41;", "matchedKind=two;", "matchedKind=;",
                             "defaultNumber=99999999999;", "source=x;", "record=only-one;"}) {
        Contact contact;
        contact.setSurname("before");
        EXPECT_FALSE(Contact::deserialize(line, contact)) << line;
        EXPECT_EQ(contact.getSurname(), "before") << line;
    }
}

TEST(Contact, SkipsNamesThatItDoesNotKnow) {
    Contact contact;
    ASSERT_TRUE(Contact::deserialize("shoeSize=43;surname=Miller;", contact));
    EXPECT_EQ(contact.getSurname(), "Miller");
}

TEST(Contact, ReplacesEverythingWhenItIsRead) {
    Contact contact = full();
    ASSERT_TRUE(Contact::deserialize("", contact));
    EXPECT_EQ(contact, Contact());
}

}  // namespace
