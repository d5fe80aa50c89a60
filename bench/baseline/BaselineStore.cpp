#include "bench/baseline/BaselineStore.h"

#include <cstring>
#include <pugixml.hpp>
#include <stdexcept>

#include "host/csta-wire/MessageWriter.h"

namespace bench {

SQLite::Database BaselineStore::opened(const std::filesystem::path& file) {
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    // As the product's database (host/database/DatabaseConnection.cpp), with the indexes that a list and a
    // history need.
    for (const char* statement :
         {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL", "PRAGMA cache_size = -8192",
          "PRAGMA secure_delete = ON",
          "CREATE TABLE entry (id INTEGER PRIMARY KEY, number TEXT, name TEXT, time TEXT)",
          "CREATE INDEX entry_number ON entry (number)",
          "CREATE TABLE call (id INTEGER PRIMARY KEY, entry INTEGER, number TEXT, time TEXT, seconds "
          "INTEGER)",
          "CREATE INDEX call_entry ON call (entry, time)", "CREATE INDEX call_time ON call (time)"}) {
        database.exec(statement);
    }
    return database;
}

BaselineStore::BaselineStore(const std::filesystem::path& file)
    : m_database(opened(file)),
      m_writeEntry(m_database, "INSERT OR REPLACE INTO entry VALUES (?, ?, ?, ?)"),
      m_writeCall(m_database, "INSERT INTO call (entry, number, time, seconds) VALUES (?, ?, ?, ?)"),
      m_deleteEntry(m_database, "DELETE FROM entry WHERE id = ?") {}

void BaselineStore::carryOut(std::string_view request) {
    pugi::xml_document document;
    if (!document.load_buffer(request.data(), request.size())) {
        throw std::runtime_error("an invalid request");
    }
    const pugi::xml_node entry = document.document_element().child("entry");
    const pugi::xml_node call = entry.child("call");
    const std::int64_t id = entry.child("id").text().as_llong();

    SQLite::Transaction transaction(m_database);
    m_writeEntry.bind(1, id);
    m_writeEntry.bindNoCopy(2, entry.child_value("number"));
    m_writeEntry.bindNoCopy(3, entry.child_value("name"));
    m_writeEntry.bindNoCopy(4, call.child_value("time"));
    m_writeEntry.exec();
    m_writeEntry.reset();
    m_writeCall.bind(1, id);
    m_writeCall.bindNoCopy(2, entry.child_value("number"));
    m_writeCall.bindNoCopy(3, call.child_value("time"));
    m_writeCall.bind(4, call.child("duration").text().as_int());
    m_writeCall.exec();
    m_writeCall.reset();
    if (const std::int64_t evicted = entry.child("evicted").text().as_llong(); evicted != 0) {
        m_deleteEntry.bind(1, evicted);
        m_deleteEntry.exec();
        m_deleteEntry.reset();
    }
    transaction.commit();
}

std::string requestFor(const BaselineEntry& entry, std::int64_t evicted) {
    host::MessageWriter writer("write", "");
    writer.open("entry");
    writer.text("id", std::to_string(entry.id)).text("number", entry.number).text("name", entry.name);
    if (evicted != 0) {
        writer.text("evicted", std::to_string(evicted));
    }
    for (const BaselineEntry::Call& call : entry.calls) {
        writer.open("call").text("time", call.time).text("duration", std::to_string(call.seconds)).close();
    }
    return writer.finish();
}

}  // namespace bench
