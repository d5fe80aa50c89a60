#pragma once

#include <cstddef>
#include <list>
#include <string>

#include "journal-items/CallItem.h"
#include "journal-items/Sparse.h"

/// A journal item that has a database row and may show a picture: the base of the items of the four call
/// lists. A plain value without synchronisation.
class CallItemWithPicture : public CallItem {
public:
    /// The number of occurrences that an item keeps when calls are added one by one. An item that holds this
    /// many has "more than 9": the next call drops its oldest one, and a switch that keeps the log is
    /// notified.
    static constexpr std::size_t kMaxOccurrences = 10;

    using CallItem::CallItem;

    /// The database's id of the stored row; empty until the first write succeeded. It survives every merge.
    [[nodiscard]] const std::string& getUniqueId() const noexcept { return m_uniqueId; }
    void setUniqueId(const std::string& uniqueId) { m_uniqueId = uniqueId; }

    /// Reference of the party's picture, copied from the phonebook; empty if there is none.
    [[nodiscard]] const std::string& getPictureClip() const noexcept { return m_pictureClip.get(); }
    void setPictureClip(const std::string& pictureClip) { m_pictureClip.set(pictureClip); }

    [[nodiscard]] bool sameContent(const CallItemWithPicture& other) const {
        return CallItem::sameContent(other) && m_uniqueId == other.m_uniqueId &&
               m_pictureClip == other.m_pictureClip;
    }

protected:
    /// Puts `info` at the front of `occurrences` and drops from the back what exceeds `kMaxOccurrences`.
    template <typename Info>
    static void addNewest(std::list<Info>& occurrences, const Info& info) {
        occurrences.push_front(info);
        while (occurrences.size() > kMaxOccurrences) {
            occurrences.pop_back();
        }
    }

private:
    std::string m_uniqueId;
    SparseText m_pictureClip;
};
