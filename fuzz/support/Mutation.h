#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/reliability/support/Dice.h"

namespace fuzz {

/// The inputs of one target in the tree: the files of a corpus and the words of a dictionary. Constant after
/// construction.
class Corpus {
public:
    struct File {
        std::string name;
        std::string bytes;
    };

    /// Reads every file of the directory, and the dictionary, if there is one. Throws `std::runtime_error` if
    /// the directory has no file.
    Corpus(const std::filesystem::path& directory, const std::filesystem::path& dictionary);

    [[nodiscard]] static std::string contentOf(const std::filesystem::path& file);

    [[nodiscard]] const std::vector<File>& files() const noexcept { return m_files; }

    /// A file with one to six random changes: bits flipped, bytes inserted, deleted, repeated or replaced,
    /// a word of the dictionary, the middle of another file, another number.
    [[nodiscard]] std::string mutated(reliability::Dice& dice) const;

private:
    void change(std::string& bytes, reliability::Dice& dice) const;

    std::vector<File> m_files;
    std::vector<std::string> m_words;
};

}  // namespace fuzz
