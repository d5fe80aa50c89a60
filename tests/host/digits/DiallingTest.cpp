#include "host/digits/Dialling.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Table.h"

namespace {

using host::DialForm;
using host::Dialling;

TEST(Dialling, DialsAsTheNumberingPlanAndTheSwitchWant) {
    // region, outside line, form, what a person writes, what is dialled ("-": refused; "!": an emergency)
    for (const auto& row : journaltest::table(5, R"(
        DE |   | national | +49 (0)30 123456; 030 / 12 34 56; tel:+4930123456 | 030123456
        DE | 0 | national | +4930123456                                   | 0030123456
        DE | 0 | national | +44 20 7946 0000; 0044 20 79460000            | 000442079460000
        DE |   | e164     | 030 123456                                    | +4930123456
        DE | 0 | e164     | 030 123456                                    | +4930123456
        US |   | national | (202) 555-0100                                | 12025550100
        DE | 0 | national | 47-11                                         | 4711
        DE | 0 | national | *61 030 123456                                | *61030123456
        DE | 0 | national | 1234567                                       | 1234567
        XX |   | national | +4930123456                                   | +4930123456
        DE | 0 | national | sip:ann@example.org                           | sip:ann@example.org
        DE | 0 | national | ann@example.org:5070                          | sip:ann@example.org:5070
        DE | 0 | national | SIPS:030-1@example.org                        | SIPS:030-1@example.org
        DE | 0 | national | 112; 1-1-2; tel:112                           | !112
        DE | 0 | national | 110                                           | !110
        DE | 0 | national | 0112                                          | !0112
        DE |   | national | 0112; 0-112                                   | !0112
        DE |   | national | +112                                          | !+112
        DE |   | national | 00112                                         | !00112
        DE |   | national | 1120                                          | 1120
        DE | 0 | national | *61112                                        | !*61112
        DE | 9 | national | *31#9112                                      | !*31#9112
        DE | 0 | national | #31#112                                       | !#31#112
        DE | 0 | national | *61*31#0112                                   | !*61*31#0112
        US |   | national | *67 911                                       | !*67911
        DE | 0 | national | *31#030112                                    | *31#030112
        DE | 0 | national | sip:112@example.org; 112@example.org          | !sip:112@example.org
        DE | 0 | national | 911; tel:911                                  | !911
        DE | 0 | national | *31#0911                                      | !*31#0911
        DE | 0 | national | sip:911@example.org                           | !sip:911@example.org
        XX |   | national | 911                                           | !911
        US |   | national | 911                                           | !911
        DE | 0 | national | ann; ann@; @c; sip:; sip:a b@c; tel:; +; 4711x | -
        DE | 0 | national | sip:ann@h:99999; ann@h:0; sip:h:x; sip:ann@[::1]:65536 | -
        DE | 0 | national | sip:ann@[::1]:65535                           | sip:ann@[::1]:65535
        )")) {
        const Dialling dialling({.region = row[0],
                                 .featureAccessCodes = {"*61"},
                                 .outsideLine = row[1],
                                 .form = row[2] == "e164" ? DialForm::eInternational : DialForm::eNational});
        for (const std::string& written : journaltest::split(row[3], ';')) {
            const auto target = dialling.target(written);
            const std::string result = target ? (target->isEmergency ? "!" : "") + target->text : "-";
            EXPECT_EQ(result, row[4]) << written << " in " << row[0];
        }
    }
    EXPECT_EQ(Dialling({}).target("tel:112;phone-context=example.org")->text, "112");
    EXPECT_FALSE(Dialling({}).target(""));
    EXPECT_FALSE(Dialling({}).target(std::string(40, '1')));
}

}  // namespace
