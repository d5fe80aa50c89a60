#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/csta/association/EarlyMessages.h"
#include "host/csta/requests/RequestChannel.h"

namespace host {

class LinkedLine;

/// Which line a message with a cross reference belongs to. Two lines may claim the same monitor: a switch may
/// give one id to all monitors of a device. Reader thread only.
class CrossReferences {
public:
    using Clock = EarlyMessages::Clock;

    /// Returns the messages that came before; none if the line had claimed the reference already.
    [[nodiscard]] std::vector<WireDocument> claim(LinkedLine& line, ReferenceKind kind, const std::string& id,
                                                  Clock::time_point now);
    void drop(const LinkedLine& line, ReferenceKind kind, const std::string& id);
    void dropAll(const LinkedLine& line);
    void clear();

    [[nodiscard]] std::vector<LinkedLine*> linesOf(ReferenceKind kind, const std::string& id) const;
    /// Keeps a message that belongs to no line, for one that claims its reference soon.
    void keepEarly(ReferenceKind kind, std::string id, WireDocument message, Clock::time_point now) {
        m_early.keep(kind, std::move(id), std::move(message), now);
    }

private:
    using Key = std::pair<ReferenceKind, std::string>;

    std::multimap<Key, LinkedLine*> m_lines;
    EarlyMessages m_early;
};

}  // namespace host
