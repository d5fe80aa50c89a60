#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <sstream>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/ContactWriter.h"
#include "host/contact-files/FileText.h"
#include "tests/journal-library/RandomItems.h"

namespace {

using host::ContactFormat;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<host::ContactRecord> recordsOf(ContactFormat format, const std::string& text) {
    std::istringstream file(text);
    const auto reader = host::makeContactReader(file, format);
    std::vector<host::ContactRecord> records;
    while (auto record = reader->next()) {
        records.push_back(std::move(*record));
    }
    return records;
}

std::string card(const std::string& properties, const std::string& version = "4.0") {
    return "BEGIN:VCARD\r\nVERSION:" + version + "\r\n" + properties + "\r\nEND:VCARD\r\n";
}

TEST(VCard, IsReadIntoTheFieldsOfAContact) {
    const struct {
        const char* properties;
        const char* contact;
    } cases[] = {
        {"N:Miller;Ada;;Dr.;", "surname=Miller;firstname=Ada;"},
        {"FN:Ada Miller\r\nN:;;;;", "surname=Ada Miller;"},
        {"ORG:Acme\\, Inc.;Sales", "surname=Acme, Inc.;company=Acme, Inc.;"},
        {"item1.n;charset=utf-8:M\xc3\xbc\r\n ller;Ad\r\n\ta", "surname=Müller;firstname=Ada;"},
        {"N:M\r\nTEL;TYPE=cell:1\r\nTEL;TYPE=home:2\r\nTEL;TYPE=work:3\r\nTEL;TYPE=WORK:4",
         "surname=M;office=3;mobile=1;private=2;office2=4;"},
        {"N:M\r\nTEL:1\r\nTEL;CELL:2\r\nTEL;TYPE=\"voice,work\":3", "surname=M;office=3;mobile=2;office2=1;"},
        {"N:M\r\nTEL;TYPE=home,pref:2\r\nTEL;TYPE=work:3", "surname=M;office=3;private=2;defaultNumber=3;"},
        {"N:M\r\nTEL;TYPE=home;PREF=2:2\r\nTEL;TYPE=work;PREF=1:3",
         "surname=M;office=3;private=2;defaultNumber=1;"},
        {"N:M\r\nTEL;VALUE=uri;TYPE=work:tel:+49-30-1234;ext=5", "surname=M;office=+49-30-1234;"},
        {"N:M\r\nTEL;VALUE=uri:tel:7042;phone-context=+49-30", "surname=M;office=+49-307042;"},
        {"N:M\r\nEMAIL:a@x\r\nEMAIL;PREF=1:b@x", "surname=M;email=b@x;"},
        {"N:M\r\nADR:;;Street 1;Town;;12345;DE\r\nADR:;;B;;;;\r\nADR:;;C;;;;",
         "surname=M;address=Street 1, 12345 Town, DE;address2=B;"},
        {"N:M\r\nCATEGORIES:a,b\\,c\r\nROLE:r\r\nTITLE:t", "surname=M;group=a, b,c;jobFunction=t;"},
        {"N:M\r\nUID:urn:uuid:7\r\nPHOTO:https://x/y.png", "surname=M;picture=https://x/y.png;externalId=7;"},
        {"N:M\r\nPHOTO:data:image/png;base64,AAAA\r\nPHOTO;ENCODING=b:AAAA\r\nNOTE:x", "surname=M;"},
    };
    for (const auto& each : cases) {
        Contact expected;
        ASSERT_TRUE(Contact::deserialize(each.contact, expected));
        expected.setContactSource(Contact::eOrderedContactSource::ePersonal);
        const auto records = recordsOf(ContactFormat::eVCard, card(each.properties));
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(records.front().contact, expected) << records.front().contact.serialize();
        EXPECT_EQ(records.front().refusal, "");
    }
}

TEST(VCard, IsSkippedWithLineAndReasonAndHindersNoOther) {
    const std::string good = card("N:Good");
    const struct {
        std::string bad;
        const char* reason;
    } cases[] = {
        {card("TEL:1"), "it has no name"},
        {card("N:M", "2.1"), "it is vCard 2.1; save it as vCard 3.0 or 4.0"},
        {card("N;ENCODING=QUOTED-PRINTABLE:M=C3=BC", "3.0"),
         "its N is quoted-printable, which belongs to vCard 2.1"},
        {card("N:M\xfcller"), "its N is not UTF-8"},
        {"BEGIN:VCARD\r\nVERSION:3.0\r\nN:M\r\n", "it has no END:VCARD"},
        {"<html>\r\n\r\n", "what stands here belongs to no card"},
    };
    for (const auto& each : cases) {
        std::string text = good;
        text.append(each.bad).append(good);
        const auto records = recordsOf(ContactFormat::eVCard, text);
        ASSERT_EQ(records.size(), 3U) << each.bad;
        EXPECT_EQ(records[1].refusal, each.reason);
        EXPECT_EQ(records[1].line, 5U) << each.bad;
        EXPECT_EQ(records[2].refusal + records[2].contact.getSurname(), "Good");
    }
}

TEST(VCard, SaysWhichNumbersAreLeftOut) {
    const auto records =
        recordsOf(ContactFormat::eVCard, card("N:M\r\nTEL:1\r\nTEL:2\r\nTEL:3\r\nTEL:4\r\nTEL:5\r\nTEL;TYPE="
                                              "work,fax:6\r\nTEL;TYPE=fax,voice:7"));
    EXPECT_THAT(records.at(0).remarks, ElementsAre(HasSubstr("fax or pager number 6"), HasSubstr("number 5"),
                                                   HasSubstr("number 7")));
}

TEST(Csv, IsReadByTheNamesOfItsColumns) {
    const struct {
        const char* text;
        const char* contacts;
    } cases[] = {
        {"surname,office\nMiller,4711\n\nZuse,4712", "Miller 4711|Zuse 4712|"},
        {"\xEF\xBB\xBFOFFICE;Surname;shoe size\r\n 4711 ;\"Mil;ler\";9\r\n", "Mil;ler 4711|"},
        {"surname\toffice\n\"Mil\n\"\"ler\"\"\"\t1\n", "Mil\n\"ler\" 1|"},
        {"surname,source\nMiller\n,\nZuse,none\n",
         "Miller |3: it has no name|4: its source has a value that is "
         "unknown: none|"},
        {"surname\nM\xfcller\nA,B\n\"Zuse\n",
         "2: its surname is not UTF-8|3: it has more cells than there are "
         "columns; is a quotation mark missing?|4: a quotation mark is not "
         "closed|"},
    };
    for (const auto& each : cases) {
        std::string contacts;
        for (const auto& record : recordsOf(ContactFormat::eCsv, each.text)) {
            contacts += record.refusal.empty()
                            ? record.contact.getSurname() + " " + record.contact.getOffice()
                            : std::to_string(record.line) + ": " + record.refusal;
            contacts += '|';
        }
        EXPECT_EQ(contacts, each.contacts) << each.text;
    }
}

TEST(ContactFile, ThatIsInAnotherFormatIsRefusedAsAWhole) {
    for (const char* const text : {"name,phone\nMiller,4711\n", "", "\xff\xfes\0u\0r\0"}) {
        EXPECT_THROW(recordsOf(ContactFormat::eCsv, text), host::ContactFileError) << text;
    }
}

TEST(ContactFile, GivesBackWhatWasWrittenIntoIt) {
    EXPECT_TRUE(rc::check([] {
        const auto format = *rc::gen::element(ContactFormat::eVCard, ContactFormat::eCsv);
        Contact contact = journaltest::some<Contact>();
        contact.setDefaultNumber(0);
        contact.setContactSource(*rc::gen::element(Contact::eOrderedContactSource::eUnknown,
                                                   Contact::eOrderedContactSource::eCompany));
        contact.setSurname("Mill;er, \"A\"\\n" + contact.getSurname());
        contact.setPicture("pictures/ada.png");
        const auto records =
            recordsOf(format, host::contactFileHead(format) + host::contactFileEntry(format, contact));
        RC_ASSERT(records.size() == 1U);
        const Contact& read = records.front().contact;
        RC_ASSERT(read.getSurname() == host::cleaned(contact.getSurname()));
        RC_ASSERT(read.getAddress2().empty() ||
                  read.getAddress() + read.getAddress2() ==
                      host::cleaned(contact.getAddress()) + host::cleaned(contact.getAddress2()));
        for (int position = 1; position <= 4; ++position) {
            RC_ASSERT(read.getPhoneNumber(position) == host::cleaned(contact.getPhoneNumber(position)));
        }
        RC_ASSERT(read.getContactSource() == contact.getContactSource());
        RC_ASSERT(host::contactFileEntry(format, read) == host::contactFileEntry(format, contact));
    }));
}

}  // namespace
