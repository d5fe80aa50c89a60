#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/host/data/Store.h"
#include "tests/support/RandomItems.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

template <typename Item>
class RoundTrip : public testing::Test {
protected:
    /// Each item takes the row of the one before, so that nothing of that may be left.
    void check(Item item) {
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            m_store.plays("empty callback");
            m_store.write<Item>({item});
        } else {
            item.setUniqueId(m_uniqueId);
            m_uniqueId = JournalServiceHelper::parseLastUniqueId(m_store.write<Item>({item}));
            item.setUniqueId(m_uniqueId);
        }
        const auto read = m_store.read<Item>();
        RC_ASSERT(read.size() == 1U);
        RC_ASSERT(read.front().sameContent(item));
    }

private:
    journaltest::TemporaryDatabase m_database;
    journaltest::Store m_store{*m_database};
    std::string m_uniqueId;
};

using Items =
    testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;
TYPED_TEST_SUITE(RoundTrip, Items);

TYPED_TEST(RoundTrip, GivesAnItemBackEqualWhateverBytesItHolds) {
    EXPECT_TRUE(rc::check([this] { this->check(journaltest::some<TypeParam>()); }));
}

}  // namespace
