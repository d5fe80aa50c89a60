#include "host/directory/Phonebook.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include "host/data/ContactRows.h"
#include "host/data/PartyRows.h"
#include "host/database/Database.h"
#include "host/database/RowId.h"
#include "host/presentation/ContactFields.h"
#include "host/presentation/ItemSearch.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

/// The number of contacts that a search reads at a time: a call that arrives meanwhile waits for one such
/// read.
constexpr std::size_t kSlice = 1000;

/// `position`: 1 to 4, as in `Contact::getPhoneNumber`.
constexpr Contact::MatchedKind matchedKindAt(std::int32_t position) {
    switch (position) {
        case 1: return Contact::MatchedKind::eOffice;
        case 2: return Contact::MatchedKind::eMobile;
        case 3: return Contact::MatchedKind::ePrivate;
        default: return Contact::MatchedKind::eOffice2;
    }
}

/// A file of another program may have fewer fields of a contact.
void fillIn(Contact& contact, const Contact& known) {
    for (const ContactField& field : contactFields()) {
        if (field.get(contact).empty()) {
            static_cast<void>(field.set(contact, field.get(known)));
        }
    }
}

}  // namespace

Phonebook::Phonebook(Database& database, DigitAnalysisServiceIfc& digits, std::string line,
                     std::chrono::milliseconds interval, Phonebook* shared)
    : m_database(database),
      m_digits(digits),
      m_line(std::move(line)),
      m_interval(interval),
      m_shared(shared) {}

bool Phonebook::lookUpContact(Contact& contact) {
    return lookUp(contact).value_or(false);
}

std::optional<bool> Phonebook::lookUp(Contact& contact) {
    std::string number = contact.getSearchNumber();
    if (number.empty()) {
        return false;
    }
    m_digits.normalise(number);
    noticeOtherProcesses();
    KnownNumbers::ContactPtr found;
    if (const auto known = m_known.find(number)) {
        found = *known;
    } else if (!read(number, found)) {
        return std::nullopt;
    }
    if (!found) {
        return m_shared == nullptr ? std::optional(false) : m_shared->lookUp(contact);
    }
    Contact result = *found;
    result.setSearchNumber(contact.getSearchNumber());
    result.setCallRecords(contact.getCallRecords());
    contact = std::move(result);
    return true;
}

void Phonebook::noticeOtherProcesses() {
    const Clock::time_point now = Clock::now();
    if (now < m_nextNotice.load()) {
        return;
    }
    m_nextNotice = now + m_interval;
    DatabaseState state;
    const bool done = m_database.read("looking for changes of contacts",
                                      [&state](Database::Session& session) { state = session.state(); });
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    if (!done || !(m_state == state)) {
        m_known.clear();
    }
    m_state = state;
}

bool Phonebook::read(const std::string& number, KnownNumbers::ContactPtr& found) {
    const std::uint64_t version = m_known.version();
    return m_database.read("looking a contact up", [&](Database::Session& session) {
        ContactRows rows(session, m_line, &m_digits);
        if (!m_known.isLoaded()) {
            m_known.load(version, rows.allNumbers());
        }
        if (const auto match = rows.lookUpOwn(number)) {
            if (std::optional<Contact> contact = rows.find(match->id)) {
                contact->setMatchedKindCode(static_cast<std::int32_t>(matchedKindAt(match->position)));
                found = std::make_shared<const Contact>(*std::move(contact));
            }
        }
        m_known.store(version, number, found);
    });
}

bool Phonebook::change(const char* what, const Contact* changed, const Database::Work& work) {
    const bool done = m_database.write(what, work);
    noteChange(changed);
    if (done) {
        // The former fields leave no bytes in the log.
        m_database.truncateLog();
    }
    if (done && m_changeListener) {
        m_changeListener();
    }
    return done;
}

