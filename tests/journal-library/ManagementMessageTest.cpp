#include "platform/journal-library/ManagementMessage.h"

#include <array>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/journal-library/XmlScanner.h"

namespace {

using journalxml::ManagementAnswer;

RC_GTEST_PROP(ManagementMessage, IsReadBackAsItWasBuiltWhateverBytesItHolds,
              (const std::string& key, const std::string& value, const std::string& text, bool ofJournal,
               int code)) {
    const auto write =
        journalxml::parseManagementRequest(journalxml::buildManagementRequest({"k" + key, value}));
    RC_ASSERT(write && write->key == "k" + key && write->value == value);
    const auto read = journalxml::parseManagementRequest(journalxml::buildManagementRequest({key, {}}));
    RC_ASSERT(read && read->key == key && !read->value);

    const ManagementAnswer answer{{{key, ofJournal, value}, {text, !ofJournal, {}}},
                                  journalxml::RefusedKey{key, code, text}};
    const auto back = journalxml::parseManagementAnswer(journalxml::buildManagementAnswer(answer));
    RC_ASSERT(back && back->settings == answer.settings && back->refused == answer.refused);
}

TEST(ManagementMessage, IsNotReadWhenItAsksForNothingThatThereIs) {
    const auto asks = [](const std::string& fields, const std::string& root = "ManagementRequest") {
        return journalxml::parseManagementRequest("<" + root + ">" + fields + "</" + root + ">").has_value();
    };
    EXPECT_TRUE(asks("<Operation>read</Operation>"));
    EXPECT_TRUE(asks("<Operation>write</Operation><Key>k</Key><Value/>"));
    for (const char* const fields :
         {"", "<Operation/>", "<Operation>erase</Operation><Key>k</Key>", "<Operation>write</Operation>",
          "<Operation>write</Operation><Key>k</Key>", "<Operation>write</Operation><Value>1</Value>",
          "<Operation>read</Operation><Key>k", "<X><Operation>read</Operation></X>"}) {
        EXPECT_FALSE(asks(fields)) << fields;
    }
    EXPECT_FALSE(asks("<Operation>read</Operation>", "JournalRequest"));
    EXPECT_FALSE(asks("<Operation>read</Operation><Key>" + std::string(1024 * 1024, 'k') + "</Key>"));
    for (const char* const text : {"", "failure", "<JournalResponse/>", "<ManagementResponse>"}) {
        EXPECT_FALSE(journalxml::parseManagementAnswer(text)) << text;
    }
}

TEST(RootName, IsThatOfTheFirstElement) {
    struct Row {
        const char* text;
        const char* name;
    };
    constexpr std::array kRows{Row{"<r/>", "r"},
                               Row{"<?xml version='1.0'?>\n<!-- <a> --> <j:r\n x='/>'><b/></j:r>", "r"},
                               Row{"\xef\xbb\xbf<r>rest is not looked at", "r"},
                               Row{"", ""},
                               Row{"text", ""},
                               Row{"<r", ""},
                               Row{"</r>", ""},
                               Row{"<!DOCTYPE r><r/>", ""}};
    for (const Row& row : kRows) {
        EXPECT_EQ(journalxml::rootNameOf(row.text), row.name) << row.text;
    }
}

}  // namespace
