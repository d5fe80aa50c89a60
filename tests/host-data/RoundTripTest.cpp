#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <type_traits>

#include "host/data/SqliteDataAccess.h"
#include "tests/host-data/Lists.h"
#include "tests/host-data/TemporaryDatabase.h"
#include "tests/journal-library/RandomItems.h"

namespace {

using journaltest::Client;
using journaltest::some;

/// Items with anything in their fields are written and read again, all fields compared.
template <typename Item>
class RoundTrip : public testing::Test {
protected:
    /// Each item takes the row of the one before, so that nothing of that may be left.
    void check(Item item) {
        Client journal(m_access);
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            journal.removeAll<Item>();
            journal.writeOne(item);
        } else {
            item.setUniqueId(m_uniqueId);
            journal.file(item);
            m_uniqueId = item.getUniqueId();
        }
        const auto read = journal.template read<Item>();
        RC_ASSERT(read.size() == 1U);
        RC_ASSERT(read.front().sameContent(item));
    }

private:
    journaltest::TemporaryDatabase m_database;
    host::SqliteDataAccess m_access{*m_database, "2001"};
    std::string m_uniqueId;
};

using Items =
    testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem, CallBackItem>;
TYPED_TEST_SUITE(RoundTrip, Items);

TYPED_TEST(RoundTrip, GivesAnItemBackEqualWhateverBytesItHolds) {
    EXPECT_TRUE(rc::check([this] { this->check(some<TypeParam>()); }));
}

}  // namespace
