#include "tests/reliability/database/SimulatedDisk.h"

#include <algorithm>
#include <utility>

#include "tests/reliability/database/FileContent.h"

namespace reliability {
namespace {

using Change = SimulatedDisk::Change;

constexpr std::size_t kSector = 512;

/// The fate of the changes that were not synced, in a power cut.
enum class Cut { eAllLost, eAllThere, ePrefix, eAny };

void writeTo(std::string& content, const std::string& bytes, std::size_t from, std::size_t size,
             std::size_t offset) {
    if (content.size() < offset + from + size) {
        content.resize(offset + from + size);
    }
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), size,
                content.begin() + static_cast<std::ptrdiff_t>(offset + from));
}

void apply(std::string& content, const Change& change) {
    if (change.kind == Change::Kind::eWrite) {
        writeTo(content, change.bytes, 0, change.bytes.size(), change.offset);
    } else if (change.kind == Change::Kind::eTruncate) {
        content.resize(change.offset);
    }
}

/// Writes some of the sectors.
void tear(std::string& content, const Change& change, Dice& dice) {
    for (std::size_t from = 0; from < change.bytes.size();) {
        const std::size_t end = ((change.offset + from) / kSector + 1) * kSector - change.offset;
        const std::size_t size = std::min(end, change.bytes.size()) - from;
        if (dice.chance(50)) {
            writeTo(content, change.bytes, from, size, change.offset);
        }
        from += size;
    }
}

/// A file of the disk while the changes are played again.
struct Played {
    std::string synced{};
    bool isThere = false;
    std::vector<const Change*> pending{};
    bool isDeleted = false;  // the deletion is pending
};

void play(std::map<std::string, Played>& files, const Change& change) {
    Played& file = files[change.file];
    switch (change.kind) {
        case Change::Kind::eSync:
            for (const Change* const each : std::exchange(file.pending, {})) {
                apply(file.synced, *each);
            }
            // With a new log SQLite's file system syncs the directory, and so the deletions before.
            if (!std::exchange(file.isThere, true)) {
                std::erase_if(files, [](const auto& each) { return each.second.isDeleted; });
            }
            return;
        case Change::Kind::eDeleteAndSync: file = Played(); return;
        case Change::Kind::eDelete: file.isDeleted = true; return;
        case Change::Kind::eWrite:
        case Change::Kind::eTruncate:
            if (file.isDeleted) {
                file = Played();  // a new file of the name; the directory has forgotten the former one
            }
            file.pending.push_back(&change);
    }
}

/// The content that the cut leaves; false if it leaves no file.
bool survive(Played& file, Cut cut, Dice& dice) {
    if (file.isDeleted && (cut == Cut::eAllThere || (cut != Cut::eAllLost && dice.chance(50)))) {
        return false;
    }
    const std::size_t kept = cut == Cut::eAllLost  ? 0
                             : cut == Cut::ePrefix ? dice.below(file.pending.size() + 1)
                                                   : file.pending.size();
    for (std::size_t at = 0; at < file.pending.size(); ++at) {
        const std::size_t fate = cut == Cut::eAny ? dice.below(3) : at < kept ? 0 : at == kept ? 1 : 2;
        if (fate == 0) {
            apply(file.synced, *file.pending[at]);
            file.isThere = true;
        } else if (fate == 1 && cut != Cut::eAllLost) {
            tear(file.synced, *file.pending[at], dice);
            file.isThere = true;
        }
    }
    return file.isThere;
}

}  // namespace

SimulatedDisk::SimulatedDisk(Files files) : m_initial(std::move(files)) {
    for (const auto& [name, content] : m_initial) {
        m_files.emplace(name, std::make_shared<FileContent>(FileContent{.content = content}));
    }
}

SimulatedDisk::~SimulatedDisk() = default;

std::size_t SimulatedDisk::changes() const {
    const std::lock_guard lock(m_mutex);
    return m_changes.size();
}

std::size_t SimulatedDisk::calls() const {
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

Files SimulatedDisk::filesAfterCut(std::size_t changes, Dice& dice) const {
    const std::lock_guard lock(m_mutex);
    std::map<std::string, Played> played;
    for (const auto& [name, content] : m_initial) {
        played[name] = {.synced = content, .isThere = true};
    }
    for (std::size_t at = 0; at < std::min(changes, m_changes.size()); ++at) {
        play(played, m_changes[at]);
    }
    const std::vector<Cut> cuts{Cut::eAllLost, Cut::eAllThere, Cut::ePrefix, Cut::eAny, Cut::eAny, Cut::eAny};
    const Cut cut = dice.pick(cuts);
    Files files;
    for (auto& [name, file] : played) {
        if (survive(file, cut, dice)) {
            files.emplace(name, std::move(file.synced));
        }
    }
    return files;
}

Files SimulatedDisk::files() const {
    const std::lock_guard lock(m_mutex);
    Files files;
    for (const auto& [name, file] : m_files) {
        files.emplace(name, file->content);
    }
    return files;
}

void SimulatedDisk::setFaults(Faults faults) {
    const std::lock_guard lock(m_mutex);
    m_faults = std::move(faults);
}

int SimulatedDisk::next(Operation operation, const std::string& file) {
    const std::lock_guard lock(m_mutex);
    const std::size_t call = m_calls++;
    return m_faults ? m_faults(operation, file, call) : 0;
}

void SimulatedDisk::record(Change change) {
    const std::lock_guard lock(m_mutex);
    m_changes.push_back(std::move(change));
}

std::shared_ptr<FileContent> SimulatedDisk::open(const std::string& name, bool creates) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_files.find(name);
    if (found != m_files.end() || !creates) {
        return found == m_files.end() ? nullptr : found->second;
    }
    return m_files.emplace(name, std::make_shared<FileContent>()).first->second;
}

void SimulatedDisk::remove(const std::string& name, bool synced) {
    const std::lock_guard lock(m_mutex);
    m_files.erase(name);
    m_changes.push_back({synced ? Change::Kind::eDeleteAndSync : Change::Kind::eDelete, name});
}

bool SimulatedDisk::exists(const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    return m_files.contains(name);
}

}  // namespace reliability
