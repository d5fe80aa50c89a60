#pragma once

#include <memory>
#include <string>
#include <utility>

/// A value that is the default one in most objects, where it takes the space of a pointer.
///
/// A plain value without synchronisation; copies are deep. After a move it is the default value.
template <typename Value>
class Sparse {
public:
    Sparse() = default;
    Sparse(const Sparse& other) : m_value(copyOf(other)) {}
    Sparse(Sparse&&) noexcept = default;
    Sparse& operator=(const Sparse& other) {
        if (this != &other) {
            m_value = copyOf(other);
        }
        return *this;
    }
    Sparse& operator=(Sparse&&) noexcept = default;
    ~Sparse() = default;

    /// Valid until the value changes.
    [[nodiscard]] const Value& get() const noexcept {
        static const Value kDefault{};
        return m_value == nullptr ? kDefault : *m_value;
    }
    void set(Value value) {
        m_value = value == Value() ? nullptr : std::make_unique<const Value>(std::move(value));
    }

    bool operator==(const Sparse& other) const { return get() == other.get(); }

private:
    [[nodiscard]] static std::unique_ptr<const Value> copyOf(const Sparse& other) {
        return other.m_value == nullptr ? nullptr : std::make_unique<const Value>(*other.m_value);
    }

    /// Never the default value.
    std::unique_ptr<const Value> m_value;
};

using SparseText = Sparse<std::string>;
