#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/digits/NumberTexts.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/HttpRequest.h"

namespace host {

/// The parameter "language" of a request; English without one. Throws `HttpError` 400 for a language in which
/// no places are named.
[[nodiscard]] inline PlaceLanguage languageOf(const HttpRequest& request) {
    const std::string& language = request.queryValue("language");
    if (language == "de") {
        return PlaceLanguage::eGerman;
    }
    if (language != "en" && request.query.contains("language")) {
        throw HttpError(400, "bad-parameter", "language must be en or de");
    }
    return PlaceLanguage::eEnglish;
}

/// Sets "numberText" and "place" (null if it is not known) of a party. Thread-safe.
inline void addNumberFields(nlohmann::ordered_json& json, NumberTexts& texts, const std::string& number,
                            PlaceLanguage language) {
    json["numberText"] = texts.text(number);
    const auto place = texts.place(number, language);
    json["place"] = place ? nlohmann::ordered_json(*place) : nlohmann::ordered_json();
}

}  // namespace host
