#pragma once

namespace host {

/// The name of SQLite's file system for the connection that writes: the one that is the default now, but the
/// write-ahead log takes the pages of a transaction in one write. SQLite itself makes two system calls for
/// each page. https://www.sqlite.org/fileformat2.html#walformat has the format of the log.
///
/// The log has the same bytes in the same order as without it; they are written before SQLite counts a
/// transaction as committed, also one that is not flushed. The text lives as long as the program.
/// Thread-safe. Throws `std::bad_alloc`.
[[nodiscard]] const char* logFileSystem();

}  // namespace host
