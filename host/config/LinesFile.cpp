#include "host/config/LinesFile.h"

#include <cstddef>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/limits/TextLimits.h"
#include "host/text-files/CsvRows.h"

namespace host {
namespace {

class LinesReader {
public:
    LinesReader(std::filesystem::path file, std::vector<Configuration::Line>& lines)
        : m_file(std::move(file)), m_lines(lines) {
        for (const Configuration::Line& each : lines) {
            m_devices.insert(each.device);
        }
    }

    void read() {
        std::ifstream stream(m_file, std::ios::binary);
        if (!stream) {
            throw std::runtime_error(m_file.string() + " cannot be read");
        }
        CsvRows rows(stream);
        CsvRows::Row row;
        if (!rows.next(row)) {
            throw std::runtime_error(m_file.string() + " is empty");
        }
        m_columns = row.cells;
        for (const std::string& each : m_columns) {
            if (each != "device" && each != "name" && each != "switch") {
                refuse(row, "the columns are device, name and switch, not \"" + each + "\"");
            }
        }
        while (rows.next(row)) {
            add(row);
        }
        if (stream.bad()) {
            throw std::runtime_error(m_file.string() + " cannot be read to its end");
        }
    }

private:
    [[noreturn]] void refuse(const CsvRows::Row& row, const std::string& why) const {
        throw std::runtime_error(m_file.string() + ":" + std::to_string(row.line) + ": " + why);
    }

    void add(const CsvRows::Row& row) {
        if (row.damaged) {
            refuse(row, "a quotation mark is not closed");
        }
        if (row.cells.size() > m_columns.size()) {
            refuse(row, "has more cells than there are columns");
        }
        Configuration::Line line;
        line.device.clear();
        for (std::size_t at = 0; at < row.cells.size(); ++at) {
            (m_columns[at] == "device" ? line.device
             : m_columns[at] == "name" ? line.name
                                       : line.switchName) = row.cells[at];
        }
        if (line.device.empty() || line.device.find('/') != std::string::npos ||
            line.device.size() > limits::kNumberBytes) {
            refuse(row, "has no device, such as 2001");
        }
        if (!m_devices.insert(line.device).second) {
            refuse(row, "\"" + line.device + "\" is another line already");
        }
        m_lines.push_back(std::move(line));
    }

    const std::filesystem::path m_file;
    std::vector<Configuration::Line>& m_lines;
    std::set<std::string> m_devices;
    std::vector<std::string> m_columns;
};

}  // namespace

void addLinesOf(const std::filesystem::path& file, std::vector<Configuration::Line>& lines) {
    LinesReader(file, lines).read();
    if (lines.empty()) {
        throw std::runtime_error(file.string() + " has no line");
    }
}

}  // namespace host
