#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "host/contact-files/ContactFormat.h"
#include "host/contact-files/ContactWriter.h"
#include "host/text-files/FileText.h"
#include "tests/support/RandomItems.h"
#include "tests/support/Table.h"

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

// Rows: the properties, with "~" for the end of a line and "^" for a tab; the fields of the contact.
TEST(VCard, IsReadIntoTheFieldsOfAContact) {
    for (const auto& row : journaltest::table(2, R"(
        N:Miller;Ada;;Dr.;                                   | surname=Miller;firstname=Ada;
        FN:Ada Miller~N:;;;;                                 | surname=Ada Miller;
        ORG:Acme\, Inc.;Sales                                | surname=Acme, Inc.;company=Acme, Inc.;
        item1.n;charset=utf-8:Mü~ ller;Ad~^a                 | surname=Müller;firstname=Ada;
        N:M~TEL;TYPE=cell:1~TEL;TYPE=home:2~TEL;TYPE=work:3~TEL;TYPE=WORK:4
          +                                                  | surname=M;office=3;mobile=1;private=2;office2=4;
        N:M~TEL:1~TEL;CELL:2~TEL;TYPE="voice,work":3         | surname=M;office=3;mobile=2;office2=1;
        N:M~TEL;TYPE=home,pref:2~TEL;TYPE=work:3             | surname=M;office=3;private=2;defaultNumber=3;
        N:M~TEL;TYPE=home;PREF=2:2~TEL;TYPE=work;PREF=1:3    | surname=M;office=3;private=2;defaultNumber=1;
        N:M~TEL;VALUE=uri;TYPE=work:tel:+49-30-1234;ext=5    | surname=M;office=+49-30-1234;
        N:M~TEL;VALUE=uri:tel:7042;phone-context=+49-30      | surname=M;office=+49-307042;
        N:M~EMAIL:a@x~EMAIL;PREF=1:b@x                       | surname=M;email=b@x;
        N:M~ADR:;;Street 1;Town;;12345;DE~ADR:;;B;;;;~ADR:;;C;;;;
          +                                       | surname=M;address=Street 1, 12345 Town, DE;address2=B;
        N:M~CATEGORIES:a,b\,c~ROLE:r~TITLE:t                 | surname=M;group=a, b,c;jobFunction=t;
        N:M~UID:urn:uuid:7~PHOTO:https://x/y.png             | surname=M;picture=https://x/y.png;externalId=7;
        N:M~PHOTO:data:image/png;base64,AA~PHOTO;ENCODING=b:AA~NOTE:x | surname=M;
    )")) {
        std::string properties;
        for (const char letter : row[0]) {
            properties += letter == '~' ? "\r\n" : letter == '^' ? "\t" : std::string(1, letter);
        }
        Contact expected;
        ASSERT_TRUE(Contact::deserialize(row[1], expected));
        const auto records = recordsOf(ContactFormat::eVCard, card(properties));
        ASSERT_TRUE(records.size() == 1U && records.front().refusal.empty());
        EXPECT_EQ(records.front().contact, expected) << records.front().contact.serialize();
    }
}

TEST(VCard, IsSkippedWithLineAndReasonAndAffectsNoOther) {
    const std::pair<std::string, std::string> cases[] = {
        {card("TEL:1"), "it has no name"},
        {card("N:M", "2.1"), "it is vCard 2.1; save it as vCard 3.0 or 4.0"},
        {card("N;ENCODING=QUOTED-PRINTABLE:M=C3=BC", "3.0"),
         "its N is quoted-printable, which belongs to vCard 2.1"},
        {card("N:M\xfcller"), "its N is not UTF-8"},
        {"BEGIN:VCARD\r\nVERSION:3.0\r\nN:M\r\n", "it has no END:VCARD"},
        {card("N:" + std::string(1025, 'x')), "its surname is longer than 1024 bytes"},
        {card("N:M\r\nTEL:" + std::string(257, '1')), "its office is longer than 256 bytes"},
        {"<html>\r\n\r\n", "what stands here belongs to no card"},
    };
    for (const auto& [bad, reason] : cases) {
        const auto records = recordsOf(ContactFormat::eVCard, card("N:Good") + bad + card("N:Good"));
        ASSERT_EQ(records.size(), 3U) << bad;
        EXPECT_EQ(std::to_string(records[1].line) + records[1].refusal, "5" + reason);
        EXPECT_EQ(records[2].refusal + records[2].contact.getSurname(), "Good");
    }
}

