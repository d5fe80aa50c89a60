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

    // Each deletes one entry. Returns false if the list has no entry with that id.
    /// Also returns false, and deletes no entry, if `isSendDeleteMissedCallRequest` is true.
    bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest);
    bool deleteDialledCall(const std::string& entryId);
    bool deleteReceivedCall(const std::string& entryId);
    bool deleteForwardedCall(const std::string& entryId);
    bool deleteCallBack(const std::string& entryId);

    // Each deletes the entries with these ids; unknown ids are ignored. Always returns true.
    bool deleteMissedCallList(const std::set<std::string>& entryIds);
    bool deleteDialledCallList(const std::set<std::string>& entryIds);
    bool deleteReceivedCallList(const std::set<std::string>& entryIds);
    bool deleteForwardedCallList(const std::set<std::string>& entryIds);
    bool deleteCallBackList(const std::set<std::string>& entryIds);

    // Each deletes every entry, the unloaded ones too. Always returns true.
    bool deleteMissedCallList();
    bool deleteDialledCallList();
    bool deleteReceivedCallList();
    bool deleteForwardedCallList();
    bool deleteCallBackList();

    /// Deletes the entries with these ids in all lists, without the missed ones if the client asks for the
    /// request to the switch. Returns false if no list has any of them.
    bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest);
    /// Deletes every entry of every list except the callbacks, and the contacts. Always returns true.
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
