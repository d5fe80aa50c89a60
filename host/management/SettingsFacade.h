#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/journal-library/ManagementMessage.h"
#include "platform/management/RejectReasons.h"

namespace host {

class LocalManagement;

/// The settings of one line as people see them: one list of keys, whoever keeps them. What belongs to the journal is
/// asked of and changed by its agent ("JournalMgmtId"), everything else by the management.
///
/// A key of the phone is known when it has a value, when somebody observes it, or when the journal reads it now and then.
/// Others are refused, so that a misspelt key does not vanish silently among the values; so are values that mean nothing to
/// their key.
///
/// Threads: any; it has no state of its own. The agent runs on the calling thread.
class SettingsFacade {
public:
    /// The management is borrowed.
    explicit SettingsFacade(LocalManagement& management) : m_management(management) {}

    /// The journal's keys, then the phone's, each in the order of their names.
    [[nodiscard]] std::vector<journalxml::Setting> all() const;
    /// Nothing when nobody knows the key.
    [[nodiscard]] std::optional<journalxml::Setting> find(const std::string& key) const;
    /// Answers why it was not done; an empty reason when it was.
    [[nodiscard]] RejectReason set(const std::string& key, const std::string& value);

private:
    [[nodiscard]] std::optional<std::string> journalValue(const std::string& key) const;

    LocalManagement& m_management;
};

}  // namespace host