TEST(VCard, ReportsTheNumbersThatAreLeftOut) {
    const std::string numbers = "\r\nTEL:1\r\nTEL:2\r\nTEL:3\r\nTEL:4\r\nTEL:5\r\nTEL;TYPE=\"work,fax\":6";
    EXPECT_THAT(recordsOf(ContactFormat::eVCard, card("N:M" + numbers)).at(0).remarks,
                ElementsAre(HasSubstr("fax or pager number 6"), HasSubstr("number 5")));
}

TEST(Csv, IsReadByTheNamesOfItsColumns) {
    const std::pair<const char*, const char*> cases[] = {
        {"surname,office\nMiller,4711\n\nZuse,4712", "Miller 4711|Zuse 4712|"},
        {"surname,office\rMiller,4711\r\rZuse,4712\r", "Miller 4711|Zuse 4712|"},
        {"\xEF\xBB\xBFOFFICE;Surname;shoe size\r\n 4711 ;\"Mil;ler\";9\r\n", "Mil;ler 4711|"},
        {"surname\toffice\n\"Mil\n\"\"ler\"\"\"\t1\n", "Mil\n\"ler\" 1|"},
        {"surname,source\nMiller\n,\nZuse,none\n",
         "Miller |3: it has no name|4: its source has a value that is unknown: none|"},
        {"surname,office\n'=1+1,'+49 30\n''tis,=2\n't Hooft,'\n'\uFF1D1,\n",
         "=1+1 +49 30|'tis =2|'t Hooft '|\uFF1D1 |"},
        {"surname\nM\xfcller\nA,B\n\"Zuse\n",
         "2: its surname is not UTF-8|3: it has more cells than there are columns; is a quotation mark "
         "missing?|4: a quotation mark is not closed|"},
    };
    for (const auto& [text, expected] : cases) {
        std::string contacts;
        for (const auto& record : recordsOf(ContactFormat::eCsv, text)) {
            contacts += record.refusal.empty()
                            ? record.contact.getSurname() + " " + record.contact.getOffice() + '|'
                            : std::to_string(record.line) + ": " + record.refusal + '|';
        }
        EXPECT_EQ(contacts, expected) << text;
    }
}

TEST(ContactFile, ThatIsInAnotherFormatIsRefusedAsAWhole) {
    for (const char* const text : {"name,phone\nMiller,4711\n", "", "\xff\xfes\0u\0r\0"}) {
        EXPECT_THROW(recordsOf(ContactFormat::eCsv, text), host::ContactFileError) << text;
    }
}

TEST(ContactFile, IsReadBackEqual) {
    EXPECT_TRUE(rc::check([] {
        const auto format = *rc::gen::element(ContactFormat::eVCard, ContactFormat::eCsv);
        auto contact = journaltest::some<Contact>();
        contact.setDefaultNumber(0);
        contact.setContactSource(*rc::gen::element(Contact::eOrderedContactSource::eUnknown,
                                                   Contact::eOrderedContactSource::eCompany));
        contact.setSurname("Mill;er, \"A\"\\n" + contact.getSurname());
        contact.setPicture("pictures/ada.png");
        contact.setCompany(*rc::gen::element<std::string>("", "=", "@SUM", "-", "'", "'=", "\uFF0B", "'t") +
                           contact.getCompany());
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
        RC_ASSERT(read.getCompany() == host::cleaned(contact.getCompany()));
        RC_ASSERT(read.getContactSource() == contact.getContactSource());
        RC_ASSERT(host::contactFileEntry(format, read) == host::contactFileEntry(format, contact));
    }));
}

}  // namespace
