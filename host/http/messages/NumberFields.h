#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "host/digits/NumberTexts.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/HttpRequest.h"
#include "host/presentation/ItemJson.h"
#include "journal-items/Contact.h"

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

/// `itemJson` with "numberTexts": its numbers as people write them. Thread-safe.
[[nodiscard]] inline nlohmann::ordered_json contactJson(const Contact& contact, NumberTexts& texts) {
    nlohmann::ordered_json json = itemJson(contact);
    nlohmann::ordered_json numbers;
    for (const char* name : {"office", "mobile", "private", "office2"}) {
        numbers[name] = texts.text(json[name].get<std::string>());
    }
    json["numberTexts"] = std::move(numbers);
    return json;
}

}  // namespace host
