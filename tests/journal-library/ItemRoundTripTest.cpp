#include <deque>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/ClientAnswer.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/DataAnswer.h"
#include "platform/journal-library/DataRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"
#include "tests/journal-library/RandomItems.h"
#include "tests/support/ItemTexts.h"

/// What was written is read back equal, on every road that an item takes, whatever bytes its fields hold.
namespace {

using journaltest::some;
using Helper = CallListDatabaseAdapterHelper;

template <typename Item>
class ItemRoundTrip : public ::testing::Test {
protected:
    static bool sameList(const std::deque<Item>& read, const std::deque<Item>& written) {
        return std::equal(read.begin(), read.end(), written.begin(), written.end(),
                          [](const Item& a, const Item& b) { return a.sameContent(b); });
    }
};

using Items =
    ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;
TYPED_TEST_SUITE(ItemRoundTrip, Items, );

TYPED_TEST(ItemRoundTrip, GoesThroughAWriteRequest) {
    using Road = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        const auto item = some<TypeParam>();
        const std::string request = Helper::addXMLHeaderFooter(
            Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
                Helper::createXMLElement(Helper::ENTRY, Road::kBody(item, Helper::WRITEREQUEST)),
            Road::kTable);
        RC_ASSERT(utf8::isXmlText(request));

        const auto read = journalxml::parseDataRequest(request);
        RC_ASSERT(read.has_value());
        RC_ASSERT(read->schema == std::string(Road::kTable));
        RC_ASSERT(read->items.size() == 1U);
        RC_ASSERT(std::get<TypeParam>(read->items.front()).sameContent(item));
    }));
}

TYPED_TEST(ItemRoundTrip, GoesThroughAListDocument) {
    using Road = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        std::deque<TypeParam> written;
        journalxml::ListDocument document(Road::kTable);
        for (int count = *rc::gen::inRange(0, 3); count > 0; --count) {
            written.push_back(some<TypeParam>());
            RC_ASSERT(document.add(written.back()));
        }
        RC_ASSERT(document.text().find(JournalServiceHelper::FAILURE) == std::string::npos);

        std::deque<TypeParam> read;
        RC_ASSERT(Road::kParseList(document.text(), read));
        RC_ASSERT(TestFixture::sameList(read, written));
    }));
}

TYPED_TEST(ItemRoundTrip, GoesThroughAnAnswer) {
    using Road = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        const std::deque<TypeParam> written{some<TypeParam>(), some<TypeParam>()};
        const std::string answer = Road::kListAnswer(written);

        std::deque<TypeParam> read;
        RC_ASSERT(Road::kParseList(answer, read));
        RC_ASSERT(TestFixture::sameList(read, written));
        auto first = some<TypeParam>();
        RC_ASSERT(Road::kParseItem(answer, first));
        RC_ASSERT(first.sameContent(written.front()));
    }));
}

TYPED_TEST(ItemRoundTrip, GoesThroughAnObserverMessage) {
    using Road = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        const auto item = some<TypeParam>();
        const std::string entryId = journaltest::someText();
        const int action = journaltest::someNumber();

        const auto read = journalxml::parseObserverMessage(Road::kObserver(item, entryId, action));
        RC_ASSERT(read.has_value());
        RC_ASSERT(read->entryId == entryId);
        RC_ASSERT(read->action == action);
        RC_ASSERT(std::get<TypeParam>(read->item).sameContent(item));
    }));
}

TYPED_TEST(ItemRoundTrip, NamesItsRowInADeleteRequest) {
    using Road = journaltest::ItemTexts<TypeParam>;
    EXPECT_TRUE(rc::check([] {
        auto item = some<TypeParam>();
        item.setEntryId("id" + item.getEntryId());
        const std::string request = Helper::addXMLHeaderFooter(
            Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::DELETEREQUEST) +
                Helper::createXMLElement(Helper::ENTRY, Road::kBody(item, Helper::DELETEREQUEST)),
            Road::kTable);

        const auto read = journalxml::parseDataRequest(request);
        RC_ASSERT(read.has_value());
        RC_ASSERT(read->keys.size() == 1U);
        RC_ASSERT(read->keys.front().entryId == item.getEntryId());
        if constexpr (std::is_base_of_v<CallItemWithPicture, TypeParam>) {
            RC_ASSERT(read->keys.front().uniqueId == item.getUniqueId());
        }
        RC_ASSERT(read->items.empty());
        RC_ASSERT(!read->allEntries);
    }));
}

RC_GTEST_PROP(UpdateMissedCallRequest, IsReadBack, ()) {
    const auto item = some<MissedCallItem>();
    const std::string request = journalxml::buildUpdateMissedCallRequest(item);
    MissedCallItem read;
    RC_ASSERT(JournalServiceHelper::getMethodFromXMLMsg(request) == 1);
    RC_ASSERT(JournalServiceHelper::parseXMLMissedCallItem(request, read));
    RC_ASSERT(read.sameContent(item));
}

RC_GTEST_PROP(MixedAnswer, IsReadBackIntoItsFiveContainers, ()) {
    const auto missed = some<MissedCallItem>();
    const auto dialled = some<DialledCallItem>();
    const auto received = some<ReceivedCallItem>();
    const auto forwarded = some<ForwardedCallItem>();
    const auto contact = some<Contact>();
    journalxml::ListDocument document(Helper::CONVERSATIONS_SCHEMA);
    RC_ASSERT(document.add(contact));
    RC_ASSERT(document.add(forwarded));
    RC_ASSERT(document.add(some<CallBackItem>()));
    RC_ASSERT(document.add(missed));
    RC_ASSERT(document.add(received));
    RC_ASSERT(document.add(dialled));

    std::deque<MissedCallItem> missedRead;
    std::deque<DialledCallItem> dialledRead;
    std::deque<ReceivedCallItem> receivedRead;
    std::deque<ForwardedCallItem> forwardedRead;
    std::vector<Contact> contactsRead;
    RC_ASSERT(JournalServiceHelper::parseXMLdata(document.text(), missedRead, dialledRead, receivedRead,
                                                 forwardedRead, contactsRead));
    RC_ASSERT(missedRead.size() == 1U && missedRead.front().sameContent(missed));
    RC_ASSERT(dialledRead.size() == 1U && dialledRead.front().sameContent(dialled));
    RC_ASSERT(receivedRead.size() == 1U && receivedRead.front().sameContent(received));
    RC_ASSERT(forwardedRead.size() == 1U && forwardedRead.front().sameContent(forwarded));
    RC_ASSERT(contactsRead.size() == 1U && contactsRead.front() == contact);
}

RC_GTEST_PROP(MessageField, KeepsAnyBytes, ()) {
    const std::vector<std::string> entryIds{journaltest::someText(), journaltest::someText()};
    const std::string value = journaltest::someText();
    const std::string request = journalxml::buildRequest(journalxml::MethodId::eDeleteCalls, entryIds, value);
    std::string read = "before";
    RC_ASSERT(JournalServiceHelper::getXMLValue(request, JournalServiceHelper::VALUE, read));
    RC_ASSERT(read == value);
    RC_ASSERT(JournalServiceHelper::getXMLValues(request, Helper::ENTRYID) == entryIds);
}

}  // namespace
