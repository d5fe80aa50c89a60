#include "host/data/ContactRows.h"

#include <algorithm>

#include "host/database/RowId.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

constexpr const char* kInsert = R"sql(
INSERT INTO contact (surname, first_name, office, mobile, private, office2, default_number, email,
    group_name, company, address, address2, job_function, picture, voice_dial, external_id, source, line, search)
VALUES (?1, ?2, ?, ?, ?, ?, ?, ?, ?, ?,  ?, ?, ?, ?, ?, ?, ?, ?, search_text(trim(?2 || ' ' || ?1), ''))
)sql";

constexpr const char* kUpdate = R"sql(
UPDATE contact SET surname = ?1, first_name = ?2, search = search_text(trim(?2 || ' ' || ?1), ''), office = ?, mobile = ?, private = ?, office2 = ?,
    default_number = ?, email = ?, group_name = ?, company = ?, address = ?, address2 = ?, job_function = ?, picture = ?,
    voice_dial = ?, external_id = ?, source = ?
WHERE line = ? AND id = ?
)sql";

constexpr const char* kFind = R"sql(
SELECT id, surname, first_name, office, mobile, private, office2, default_number, email, group_name, company,
    address, address2, job_function, picture, voice_dial, external_id, source
FROM contact WHERE line IN (?, '') AND id = ?
)sql";

// Two walks along the index of names that are merged; with OR it would be a sort.
constexpr const char* kList = R"sql(
SELECT id, surname, first_name, office, mobile, private, office2, default_number, email, group_name, company,
    address, address2, job_function, picture, voice_dial, external_id, source
FROM (SELECT * FROM contact WHERE line = ?1 UNION ALL SELECT * FROM contact WHERE line = '' AND ?1 <> '')
ORDER BY surname COLLATE NOCASE, first_name COLLATE NOCASE, id LIMIT ?2 OFFSET ?3
)sql";

constexpr const char* kFindExternal = R"sql(
SELECT id FROM contact WHERE line = ? AND external_id = ? AND external_id <> '' ORDER BY id LIMIT 1
)sql";

constexpr const char* kFindByNumber = R"sql(
SELECT contact.id FROM contact_number
    JOIN contact ON contact.id = contact_number.contact
WHERE contact_number.line = ? AND contact_number.number = ? AND contact.surname = ? AND contact.first_name = ?
    AND contact_number.position =
        (SELECT min(position) FROM contact_number AS any_number WHERE any_number.contact = contact.id)
    AND (? = 0 OR contact.external_id = '')
ORDER BY contact.id LIMIT 1
)sql";

// The first two comparisons find the rows in the index of names.
constexpr const char* kFindByName = R"sql(
SELECT id FROM contact
WHERE line = ?1 AND surname = ?2 COLLATE NOCASE AND first_name = ?3 COLLATE NOCASE
    AND surname = ?2 AND first_name = ?3
    AND (?4 = 0 OR external_id = '') AND NOT EXISTS (SELECT 1 FROM contact_number WHERE contact = contact.id)
ORDER BY id LIMIT 1
)sql";

// As kLookUpSql.
constexpr const char* kLookUpOwn = R"sql(
SELECT contact.id, contact_number.position FROM contact_number
    JOIN contact ON contact.id = contact_number.contact
WHERE contact_number.line = ? AND contact_number.number = ?
ORDER BY contact.source = 0, contact.source, contact.id, contact_number.position LIMIT 1
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

// An own contact comes first, one of unknown source (0) last.
const char* const ContactRows::kLookUpSql = R"sql(
SELECT contact.id, contact_number.position FROM contact_number
    JOIN contact ON contact.id = contact_number.contact
WHERE contact_number.line IN (?, '') AND contact_number.number = ?
ORDER BY contact.line = '', contact.source = 0, contact.source, contact.id, contact_number.position LIMIT 1
)sql";

std::int64_t ContactRows::insert(const Contact& contact) {
    Query query = m_session.query(kInsert);
    bindFields(query, contact);
    query.bind(m_line).run();
    const std::int64_t id = m_session.lastInsertedId();
    index(id, numbersOf(contact));
    return id;
}

bool ContactRows::update(std::int64_t id, const Contact& contact) {
    Query query = m_session.query(kUpdate);
    bindFields(query, contact);
    if (query.bind(m_line).bind(id).run() == 0) {
        return false;
    }
    index(id, numbersOf(contact));
    return true;
}

