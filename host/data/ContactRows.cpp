#include "host/data/ContactRows.h"

#include "host/data/RowId.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

constexpr int kNumbers = 4;

constexpr const char* kInsert = R"sql(
INSERT INTO contact (surname, first_name, office, mobile, private, office2, default_number, email, group_name, company,
    address, address2, job_function, picture, voice_dial, external_id, source, line)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?,  ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

constexpr const char* kUpdate = R"sql(
UPDATE contact SET surname = ?, first_name = ?, office = ?, mobile = ?, private = ?, office2 = ?, default_number = ?,
    email = ?, group_name = ?, company = ?, address = ?, address2 = ?, job_function = ?, picture = ?, voice_dial = ?,
    external_id = ?, source = ?
WHERE line = ? AND id = ?
)sql";

constexpr const char* kFind = R"sql(
SELECT id, surname, first_name, office, mobile, private, office2, default_number, email, group_name, company,
    address, address2, job_function, picture, voice_dial, external_id, source
FROM contact WHERE line = ? AND id = ?
)sql";

constexpr const char* kList = R"sql(
SELECT id, surname, first_name, office, mobile, private, office2, default_number, email, group_name, company,
    address, address2, job_function, picture, voice_dial, external_id, source
FROM contact WHERE line = ? ORDER BY surname COLLATE NOCASE, first_name COLLATE NOCASE, id LIMIT ? OFFSET ?
)sql";

void bindFields(Query& query, const Contact& contact) {
    query.bind(contact.getSurname())
        .bind(contact.getFirstname())
        .bind(contact.getOffice())
        .bind(contact.getMobile());
    query.bind(contact.getPrivate()).bind(contact.getOffice2()).bind(contact.getDefaultNumber());
    query.bind(contact.getEmail()).bind(contact.getGroup()).bind(contact.getCompany());
    query.bind(contact.getAddress()).bind(contact.getAddress2()).bind(contact.getJobFunction());
    query.bind(contact.getPicture()).bind(contact.getVoiceDial()).bind(contact.getExternalId());
    query.bind(static_cast<std::int32_t>(contact.getContactSource()));
}

}  // namespace

// A contact of unknown source (0) comes behind all others.
const char* const ContactRows::kLookUpSql = R"sql(
SELECT contact.id, contact_number.position FROM contact_number JOIN contact ON contact.id = contact_number.contact
WHERE contact_number.line = ? AND contact_number.number = ?
ORDER BY contact.source = 0, contact.source, contact.id, contact_number.position LIMIT 1
)sql";

std::int64_t ContactRows::insert(const Contact& contact) {
    Query query = m_session.query(kInsert);
    bindFields(query, contact);
    query.bind(m_line).run();
    const std::int64_t id = m_session.lastInsertedId();
    index(id, contact);
    return id;
}

bool ContactRows::update(std::int64_t id, const Contact& contact) {
    Query query = m_session.query(kUpdate);
    bindFields(query, contact);
    if (query.bind(m_line).bind(id).run() == 0) {
        return false;
    }
    index(id, contact);
    return true;
}

bool ContactRows::remove(std::int64_t id) {
    return m_session.query("DELETE FROM contact WHERE line = ? AND id = ?").bind(m_line).bind(id).run() > 0;
}

std::optional<ContactRows::Match> ContactRows::lookUp(const std::string& number) {
    Query query = m_session.query(kLookUpSql);
    if (!query.bind(m_line).bind(number).next()) {
        return std::nullopt;
    }
    Match match;
    match.id = query.number();
    match.position = query.smallNumber();
    return match;
}

std::optional<Contact> ContactRows::find(std::int64_t id) {
    Query query = m_session.query(kFind);
    return query.bind(m_line).bind(id).next() ? std::optional(contactFrom(query)) : std::nullopt;
}

std::vector<Contact> ContactRows::list(std::int64_t offset, std::int64_t limit) {
    Query query = m_session.query(kList);
    query.bind(m_line).bind(limit).bind(offset);
    std::vector<Contact> contacts;
    while (query.next()) {
        contacts.push_back(contactFrom(query));
    }
    return contacts;
}

std::int64_t ContactRows::count() {
    Query query = m_session.query("SELECT count(*) FROM contact WHERE line = ?");
    return query.bind(m_line).next() ? query.number() : 0;
}

void ContactRows::reindex() {
    for (const Contact& contact : list(0, count())) {
        index(rowIdOf(contact.getUniqueId()).value_or(0), contact);
    }
}

std::string ContactRows::indexed(std::string number) const {
    if (m_digits != nullptr) {
        m_digits->normalise(number);
    }
    return number;
}

void ContactRows::index(std::int64_t id, const Contact& contact) {
    m_session.query("DELETE FROM contact_number WHERE contact = ?").bind(id).run();
    Query query =
        m_session.query("INSERT INTO contact_number (line, number, contact, position) VALUES (?, ?, ?, ?)");
    for (int position = 1; position <= kNumbers; ++position) {
        const std::string& number = contact.getPhoneNumber(position);
        if (!number.empty()) {
            query.again().bind(m_line).bind(indexed(number)).bind(id).bind(position).run();
        }
    }
}

Contact ContactRows::contactFrom(Query& row) {
    Contact contact;
    contact.setUniqueId(uniqueIdOf(row.number()));
    contact.setSurname(row.text());
    contact.setFirstname(row.text());
    contact.setOffice(row.text());
    contact.setMobile(row.text());
    contact.setPrivate(row.text());
    contact.setOffice2(row.text());
    contact.setDefaultNumber(row.smallNumber());
    contact.setEmail(row.text());
    contact.setGroup(row.text());
    contact.setCompany(row.text());
    contact.setAddress(row.text());
    contact.setAddress2(row.text());
    contact.setJobFunction(row.text());
    contact.setPicture(row.text());
    contact.setVoiceDial(row.text());
    contact.setExternalId(row.text());
    contact.setContactSource(static_cast<Contact::eOrderedContactSource>(row.smallNumber()));
    return contact;
}

}  // namespace host
