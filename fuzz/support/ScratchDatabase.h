#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "fuzz/support/Property.h"
#include "host/database/Database.h"
#include "tests/support/TemporaryDirectory.h"

namespace fuzz {

/// A database with the same content at the begin of each input, in a directory of its own. One thread.
class ScratchDatabase {
public:
    /// `fill` writes the content.
    explicit ScratchDatabase(const std::function<void(host::Database&)>& fill) {
        host::Database database(m_content);
        fill(database);
        database.truncateLog();
    }

    /// Copies the content. The database before is gone.
    host::Database& renew() {
        m_database.reset();
        for (const char* const end : {"", "-wal", "-shm"}) {
            std::filesystem::remove(m_file.string() + end);
        }
        std::filesystem::copy_file(m_content, m_file);
        m_database = std::make_unique<host::Database>(m_file);
        m_isChanged = false;
        m_database->setWriteListener([this](auto /*duration*/, auto /*calls*/) { m_isChanged = true; });
        return *m_database;
    }

    /// True from the first write after `renew`.
    [[nodiscard]] bool isChanged() const noexcept { return m_isChanged; }

private:
    const TemporaryDirectory m_directory;
    const std::filesystem::path m_content = m_directory.path() / "content.db";
    const std::filesystem::path m_file = m_directory.path() / "journal.db";
    std::unique_ptr<host::Database> m_database;
    bool m_isChanged = false;
};

}  // namespace fuzz
