#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "journal-items/ContactText.h"

/// A phonebook record as the journal sees it: the owner of a number, and the source of the record.
///
/// A plain value without synchronisation; copies are deep. The same class carries a query to the directory
/// (only the search number set), its result, and the entries of the contact list that other processes read.
class Contact {
public:
    /// The source of a record, best first. The values are stored and sent; new ones are added at the end.
    enum class eOrderedContactSource : std::int32_t {
        eUnknown = 0,
        ePersonal = 1,
        eCompany = 2,
        eLdap = 3,
        eExchange = 4,
        eCallLog = 5
    };

    /// A journal entry that refers to the contact: its entry id and its list ("missed", "dialled", ...).
    struct CallRecord {
        std::string entryId;
        std::string type;
        bool operator==(const CallRecord&) const = default;
    };

    [[nodiscard]] const std::string& getUniqueId() const noexcept { return m_uniqueId; }
    void setUniqueId(const std::string& uniqueId) { m_uniqueId = uniqueId; }
    [[nodiscard]] const std::string& getSurname() const noexcept { return m_surname; }
    void setSurname(const std::string& surname) { m_surname = surname; }
    [[nodiscard]] const std::string& getFirstname() const noexcept { return m_firstname; }
    void setFirstname(const std::string& firstname) { m_firstname = firstname; }

    /// The number for looking up and matching the contact; it need not be one of the four below.
    [[nodiscard]] const std::string& getSearchNumber() const noexcept { return m_searchNumber; }
    void setSearchNumber(const std::string& number) { m_searchNumber = number; }
    /// The kind of the number that a directory look-up matched. The values are those of the directory and of
    /// the XML form; they are not positions of `getPhoneNumber`.
    enum class MatchedKind : std::int32_t { eNone = 0, eOffice2 = 1, eOffice = 2, eMobile = 3, ePrivate = 4 };
    [[nodiscard]] MatchedKind getMatchedKind() const noexcept {
        return static_cast<MatchedKind>(m_matchedKind);
    }
    /// The matched kind as the integer of the XML form. A value that is not in `MatchedKind` means `eNone`.
    [[nodiscard]] std::int32_t getMatchedKindCode() const noexcept { return m_matchedKind; }
    void setMatchedKindCode(std::int32_t kind) noexcept { m_matchedKind = kind; }

    /// The first to the fourth phone number.
    [[nodiscard]] const std::string& getOffice() const noexcept { return m_office; }
    void setOffice(const std::string& number) { m_office = number; }
    [[nodiscard]] const std::string& getMobile() const noexcept { return m_mobile; }
    void setMobile(const std::string& number) { m_mobile = number; }
    [[nodiscard]] const std::string& getPrivate() const noexcept { return m_private; }
    void setPrivate(const std::string& number) { m_private = number; }
    [[nodiscard]] const std::string& getOffice2() const noexcept { return m_office2; }
    void setOffice2(const std::string& number) { m_office2 = number; }

    /// The same four by position: 1 office, 2 mobile, 3 private, 4 office2; any other position is an empty
    /// text.
    [[nodiscard]] const std::string& getPhoneNumber(int position) const noexcept {
        static const std::string kNone;
        switch (position) {
            case 1: return m_office;
            case 2: return m_mobile;
            case 3: return m_private;
            case 4: return m_office2;
            default: return kNone;
        }
    }

    /// The position of the default number, 1 to 4; any other value stands for none.
    [[nodiscard]] std::int32_t getDefaultNumber() const noexcept { return m_defaultNumber; }
    void setDefaultNumber(std::int32_t position) noexcept { m_defaultNumber = position; }

    [[nodiscard]] const std::string& getEmail() const noexcept { return m_email; }
    void setEmail(const std::string& email) { m_email = email; }
    [[nodiscard]] const std::string& getGroup() const noexcept { return m_group; }
    void setGroup(const std::string& group) { m_group = group; }
    [[nodiscard]] const std::string& getCompany() const noexcept { return m_company; }
    void setCompany(const std::string& company) { m_company = company; }
    [[nodiscard]] const std::string& getAddress() const noexcept { return m_address; }
    void setAddress(const std::string& address) { m_address = address; }
    [[nodiscard]] const std::string& getAddress2() const noexcept { return m_address2; }
    void setAddress2(const std::string& address) { m_address2 = address; }
    [[nodiscard]] const std::string& getJobFunction() const noexcept { return m_jobFunction; }
    void setJobFunction(const std::string& jobFunction) { m_jobFunction = jobFunction; }
    /// A reference (a path or an address), not the picture itself; it becomes an item's picture clip.
    [[nodiscard]] const std::string& getPicture() const noexcept { return m_picture; }
    void setPicture(const std::string& picture) { m_picture = picture; }
    [[nodiscard]] const std::string& getVoiceDial() const noexcept { return m_voiceDial; }
    void setVoiceDial(const std::string& voiceDial) { m_voiceDial = voiceDial; }
    /// The record's id in the directory that it came from.
    [[nodiscard]] const std::string& getExternalId() const noexcept { return m_externalId; }
    void setExternalId(const std::string& externalId) { m_externalId = externalId; }