void Phonebook::noteChange(const Contact* changed) {
    if (changed == nullptr) {
        m_known.clear();
        return;
    }
    std::array<std::string, 4> numbers = ContactRows::numbersOf(*changed);
    std::for_each(numbers.begin(), numbers.end(),
                  [this](std::string& number) { m_digits.normalise(number); });
    m_known.change({numbers.begin(), numbers.end()});
}

std::optional<std::string> Phonebook::add(const Contact& contact, Owner owner) {
    if (owner == Owner::eAll && m_shared != nullptr) {
        return m_shared->add(contact);
    }
    std::int64_t id = 0;
    const bool done = change("adding a contact", &contact, [&](Database::Session& session) {
        id = ContactRows(session, m_line, &m_digits).insert(contact);
    });
    return done ? std::optional(uniqueIdOf(id)) : std::nullopt;
}

bool Phonebook::add(const std::vector<Contact>& contacts) {
    return change("adding contacts", nullptr, [&](Database::Session& session) {
        ContactRows rows(session, m_line, &m_digits);
        for (const Contact& contact : contacts) {
            rows.insert(contact);
        }
    });
}

std::optional<ImportCounts> Phonebook::import(const std::vector<Contact>& contacts, Owner owner) {
    const bool forAll = owner == Owner::eAll && m_shared != nullptr;
    ImportCounts counts;
    const bool done = change("importing contacts", nullptr, [&](Database::Session& session) {
        ContactRows own(session, m_line, &m_digits);
        ContactRows shared(session, forAll ? m_shared->m_line : m_line, &m_digits);
        for (const Contact& contact : contacts) {
            switch (forAll ? importOne({&own, &shared}, contact) : importOne({&own}, contact)) {
                case Imported::eAdded: ++counts.added; break;
                case Imported::eChanged: ++counts.changed; break;
                case Imported::eUnchanged: ++counts.unchanged; break;
            }
        }
    });
    if (forAll) {
        m_shared->noteChange(nullptr);
        if (done && m_shared->m_changeListener) {
            m_shared->m_changeListener();
        }
    }
    return done ? std::optional(counts) : std::nullopt;
}

Phonebook::Imported Phonebook::importOne(const std::vector<ContactRows*>& places, Contact contact) {
    const bool hasExternalId = !contact.getExternalId().empty();
    std::optional<Contact> known;
    ContactRows* rows = places.back();
    const auto look = [&](auto&& find) {
        for (auto place = places.begin(); !known && place != places.end(); ++place) {
            known = find(**place);
            rows = known ? *place : rows;
        }
    };
    if (hasExternalId) {
        look([&contact](ContactRows& place) { return place.findExternal(contact.getExternalId()); });
    }
    if (!known) {
        look([&](ContactRows& place) { return place.findAlike(contact, hasExternalId); });
        if (known) {
            fillIn(contact, *known);
        }
    }
    if (contact.getContactSource() == Contact::eOrderedContactSource::eUnknown) {
        contact.setContactSource(known ? known->getContactSource()
                                       : Contact::eOrderedContactSource::ePersonal);
    }
    if (!known) {
        rows->insert(contact);
        return Imported::eAdded;
    }
    contact.setUniqueId(known->getUniqueId());
    contact.setSearchNumber({});
    contact.setMatchedKindCode(0);
    contact.setCallRecords({});
    if (contact == *known) {
        return Imported::eUnchanged;
    }
    static_cast<void>(rows->update(rowIdOf(known->getUniqueId()).value_or(0), contact));
    return Imported::eChanged;
}

bool Phonebook::update(const Contact& contact, Owner owner) {
    bool found = false;
    const bool done = change("changing a contact", &contact, [&](Database::Session& session) {
        found = ContactRows(session, m_line, &m_digits)
                    .update(rowIdOf(contact.getUniqueId()).value_or(0), contact);
    });
    if (done && !found && owner == Owner::eAll && m_shared != nullptr) {
        return m_shared->update(contact);
    }
    return done && found;
}

