#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "journalservice/ContactGetterIfc.h"
#include "journalservice/ContactGetterInvoker.h"
#include "platform/framework/Executable.h"
#include "platform/framework/Invoker.h"
#include "platform/journal-library/ClientResponse.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeFrameworkContext.h"
#include "tests/support/RecordingResponse.h"

extern "C" void* createContactGetterInvoker() noexcept;

namespace journaltest {
namespace {

class FakeContactGetter final : public Executable, public ContactGetterIfc {
public:
    void getContactList(std::vector<Contact>& contacts) override {
        contacts = throws ? throw std::runtime_error("no contacts") : known;
    }
    std::vector<Contact> known;
    bool throws = false;
};

class ContactGetter : public testing::Test {
protected:
    std::string responseTo(const std::string& message, Executable* target,
                           const std::string& protocol = "opera_text") {
        const std::unique_ptr<Invoker> invoker(static_cast<Invoker*>(createContactGetterInvoker()));
        invoker->initInvoker(&framework);
        RecordingResponse response("client-7", protocol);
        invoker->handleMessage(target, message.data(), static_cast<int>(message.size()), &response);
        EXPECT_EQ(response.completions(), 1);
        return response.payload();
    }
    std::string list() { return responseTo(kRequest, &getter); }

    const std::string kRequest = "request getContactList client-7";
    FakeFrameworkContext framework;
    FakeContactGetter getter;
};

TEST_F(ContactGetter, WritesEveryFieldInItsPlaceAlsoWhenItIsEmpty) {
    EXPECT_EQ(list(), "");
    Contact contact;
    contact.setUniqueId("5");
    contact.setSurname("Miller & Sons");
    contact.setDefaultNumber(7);
    contact.setContactSource(Contact::eOrderedContactSource::ePersonal);
    getter.known = {contact};
    EXPECT_EQ(
        list(),
        "<Entry><UniqueId>5</UniqueId><Surname>Miller &amp; Sons</Surname><Firstname></Firstname><Office>"
        "</Office><Mobile></Mobile><Private></Private><Email></Email><Group></Group><DefaultNumber>0"
        "</DefaultNumber><Company></Company><Office2></Office2><Address></Address><Address2></Address2>"
        "<JobFunction></JobFunction><Picture></Picture><VoiceDial></VoiceDial><ExternalId></ExternalId>"
        "<ContactSource>personal</ContactSource><CallRecords></CallRecords></Entry>");
}

TEST_F(ContactGetter, SendsTheFirstTwoHundredUnchanged) {
    for (int number = 0; number < 250; ++number) {
        Contact& contact = getter.known.emplace_back();
        contact.setUniqueId(std::to_string(number));
        contact.setSurname("\xff<\r\n");
        contact.setOffice2("4");
        contact.setVoiceDial("dial");
        contact.setDefaultNumber(number % 5);
        contact.setCallRecords({{"e1", "missed"}, {"e<2", "dialled"}});
    }
    std::vector<Contact> read;
    ASSERT_TRUE(journalxml::parseContactList(list(), read));
    EXPECT_TRUE(read == std::vector<Contact>(getter.known.begin(), getter.known.begin() + 200));
}

TEST_F(ContactGetter, SendsFailForEverythingElse) {
    Executable somethingElse;
    EXPECT_EQ(responseTo(kRequest, &somethingElse), "fail");
    EXPECT_EQ(responseTo(kRequest, nullptr), "fail");
    EXPECT_EQ(CapturedLog::count("Contact getter interface is NULL"), 2);
    EXPECT_EQ(responseTo(kRequest, &getter, "telepathy"), "fail");
    EXPECT_TRUE(CapturedLog::contains("handleMessage[" + kRequest + "] no pa found for 'telepathy'\n"));
    for (const char* message : {"", "\xff", "request getContactLists c", "<r><Method>2</Method></r>"}) {
        EXPECT_EQ(responseTo(message, &getter), "fail") << message;
    }
    getter.throws = true;
    EXPECT_EQ(responseTo(kRequest, &getter), "fail");
    ContactGetterInvoker().handleMessage(&getter, "x", 1, nullptr);
    EXPECT_TRUE(CapturedLog::contains("Invoker response is NULL"));
}

}  // namespace
}  // namespace journaltest
