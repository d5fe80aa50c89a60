#include "host/digits/NumberTexts.h"

#include <dlfcn.h>

#include <exception>
#include <utility>

#include "host/digits/PlaceLibrary.h"
#include "host/framework/LibraryLoader.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// nullptr, with a warning in the log, if the library of places cannot be loaded.
PlaceFunction* loadPlaces() {
    try {
        const auto path = LibraryLoader::locate(kPlaceLibrary, LibraryLoader::programDirectory());
        if (void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
            return reinterpret_cast<PlaceFunction*>(dlsym(library, kPlaceFunction));
        }
        logAppUni("Digits", __FILE_NAME__, 3, __LINE__, "the places of numbers are not known: %s", dlerror());
    } catch (const std::exception& error) {
        logAppUni("Digits", __FILE_NAME__, 3, __LINE__, "the places of numbers are not known: %s",
                  error.what());
    }
    return nullptr;
}

}  // namespace

NumberTexts::NumberTexts(std::string region, DigitAnalysisServiceIfc& digits)
    : m_region(std::move(region)), m_plan(m_region), m_digits(digits) {}

std::string NumberTexts::text(const std::string& number) {
    if (auto known = m_texts.find(number)) {
        return std::move(*known);
    }
    // A list asks for a thousand numbers at once, most of them in international form.
    std::optional<std::string> text = m_plan.written(number);
    if (!text) {
        std::string form = number;
        m_digits.normalise(form);
        text = m_plan.written(form).value_or(number);
    }
    m_texts.store(number, *text);
    return std::move(*text);
}

std::optional<std::string> NumberTexts::place(const std::string& number, PlaceLanguage language) {
    NumberForms& places = m_places.at(static_cast<std::size_t>(language));
    std::optional<std::string> known = places.find(number);
    if (!known) {
        static PlaceFunction* const find = loadPlaces();
        known.emplace();
        const std::string found = international(number);
        if (find != nullptr && !found.empty()) {
            find(found, m_region, language == PlaceLanguage::eGerman ? "de" : "en", *known);
        }
        places.store(number, *known);
    }
    return known->empty() ? std::nullopt : known;
}

std::string NumberTexts::international(const std::string& number) {
    std::string form = number;
    m_digits.normalise(form);
    return form.starts_with('+') && m_plan.international(form) == form ? form : std::string();
}

}  // namespace host