bool Phonebook::remove(const std::string& uniqueId, Owner owner) {
    bool found = false;
    const Contact none;  // no number is added
    const bool done = change("removing a contact", &none, [&](Database::Session& session) {
        found = ContactRows(session, m_line, &m_digits).remove(rowIdOf(uniqueId).value_or(0));
    });
    if (done && !found && owner == Owner::eAll && m_shared != nullptr) {
        return m_shared->remove(uniqueId);
    }
    return done && found;
}

std::optional<std::set<std::string>> Phonebook::sharedAmong(const std::vector<Contact>& contacts) {
    std::set<std::string> shared;
    const bool done = m_database.read("reading contacts", [&](Database::Session& session) {
        shared.clear();
        ContactRows rows(session, m_line, &m_digits);
        for (const Contact& each : contacts) {
            if (rows.isShared(rowIdOf(each.getUniqueId()).value_or(0))) {
                shared.insert(each.getUniqueId());
            }
        }
    });
    return done ? std::optional(std::move(shared)) : std::nullopt;
}

bool Phonebook::find(const std::string& uniqueId, std::optional<Contact>& contact) {
    return m_database.read("reading a contact", [&](Database::Session& session) {
        contact = ContactRows(session, m_line, &m_digits).find(rowIdOf(uniqueId).value_or(0));
    });
}

std::vector<Contact> Phonebook::list(std::size_t offset, std::size_t limit) {
    return slice(offset, limit).value_or(std::vector<Contact>());
}

std::size_t Phonebook::count() {
    return counted().value_or(0);
}

std::optional<std::size_t> Phonebook::counted() {
    std::int64_t number = 0;
    const bool done = m_database.read("counting contacts", [&](Database::Session& session) {
        number = ContactRows(session, m_line, &m_digits).count();
    });
    return done ? std::optional(static_cast<std::size_t>(number)) : std::nullopt;
}

std::optional<ContactPage> Phonebook::search(const std::string& text, std::size_t offset, std::size_t limit) {
    const SearchText wanted(text);
    if (wanted.isEmpty()) {
        const std::optional<std::vector<Contact>> contacts = slice(offset, limit);
        const std::optional<std::size_t> total = contacts ? counted() : std::nullopt;
        return total ? std::optional(ContactPage{*total, *contacts}) : std::nullopt;
    }
    ContactPage page;
    for (std::size_t begin = 0;; begin += kSlice) {
        std::optional<std::vector<Contact>> contacts = slice(begin, kSlice);
        if (!contacts) {
            return std::nullopt;
        }
        for (Contact& contact : *contacts) {
            if (itemMatches(contact, wanted) && page.total++ >= offset && page.contacts.size() < limit) {
                page.contacts.push_back(std::move(contact));
            }
        }
        if (contacts->size() < kSlice) {
            return page;
        }
    }
}

std::optional<std::vector<Contact>> Phonebook::slice(std::size_t offset, std::size_t limit) {
    std::vector<Contact> contacts;
    const bool done = m_database.read("reading contacts", [&](Database::Session& session) {
        contacts = ContactRows(session, m_line, &m_digits)
                       .list(static_cast<std::int64_t>(offset), static_cast<std::int64_t>(limit));
    });
    return done ? std::optional(std::move(contacts)) : std::nullopt;
}

bool Phonebook::reindexIfRulesChanged(const std::string& rulesKey) {
    std::string current;
    const bool done = m_database.read("reading the rules of the index", [&](Database::Session& session) {
        current = ContactRows(session, m_line, &m_digits).indexRules();
    });
    if (!done || current == rulesKey) {
        return done;
    }
    const bool indexed = m_database.write("indexing contacts anew", [&](Database::Session& session) {
        ContactRows(session, m_line, &m_digits).reindex(rulesKey);
        PartyRows(session, m_line, &m_digits).reindex();
    });
    m_known.clear();
    return indexed;
}

}  // namespace host
