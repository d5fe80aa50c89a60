#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/data/SqliteDataAccess.h"
#include "tests/host-data/Lists.h"
#include "tests/host-data/TemporaryDatabase.h"

namespace journaltest {

/// A database with the data access of line "2001", and the journal that speaks to it.
class DataAccessFixture : public testing::Test {
protected:
    /// Ends everything and starts it again, as the program does.
    void restart() {
        m_access.reset();
        m_database.reopen();
        m_access = std::make_unique<host::SqliteDataAccess>(*m_database, "2001");
    }

    [[nodiscard]] Client journal() { return Client(*m_access); }
    [[nodiscard]] Client journalOf(host::SqliteDataAccess& access) { return Client(access); }

    TemporaryDatabase m_database;
    std::unique_ptr<host::SqliteDataAccess> m_access =
        std::make_unique<host::SqliteDataAccess>(*m_database, "2001");
};

}  // namespace journaltest
