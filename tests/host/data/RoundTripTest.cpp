#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/host/data/DataAccessFixture.h"
#include "tests/support/RandomItems.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

template <typename Item>
class RoundTrip : public testing::Test {
protected:
    /// Each item replaces the row of the one before, of which no field may be left.
    void check(Item item) {
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            m_fixture.plays("empty callback");
            m_fixture.write<Item>({item});
        } else {
            item.setUniqueId(m_uniqueId);
            m_uniqueId = JournalServiceHelper::parseLastUniqueId(m_fixture.write<Item>({item}));
            item.setUniqueId(m_uniqueId);
        }
        const auto read = m_fixture.read<Item>();
        RC_ASSERT(read.size() == 1U);
        RC_ASSERT(read.front().sameContent(item));
    }

private:
    journaltest::TemporaryDatabase m_database;
    journaltest::DataAccessFixture m_fixture{*m_database};
    std::string m_uniqueId;
};

using Items =
    testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;
TYPED_TEST_SUITE(RoundTrip, Items);

TYPED_TEST(RoundTrip, ReturnsAnItemEqualForAnyBytes) {
    EXPECT_TRUE(rc::check([this] { this->check(journaltest::some<TypeParam>()); }));
}

}  // namespace
