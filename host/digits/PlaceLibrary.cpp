#include "host/digits/PlaceLibrary.h"

#include <phonenumbers/geocoding/phonenumber_offline_geocoder.h>
#include <phonenumbers/phonenumber.pb.h>
#include <phonenumbers/phonenumberutil.h>

#include <exception>

namespace {

using i18n::phonenumbers::Locale;
using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberOfflineGeocoder;
using i18n::phonenumbers::PhoneNumberUtil;

std::string placeOf(const std::string& text, const std::string& region, const std::string& language) {
    const PhoneNumberUtil& plans = *PhoneNumberUtil::GetInstance();
    static const PhoneNumberOfflineGeocoder geocoder;
    PhoneNumber number;
    if (plans.Parse(text, "ZZ", &number) != PhoneNumberUtil::NO_PARSING_ERROR) {
        return {};
    }
    const Locale locale(language.c_str());
    // The area, or the country if no area is known; then the country only, because "ZZ" is no user's region.
    const std::string area = geocoder.GetDescriptionForNumber(number, locale);
    const std::string country = geocoder.GetDescriptionForNumber(number, locale, "ZZ");
    std::string regionOfNumber;
    plans.GetRegionCodeForNumber(number, &regionOfNumber);
    const bool isOwn = regionOfNumber == region;
    if (area == country) {
        return isOwn ? std::string() : country;
    }
    return isOwn || country.empty() ? area : area + ", " + country;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) host::PlaceFunction calljournalPlaceOf;

void calljournalPlaceOf(const std::string& number, const std::string& region, const std::string& language,
                        std::string& place) noexcept {
    try {
        place = placeOf(number, region, language);
    } catch (const std::exception&) {
        place.clear();
    }
}
