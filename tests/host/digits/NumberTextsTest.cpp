#include "host/digits/NumberTexts.h"

#include <gtest/gtest.h>

#include <string>

#include "host/digits/DigitAnalysis.h"
#include "tests/support/Table.h"

namespace {

TEST(NumberTexts, WritesNumbersAsPeopleDoAndNamesTheirPlaces) {
    for (const auto& row : journaltest::table(5, R"(
        DE | +4930123456     | 030 123456       | Berlin              | Berlin
        DE | 030 / 12-34-56  | 030 123456       | Berlin              | Berlin
        DE | +498912345678   | 089 12345678     | Munich              | München
        DE | +4915123456789  | 01512 3456789    |                     |
        DE | +12125550100    | +1 212-555-0100  | New York, NY, United States | New York, NY, Vereinigte Staaten
        US | +12125550100    | (212) 555-0100   | New York, NY        | New York, NY
        DE | +436641234567   | +43 664 1234567  | Austria             | Österreich
        XX | +4930123456     | +49 30 123456    | Berlin, Germany     | Berlin, Deutschland
        DE | 4711            | 4711             |                     |
        DE | 110             | 110              |                     |
        DE | *61030123456    | *61030123456     |                     |
        DE | bob@example.com | bob@example.com  |                     |
        DE | +9994711        | +9994711         |                     |
        DE |                 |                  |                     |
        )")) {
        host::DigitAnalysis digits(row[0], {"*61"});
        host::NumberTexts texts(row[0], digits);
        for (int each = 0; each < 2; ++each) {  // found, then known
            EXPECT_EQ(texts.text(row[1]), row[2]) << row[0];
            EXPECT_EQ(texts.place(row[1], host::PlaceLanguage::eEnglish).value_or(""), row[3]) << row[1];
            EXPECT_EQ(texts.place(row[1], host::PlaceLanguage::eGerman).value_or(""), row[4]) << row[1];
        }
    }
}

}  // namespace
