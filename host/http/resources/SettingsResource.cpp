#include "host/http/resources/SettingsResource.h"

#include <nlohmann/json.hpp>

#include "host/database/Database.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kCommand = "clear-calllog";

Json refusal(const RejectReason& reason) {
    return {{"code", static_cast<int>(reason.code)}, {"text", reason.text}};
}

HttpResponse rejection(Json rejected) {
    return jsonResponse(
        {{"error", {{"code", "rejected"}, {"message", "a value was refused; the others hold"}}},
         {"rejected", std::move(rejected)}},
        422);
}

}  // namespace

void SettingsResource::addRoutes(Router& router) {
    router.add({"GET", "/api/v1/settings", Scope::eAdmin,
                [this](const HttpRequest& /*each*/) { return settings(); }});
    router.add({"PUT", "/api/v1/settings", Scope::eAdmin,
                [this](const HttpRequest& each) { return changeSettings(each); }});
    router.add(
        {"GET", "/api/v1/management", Scope::eAdmin, [this](const HttpRequest& /*each*/) { return keys(); }});
    router.add({"GET", "/api/v1/management/{key}", Scope::eAdmin,
                [this](const HttpRequest& each) { return key(each); }});
    router.add({"PUT", "/api/v1/management/{key}", Scope::eAdmin,
                [this](const HttpRequest& each) { return changeKey(each); }});
}

HttpResponse SettingsResource::settings() const {
    Json json = Json::object();
    for (const auto& setting : m_settings.all()) {
        if (setting.ofJournal && setting.value && setting.key != kCommand) {
            json[setting.key] = *setting.value;
        }
    }
    if (json.empty()) {
        throw HttpError(503, "not-ready", "the journal does not respond");
    }
    return jsonResponse(json);
}

HttpResponse SettingsResource::changeSettings(const HttpRequest& request) {
    Json rejected = Json::object();
    bool changes = false;
    const Json body = jsonObject(request);
    for (const auto& [name, value] : body.items()) {
        const auto setting = m_settings.find(name);
        RejectReason reason{eRejectDataInvalid, "The value of " + name + " must be a text"};
        if (!setting || !setting->ofJournal) {
            reason.text = "The journal has no setting " + name;
        } else if (value.is_string()) {
            reason = set(*setting, value.get<std::string>());
            changes = changes || (reason.empty() && setting->value != value.get<std::string>());
        }
        if (!reason.empty()) {
            requireDatabase();
            rejected[name] = refusal(reason);
        }
    }
    requireStored(changes);
    return rejected.empty() ? settings() : rejection(std::move(rejected));
}

HttpResponse SettingsResource::keys() const {
    Json settings = Json::array();
    for (const auto& setting : m_settings.all()) {
        settings.push_back({{"key", setting.key},
                            {"of", setting.ofJournal ? "journal" : "phone"},
                            {"value", setting.value ? Json(*setting.value) : Json(nullptr)}});
    }
    return jsonResponse({{"settings", std::move(settings)}});
}

HttpResponse SettingsResource::key(const HttpRequest& request) const {
    const auto setting = m_settings.find(request.parameter("key"));
    if (!setting) {
        throw HttpError(404, "unknown-key", "there is no setting " + request.parameter("key"));
    }
    return jsonResponse({{"value", setting->value ? Json(*setting->value) : Json(nullptr)}});
}

HttpResponse SettingsResource::changeKey(const HttpRequest& request) {
    const std::string& name = request.parameter("key");
    const Json body = jsonObject(request);
    const auto value = body.find("value");
    if (value == body.end() || !value->is_string()) {
        throw HttpError(422, "wrong-shape", R"(the body must be {"value": "..."})");
    }
    if (const auto setting = m_settings.find(name)) {
        const RejectReason reason = set(*setting, value->get<std::string>());
        if (!reason.empty()) {
            requireDatabase();
            return rejection({{name, refusal(reason)}});
        }
        requireStored(setting->value != value->get<std::string>());
    }
    return key(request);
}

RejectReason SettingsResource::set(const Setting& setting, const std::string& value) {
    RejectReason reason = m_settings.set(setting.key, value);
    if (reason.empty() && setting.ofJournal) {
        m_changed();
    }
    return reason;
}

void SettingsResource::requireStored(bool changes) {
    requireChanged(!changes || m_database.storeKept());
}

void SettingsResource::requireDatabase() const {
    if (!m_database.healthy()) {
        throw HttpError(503, "database", "the value cannot be stored; see the log");
    }
}

}  // namespace host