bool ContactRows::remove(std::int64_t id) {
    return m_session.query("DELETE FROM contact WHERE line = ? AND id = ?").bind(m_line).bind(id).run() > 0;
}

std::optional<ContactRows::Match> ContactRows::lookUp(const std::string& number) {
    Query query = m_session.query(kLookUpSql);
    return matchOf(query.bind(m_line).bind(number));
}

std::optional<ContactRows::Match> ContactRows::lookUpOwn(const std::string& number) {
    Query query = m_session.query(kLookUpOwn);
    return matchOf(query.bind(m_line).bind(number));
}

std::optional<ContactRows::Match> ContactRows::matchOf(Query& query) {
    if (!query.next()) {
        return std::nullopt;
    }
    Match match;
    match.id = query.number();
    match.position = query.smallNumber();
    return match;
}

bool ContactRows::isShared(std::int64_t id) {
    return m_session.query("SELECT 1 FROM contact WHERE line = '' AND id = ?").bind(id).next();
}

std::optional<Contact> ContactRows::find(std::int64_t id) {
    Query query = m_session.query(kFind);
    return query.bind(m_line).bind(id).next() ? std::optional(contactFrom(query)) : std::nullopt;
}

std::vector<std::string> ContactRows::allNumbers() {
    Query query = m_session.query("SELECT number FROM contact_number WHERE line = ?");
    query.bind(m_line);
    std::vector<std::string> numbers;
    while (query.next()) {
        numbers.push_back(query.text());
    }
    return numbers;
}

std::optional<Contact> ContactRows::findExternal(const std::string& externalId) {
    Query query = m_session.query(kFindExternal);
    return contactNamedBy(query.bind(m_line).bind(externalId));
}

std::optional<Contact> ContactRows::findAlike(const Contact& contact, bool ownOnly) {
    const Numbers numbers = numbersOf(contact);
    const auto first = std::find_if(numbers.begin(), numbers.end(),
                                    [](const std::string& number) { return !number.empty(); });
    Query query = m_session.query(first == numbers.end() ? kFindByName : kFindByNumber);
    query.bind(m_line);
    if (first != numbers.end()) {
        query.bind(indexed(*first));
    }
    return contactNamedBy(query.bind(contact.getSurname()).bind(contact.getFirstname()).bind(ownOnly));
}

std::optional<Contact> ContactRows::contactNamedBy(Query& query) {
    return query.next() ? find(query.number()) : std::nullopt;
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
    Query query = m_session.query("SELECT count(*) FROM contact WHERE line IN (?, '')");
    return query.bind(m_line).next() ? query.number() : 0;
}

std::string ContactRows::indexRules() {
    Query query = m_session.query("SELECT rules FROM contact_number_rules WHERE line = ?");
    return query.bind(m_line).next() ? query.text() : std::string();
}

void ContactRows::reindex(const std::string& rules) {
    m_session.query("DELETE FROM contact_number WHERE line = ?").bind(m_line).run();
    Query query = m_session.query("SELECT id, office, mobile, private, office2 FROM contact WHERE line = ?");
    query.bind(m_line);
    while (query.next()) {
        const std::int64_t id = query.number();
        Numbers numbers;
        std::generate(numbers.begin(), numbers.end(), [&query] { return query.text(); });
        insertNumbers(id, numbers);
    }
    m_session.query("INSERT OR REPLACE INTO contact_number_rules (line, rules) VALUES (?, ?)")
        .bind(m_line)
        .bind(rules)
        .run();
}

std::string ContactRows::indexed(std::string number) const {
    if (m_digits != nullptr) {
        m_digits->normalise(number);
    }
    return number;
}

ContactRows::Numbers ContactRows::numbersOf(const Contact& contact) {
    return {contact.getPhoneNumber(1), contact.getPhoneNumber(2), contact.getPhoneNumber(3),
            contact.getPhoneNumber(4)};
}

void ContactRows::index(std::int64_t id, const Numbers& numbers) {
    m_session.query("DELETE FROM contact_number WHERE contact = ?").bind(id).run();
    insertNumbers(id, numbers);
}

void ContactRows::insertNumbers(std::int64_t id, const Numbers& numbers) {
    Query query =
        m_session.query("INSERT INTO contact_number (line, number, contact, position) VALUES (?, ?, ?, ?)");
    std::int32_t position = 0;
    for (const std::string& number : numbers) {
        ++position;
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
