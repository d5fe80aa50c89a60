#include "fuzz/support/Mutation.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace fuzz {
namespace {

constexpr std::size_t kMaxBytes = 64U * 1024U;

/// The text between the quotation marks of a line of a libFuzzer dictionary, with its escapes; empty for a
/// line without one.
std::string wordIn(std::string_view line) {
    const std::size_t begin = line.find('"');
    const std::size_t end = line.rfind('"');
    std::string word;
    if (line.starts_with('#') || begin == std::string_view::npos || end == begin) {
        return word;
    }
    for (std::size_t at = begin + 1; at < end; ++at) {
        if (line[at] != '\\') {
            word += line[at];
        } else if (line[at + 1] == 'x') {
            word += static_cast<char>(std::stoi(std::string(line.substr(at + 2, 2)), nullptr, 16));
            at += 3;
        } else {
            word += line[++at];
        }
    }
    return word;
}

/// A part of the text, at most `most` bytes long.
std::string_view partOf(std::string_view text, std::size_t most, reliability::Dice& dice) {
    const std::size_t at = dice.below(text.size() + 1);
    return text.substr(at, dice.below(most) + 1);
}

void replaceNumber(std::string& bytes, std::size_t at, reliability::Dice& dice) {
    static const std::vector<std::string> kNumbers{"0",
                                                   "1",
                                                   "-1",
                                                   "255",
                                                   "65535",
                                                   "65536",
                                                   "2147483647",
                                                   "2147483648",
                                                   "4294967295",
                                                   "4294967296",
                                                   "9223372036854775807",
                                                   "9223372036854775808",
                                                   "99999999999999999999",
                                                   "1e400"};
    const auto isDigit = [](unsigned char each) { return std::isdigit(each) != 0; };
    const auto begin = std::find_if(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end(), isDigit);
    const auto end = std::find_if_not(begin, bytes.end(), isDigit);
    bytes.replace(begin, end, dice.pick(kNumbers));
}

}  // namespace

std::string Corpus::contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Corpus::Corpus(const std::filesystem::path& directory, const std::filesystem::path& dictionary) {
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        m_files.push_back({entry.path().filename(), contentOf(entry.path())});
    }
    if (m_files.empty()) {
        throw std::runtime_error("there is no file in " + directory.string());
    }
    std::sort(m_files.begin(), m_files.end(),
              [](const File& one, const File& other) { return one.name < other.name; });
    std::ifstream lines(dictionary);
    for (std::string line; std::getline(lines, line);) {
        if (std::string word = wordIn(line); !word.empty()) {
            m_words.push_back(std::move(word));
        }
    }
}

std::string Corpus::mutated(reliability::Dice& dice) const {
    std::string bytes = dice.pick(m_files).bytes;
    for (std::size_t changes = dice.below(6) + 1; changes > 0; --changes) {
        change(bytes, dice);
    }
    bytes.resize(std::min(bytes.size(), kMaxBytes));
    return bytes;
}

void Corpus::change(std::string& bytes, reliability::Dice& dice) const {
    const std::size_t at = dice.below(bytes.size() + 1);
    switch (dice.below(m_words.empty() ? 8 : 10)) {
        case 0:
            if (at < bytes.size()) {
                bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ (1U << dice.below(8)));
            }
            break;
        case 1: bytes.insert(at, 1, static_cast<char>(dice.below(256))); break;
        case 2: bytes.erase(at, dice.below(16) + 1); break;
        case 3: bytes.erase(at); break;
        case 4: bytes.insert(at, std::string(partOf(bytes, 64, dice))); break;
        case 5: {
            const std::string part(partOf(bytes, 16, dice));
            for (std::size_t times = dice.below(200); times > 0; --times) {
                bytes.insert(at, part);
            }
            break;
        }
        case 6: bytes.replace(at, dice.below(32), partOf(dice.pick(m_files).bytes, 256, dice)); break;
        case 7: replaceNumber(bytes, at, dice); break;
        case 8: bytes.insert(at, dice.pick(m_words)); break;
        default: bytes.replace(at, dice.below(8), dice.pick(m_words));
    }
}

}  // namespace fuzz
