#pragma once

namespace journal {

/// Loads all lists. A `ListTransaction` reaches the loader through this interface.
class ListSourceIfc {
public:
    ListSourceIfc() = default;
    ListSourceIfc(const ListSourceIfc&) = delete;
    ListSourceIfc& operator=(const ListSourceIfc&) = delete;
    virtual ~ListSourceIfc() = default;

    /// Loads every list and the contacts by the load method of the service variant. Any thread may call, with
    /// no list locked.
    virtual void load() = 0;
    /// True after the first `load` that was carried out, also if it found no entries.
    [[nodiscard]] virtual bool hasLoaded() const noexcept = 0;
};

}  // namespace journal
