#pragma once

#include <cstdint>

/// Which of a party's numbers a number is. `NumberType` only gives the enumeration its name.
struct NumberType {
    /// The values are stored and sent; new ones go to the end.
    enum class NT : std::int32_t { eUnknown = 0, eOffice = 1, eMobile = 2, ePrivate = 3, eOffice2 = 4 };
};
