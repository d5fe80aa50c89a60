#include <SQLiteCpp/SQLiteCpp.h>

#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

#include "tests/reliability/database/DatabaseWork.h"

namespace reliability {
namespace {

std::string statementsOf(int version) {
    std::ifstream stream(std::string(STORED_FILES) + "/" + std::to_string(version) + ".sql");
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (text.empty()) {
        throw std::runtime_error("there is no stored database of version " + std::to_string(version));
    }
    return text;
}

Files makeFiles(const std::filesystem::path& file, int version) {
    const auto disk = std::make_shared<SimulatedDisk>();
    SimulatedDisk::use(disk);
    if (version > 0) {
        SQLite::Database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
            .exec(statementsOf(version));
    } else {
        DatabaseWork work(disk, file);
        work.fillMissedList();
    }
    return disk->files();
}

}  // namespace

Files storedFiles(const std::filesystem::path& file, int version) {
    static std::map<int, Files> made;
    if (version == 0) {
        return {};
    }
    if (!made.contains(version)) {
        made.emplace(version, makeFiles(file, version));
    }
    return made.at(version);
}

}  // namespace reliability
