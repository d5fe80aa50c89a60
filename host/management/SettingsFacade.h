#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/management/RejectReasons.h"

namespace host {

class LocalManagement;

/// One key with its value. A plain value.
struct Setting {
    std::string key;
    /// True if the journal keeps the key ("missed-logging"), false if the phone does ("system-identifier").
    bool ofJournal = false;
    /// `std::nullopt`: the phone has the key, but without a value.
    std::optional<std::string> value;
};

/// The settings of one line as users see them: one list of keys. The journal's agent ("JournalMgmtId") reads
/// and changes the journal's keys, the management all others.
///
/// A key of the phone exists if it has a value, if an agent observes it, or if the journal reads it without
/// observing it. The facade refuses all other keys, so that a misspelt key is not stored silently, and
/// invalid values.
///
/// Thread-safe; stateless. The agent runs on the calling thread.
class SettingsFacade {
public:
    /// Requires: `management` outlives the facade.
    explicit SettingsFacade(LocalManagement& management) : m_management(management) {}

    /// Returns the journal's keys and then the phone's, each sorted by name.
    [[nodiscard]] std::vector<Setting> all() const;
    /// Returns std::nullopt if the key does not exist.
    [[nodiscard]] std::optional<Setting> find(const std::string& key) const;
    /// Returns the reason of a refusal; an empty one on success, also if the key has the value already.
    [[nodiscard]] RejectReason set(const std::string& key, const std::string& value);

private:
    [[nodiscard]] std::optional<std::string> journalValue(const std::string& key) const;

    LocalManagement& m_management;
};

}  // namespace host