    [[nodiscard]] eOrderedContactSource getContactSource() const noexcept { return m_source; }
    void setContactSource(const eOrderedContactSource& source) noexcept { m_source = source; }

    [[nodiscard]] const std::vector<CallRecord>& getCallRecords() const noexcept { return m_callRecords; }
    void setCallRecords(const std::vector<CallRecord>& records) { m_callRecords = records; }
    void addCallRecord(const CallRecord& record) { m_callRecords.push_back(record); }

    /// The whole record as one printable text, "surname=...;firstname=...;": empty fields are omitted, and
    /// bytes that would break the format are written as "\xHH". For transport and logs; `deserialize` is the
    /// inverse.
    [[nodiscard]] std::string serialize() const;
    /// Reads the text of `serialize`. Returns false, with `contact` unchanged, if the text is damaged; skips
    /// unknown names.
    [[nodiscard]] static bool deserialize(const std::string& text, Contact& contact);

    /// True if every field is equal, byte for byte.
    [[nodiscard]] bool sameContent(const Contact& other) const { return *this == other; }
    bool operator==(const Contact&) const = default;

private:
    std::string m_uniqueId;
    std::string m_surname;
    std::string m_firstname;
    std::string m_searchNumber;
    std::int32_t m_matchedKind = 0;
    std::string m_office;
    std::string m_mobile;
    std::string m_private;
    std::string m_office2;
    std::int32_t m_defaultNumber = 0;
    std::string m_email;
    std::string m_group;
    std::string m_company;
    std::string m_address;
    std::string m_address2;
    std::string m_jobFunction;
    std::string m_picture;
    std::string m_voiceDial;
    std::string m_externalId;
    eOrderedContactSource m_source = eOrderedContactSource::eUnknown;
    std::vector<CallRecord> m_callRecords;

    /// The text fields and their names in the serialised text.
    struct TextField {
        const char* name;
        std::string Contact::*member;
    };
    static const std::vector<TextField>& textFields();
    bool take(const std::string& name, const std::string& value);
};

inline const std::vector<Contact::TextField>& Contact::textFields() {
    static const std::vector<TextField> kFields = {
        {"uniqueId", &Contact::m_uniqueId},     {"surname", &Contact::m_surname},
        {"firstname", &Contact::m_firstname},   {"searchNumber", &Contact::m_searchNumber},
        {"office", &Contact::m_office},         {"mobile", &Contact::m_mobile},
        {"private", &Contact::m_private},       {"office2", &Contact::m_office2},
        {"email", &Contact::m_email},           {"group", &Contact::m_group},
        {"company", &Contact::m_company},       {"address", &Contact::m_address},
        {"address2", &Contact::m_address2},     {"jobFunction", &Contact::m_jobFunction},
        {"picture", &Contact::m_picture},       {"voiceDial", &Contact::m_voiceDial},
        {"externalId", &Contact::m_externalId},
    };
    return kFields;
}

inline std::string Contact::serialize() const {
    std::string text;
    for (const TextField& field : textFields()) {
        contacttext::append(text, field.name, this->*field.member);
    }
    contacttext::append(text, "matchedKind", m_matchedKind);
    contacttext::append(text, "defaultNumber", m_defaultNumber);
    contacttext::append(text, "source", static_cast<std::int32_t>(m_source));
    for (const CallRecord& record : m_callRecords) {
        text +=
            "record=" + contacttext::escape(record.entryId) + "," + contacttext::escape(record.type) + ";";
    }
    return text;
}

inline bool Contact::deserialize(const std::string& text, Contact& contact) {
    Contact read;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t equals = text.find('=', begin);
        const std::size_t end = text.find(';', begin);
        if (equals == std::string::npos || end == std::string::npos || equals > end) {
            return false;
        }
        if (!read.take(text.substr(begin, equals - begin), text.substr(equals + 1, end - equals - 1))) {
            return false;
        }
        begin = end + 1;
    }
    contact = read;
    return true;
}

inline bool Contact::take(const std::string& name, const std::string& value) {
    for (const TextField& field : textFields()) {
        if (name == field.name) {
            return contacttext::unescape(value, this->*field.member);
        }
    }
    std::int32_t source = 0;
    if (name == "matchedKind") {
        return contacttext::number(value, m_matchedKind);
    }
    if (name == "defaultNumber") {
        return contacttext::number(value, m_defaultNumber);
    }
    if (name == "source") {
        const bool taken = contacttext::number(value, source);
        m_source = static_cast<eOrderedContactSource>(source);
        return taken;
    }
    if (name == "record") {
        const std::size_t comma = value.find(',');
        CallRecord record;
        if (comma == std::string::npos || !contacttext::unescape(value.substr(0, comma), record.entryId) ||
            !contacttext::unescape(value.substr(comma + 1), record.type)) {
            return false;
        }
        m_callRecords.push_back(record);
    }
    return true;
}
