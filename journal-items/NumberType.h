#pragma once

#include <cstdint>

/// The kind of a party's number. `NumberType` is only the scope of the enumeration.
struct NumberType {
    /// The values are stored and sent; new ones are added at the end.
    enum class NT : std::int32_t { eUnknown = 0, eOffice = 1, eMobile = 2, ePrivate = 3, eOffice2 = 4 };
};
