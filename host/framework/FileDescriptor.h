#pragma once

#include <unistd.h>

#include <utility>

namespace host {

/// Owns a file descriptor and closes it; -1 means none. A plain value; not synchronised.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) noexcept : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }

    [[nodiscard]] int get() const noexcept { return m_number; }
    [[nodiscard]] bool isOpen() const noexcept { return m_number >= 0; }
    /// Passes ownership of the descriptor to the caller.
    [[nodiscard]] int release() noexcept { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

}  // namespace host
