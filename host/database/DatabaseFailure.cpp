#include "host/database/DatabaseFailure.h"

#include <sqlite3.h>

#include <SQLiteCpp/Exception.h>

#include <filesystem>
#include <new>

#include "host/database/DatabaseError.h"

namespace host {

bool DatabaseFailure::isOfDatabase() const noexcept {
    switch (code) {
        case 0:
        case SQLITE_CONSTRAINT:
        case SQLITE_MISMATCH:
        case SQLITE_MISUSE:
        case SQLITE_RANGE:
        case SQLITE_TOOBIG: return false;
        default: return true;
    }
}

bool DatabaseFailure::mayBeOfOneWork() const noexcept {
    switch (code) {
        case SQLITE_BUSY:
        case SQLITE_FULL:
        case SQLITE_LOCKED:
        case SQLITE_NOMEM:
        case SQLITE_READONLY: return false;
        default: return true;
    }
}

std::optional<DatabaseFailure> DatabaseFailure::of(const std::function<void()>& work) noexcept {
    constexpr int kPrimary = 0xff;
    try {
        work();
        return std::nullopt;
    } catch (const SQLite::Exception& error) {
        return DatabaseFailure{error.getErrorCode() & kPrimary, error.what()};
    } catch (const std::bad_alloc& error) {
        return DatabaseFailure{SQLITE_NOMEM, error.what()};
    } catch (const std::filesystem::filesystem_error& error) {
        return DatabaseFailure{SQLITE_CANTOPEN, error.what()};
    } catch (const DatabaseError& error) {
        return DatabaseFailure{SQLITE_CANTOPEN, error.what()};
    } catch (const std::exception& error) {
        return DatabaseFailure{0, error.what()};
    } catch (...) {
        return DatabaseFailure{};
    }
}

}  // namespace host
