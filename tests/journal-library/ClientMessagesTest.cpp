#include <set>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ClientAnswer.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "tests/journal-library/RandomItems.h"

namespace {

using journalxml::MethodId;

TEST(MethodId, HasANameForEachNumberAndBack) {
    const std::set<int> unserved{3, 6, 29, 30, 31, 32, 33, 34, 35, 39};
    for (int id = -1; id <= 43; ++id) {
        const auto method = journalxml::methodOf(id);
        ASSERT_EQ(method.has_value(), id >= 0 && id <= 41 && !unserved.contains(id)) << id;
        if (method) {
            EXPECT_EQ(static_cast<int>(*method), id);
            EXPECT_EQ(journalxml::methodNamed(journalxml::nameOf(*method)), method) << id;
        }
    }
    EXPECT_FALSE(journalxml::methodNamed(""));
    EXPECT_FALSE(journalxml::methodNamed("deleteEverything"));
}

TEST(ClientRequest, CarriesMethodIdsValueAndFlag) {
    std::string request = journalxml::buildRequest(MethodId::eDeleteCalls, {"a", "b"}, std::nullopt, true);
    EXPECT_EQ(JournalServiceHelper::getMethodFromXMLMsg(request), 36);
    bool flag = false;
    EXPECT_TRUE(JournalServiceHelper::getXMLValue(
        request, JournalServiceHelper::SENDDELETEMISSEDCALLREQUEST_XML, flag));
    EXPECT_TRUE(flag);
    std::string value;
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(request, JournalServiceHelper::VALUE, value));
    std::set<std::string> ids;
    while (
        JournalServiceHelper::getAndRemoveXMLValue(request, CallListDatabaseAdapterHelper::ENTRYID, value)) {
        ids.insert(value);
    }
    EXPECT_EQ(ids, (std::set<std::string>{"a", "b"}));
}

TEST(ClientRequest, LeavesOutTheArgumentsThatAreNotGiven) {
    EXPECT_EQ(
        journalxml::buildRequest(MethodId::eGetMissedCallList),
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><JournalRequest><Method>2</Method></JournalRequest>");
    EXPECT_EQ(journalxml::buildRequest(MethodId::eSetJournalServiceCallLogEventsDisabling, {}, "true"),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><JournalRequest><Method>38</Method>"
              "<Value>true</Value></JournalRequest>");
}

TEST(ClientAnswer, TellsYesFromNoFromFailure) {
    EXPECT_EQ(journalxml::parseBoolAnswer(JournalServiceHelper::respBool(true)), true);
    EXPECT_EQ(journalxml::parseBoolAnswer(JournalServiceHelper::respBool(false)), false);
    EXPECT_EQ(journalxml::parseBoolAnswer(JournalServiceHelper::FAILURE), std::nullopt);
    EXPECT_EQ(journalxml::parseBoolAnswer(JournalServiceHelper::respGetMissedCall({})), std::nullopt);
    EXPECT_TRUE(journalxml::isFailure("failure"));
    EXPECT_FALSE(journalxml::isFailure(""));
    EXPECT_FALSE(journalxml::isFailure(JournalServiceHelper::respBool(false)));
}

std::string field(const std::string& name, const std::string& value) {
    return "<" + name + ">" + ClientUtils::escapeXMLString(value) + "</" + name + ">";
}

RC_GTEST_PROP(ContactList, IsReadBackFromItsEntries, ()) {
    const auto written = journaltest::some<Contact>();
    std::string entry =
        field("UniqueId", written.getUniqueId()) + field("Surname", written.getSurname()) +
        field("Firstname", written.getFirstname()) + field("Office", written.getOffice()) +
        field("Mobile", written.getMobile()) + field("Private", written.getPrivate()) +
        field("Email", written.getEmail()) + field("Group", written.getGroup()) +
        field("DefaultNumber", std::to_string(written.getDefaultNumber())) +
        field("Company", written.getCompany()) + field("Office2", written.getOffice2()) +
        field("Address", written.getAddress()) + field("Address2", written.getAddress2()) +
        field("JobFunction", written.getJobFunction()) + field("Picture", written.getPicture()) +
        field("VoiceDial", written.getVoiceDial()) + field("ExternalId", written.getExternalId()) +
        field("ContactSource",
              CallListDatabaseAdapterHelper::getOrderedContactSourceToString(written.getContactSource()));
    std::string records;
    for (const auto& record : written.getCallRecords()) {
        records +=
            "<CallRecord>" + field("UniqueId", record.entryId) + field("Type", record.type) + "</CallRecord>";
    }
    entry = "<Entry>" + entry + "<CallRecords>" + records + "</CallRecords></Entry>";

    std::vector<Contact> read;
    RC_ASSERT(journalxml::parseContactList(entry + entry, read));
    RC_ASSERT(read.size() == 2U);
    // A look-up's own two fields are no part of the list.
    Contact expected = written;
    expected.setSearchNumber("");
    expected.setMatchedKind(0);
    RC_ASSERT(read.front() == expected);
}

TEST(ContactList, IsEmptyOrRefusedAsAWhole) {
    std::vector<Contact> contacts;
    EXPECT_TRUE(journalxml::parseContactList("", contacts));
    EXPECT_TRUE(contacts.empty());
    EXPECT_FALSE(journalxml::parseContactList("<Entry/></ContactList><ContactList>", contacts));
    EXPECT_FALSE(journalxml::parseContactList("<Entry/><Entry>", contacts));
    EXPECT_TRUE(contacts.empty());
}

}  // namespace
