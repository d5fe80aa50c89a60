#pragma once

#include <string>

namespace host {

/// The library of places, which `NumberTexts` loads at the first look-up: its tables take 4 MB of memory and
/// some milliseconds to load.
inline constexpr const char* kPlaceLibrary = "libcalljournalplaces.so";
/// The name of `calljournalPlaceOf` in the library.
inline constexpr const char* kPlaceFunction = "calljournalPlaceOf";

/// Writes where a number in international form is into `place`, as named in `language` ("en", "de"): the city
/// or district, of another country than `region` with the country or the country alone; empty if that is not
/// known, and for mobile numbers of `region`. Thread-safe.
using PlaceFunction = void(const std::string& number, const std::string& region, const std::string& language,
                           std::string& place) noexcept;

}  // namespace host
