#pragma once

#include <string>

#include "journal-items/Sparse.h"

/// One entry of a journal list: a remote party with its name, and an id that clients quote.
///
/// A plain value without synchronisation; copies are deep and moves are cheap. Copy an item through its own
/// class: a copy through this base keeps only the base's fields.
class CallItem {
public:
    CallItem() = default;
    CallItem(const std::string& entryId, const std::string& firstname, const std::string& surname)
        : m_entryId(entryId), m_surname(surname) {
        m_firstname.set(firstname);
    }
    CallItem(const CallItem&) = default;
    CallItem(CallItem&&) noexcept = default;
    CallItem& operator=(const CallItem&) = default;
    CallItem& operator=(CallItem&&) noexcept = default;
    virtual ~CallItem() = default;

    /// The time of the newest occurrence followed by eight hexadecimal digits: 28 characters. It changes when
    /// an occurrence is merged into the item, so a client with an old id no longer finds the item.
    [[nodiscard]] const std::string& getEntryId() const noexcept { return m_entryId; }
    void setEntryId(const std::string& entryId) { m_entryId = entryId; }

    [[nodiscard]] const std::string& getFirstname() const noexcept { return m_firstname.get(); }
    void setFirstname(const std::string& firstname) { m_firstname.set(firstname); }

    [[nodiscard]] const std::string& getSurname() const noexcept { return m_surname; }
    void setSurname(const std::string& surname) { m_surname = surname; }

    /// True if both are the same list entry: their entry ids are equal, regardless of the other fields.
    /// `sameContent` compares everything.
    [[nodiscard]] virtual bool equals(const CallItem& other) const { return m_entryId == other.m_entryId; }
    bool operator==(const CallItem& other) const { return equals(other); }

    /// True if every field of this class is equal, byte for byte. Each derived class has its own.
    [[nodiscard]] bool sameContent(const CallItem& other) const {
        return m_entryId == other.m_entryId && m_firstname == other.m_firstname &&
               m_surname == other.m_surname;
    }

private:
    std::string m_entryId;
    SparseText m_firstname;
    std::string m_surname;
};
