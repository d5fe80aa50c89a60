#include "src/JournalService/lists/EntryIdRecord.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using journal::EntryIdRecord;

std::string idOf(const std::string& time, std::uint32_t number) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%.8X", number);
    return time + digits;
}

/// The next free id, searched for in all ids.
std::string searched(const std::vector<std::string>& ids, std::string id, const std::string& time) {
    auto number = static_cast<std::uint32_t>(std::strtoul(id.c_str() + time.size(), nullptr, 16));
    while (std::count(ids.begin(), ids.end(), id) > 0) {
        id = idOf(time, ++number);
    }
    return id;
}

std::string takenFrom(EntryIdRecord& record, const std::vector<std::string>& ids, const std::string& wanted,
                      const std::string& time) {
    if (!record.knows(time)) {
        record.begin(time);
        for (const std::string& id : ids) {
            record.add(id);
        }
        record.end(true);
    }
    return record.take(wanted);
}

// Entries come and go; few times and numbers, so that most ids are taken.
TEST(EntryIdRecord, TakesTheSameIdsAsASearchOfAllEntries) {
    EXPECT_TRUE(rc::check([] {
        EntryIdRecord record;
        // The greatest id: the record knows the greatest one of all that ever came.
        std::vector<std::string> ids{takenFrom(record, {}, idOf("b", 0xFFFFFFFFU), "b")};
        const auto steps = *rc::gen::container<std::vector<unsigned>>(60, rc::gen::arbitrary<unsigned>());
        for (const unsigned step : steps) {
            const std::string time = step % 16 == 0 ? "a" : "b";
            const std::uint32_t number = step / 16 % 8 == 0 ? 0xFFFFFFFFU : step / 16 % 8 / 6;
            if (step / 128 % 4 == 0 && !ids.empty()) {
                const auto gone = ids.begin() + static_cast<std::ptrdiff_t>(step / 512 % ids.size());
                record.release(*gone);
                ids.erase(gone);
            } else if (step / 128 % 64 == 1) {
                ids.push_back(idOf(time, number));  // loaded
                record.forget();
            } else {
                const std::string wanted = idOf(time, number);
                const std::string id = takenFrom(record, ids, wanted, time);
                RC_ASSERT(id == searched(ids, wanted, time));
                ids.push_back(id);
            }
        }
    }));
}

}  // namespace
