#pragma once

#include <cstddef>
#include <set>
#include <string>

namespace journal {

class JournalLists;
class PhoneSettings;

/// Deletes entries for clients: one entry, a set of them, a whole list. Each deletion is one
/// `ListTransaction`: report to a switch that keeps the call log, delete in the list and in the database,
/// notify the observers.
///
/// Thread-safe. Do not call from inside an observer callback or with a list locked.
class ListDeletion {
public:
    /// Both are borrowed and outlive this object.
    ListDeletion(const PhoneSettings& settings, JournalLists& lists) : m_settings(settings), m_lists(lists) {}

    // One entry; false when the list has no entry of that id.
    /// Returns false too, and deletes no entry, when `isSendDeleteMissedCallRequest` is true.
    bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest);
    bool deleteDialledCall(const std::string& entryId);
    bool deleteReceivedCall(const std::string& entryId);
    bool deleteForwardedCall(const std::string& entryId);
    bool deleteCallBack(const std::string& entryId);

    // The entries of these ids, those of them that the list has; always true.
    bool deleteMissedCallList(const std::set<std::string>& entryIds);
    bool deleteDialledCallList(const std::set<std::string>& entryIds);
    bool deleteReceivedCallList(const std::set<std::string>& entryIds);
    bool deleteForwardedCallList(const std::set<std::string>& entryIds);
    bool deleteCallBackList(const std::set<std::string>& entryIds);

    // Every entry, the unloaded ones too; always true.
    bool deleteMissedCallList();
    bool deleteDialledCallList();
    bool deleteReceivedCallList();
    bool deleteForwardedCallList();
    bool deleteCallBackList();

    /// The entries of these ids in all lists, without the missed ones when the client asks for the request to
    /// the switch. False when no list has any of them.
    bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest);
    /// Every entry of every list except the callbacks, and the contacts; always true.
    bool deleteAllCalls();

private:
    template <typename Item>
    bool deleteOne(const char* operation, const std::string& entryId);
    template <typename Item>
    std::size_t deleteSet(const std::set<std::string>& entryIds);
    template <typename Item>
    void deleteWhole();

    const PhoneSettings& m_settings;
    JournalLists& m_lists;
};

}  // namespace journal
