#pragma once

#include <functional>
#include <utility>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"
#include "host/management/SettingsFacade.h"

namespace host {

class Database;
class LocalManagement;
class Router;

/// The journal's own settings, which its management agent keeps, and the phone's keys, which the management keeps.
/// Threads: any, once the routes are added.
class SettingsResource {
public:
    /// Both are borrowed and outlive the resource. The database is the one that the settings are stored in. `changed` is called
    /// when a setting of the journal was, which may have emptied lists.
    SettingsResource(LocalManagement& management, const Database& database, std::function<void()> changed)
        : m_settings(management), m_database(database), m_changed(std::move(changed)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse settings() const;
    [[nodiscard]] HttpResponse changeSettings(const HttpRequest& request);
    [[nodiscard]] HttpResponse key(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse changeKey(const HttpRequest& request);

    /// The reason of a refusal; empty when it was done.
    [[nodiscard]] RejectReason set(const journalxml::Setting& setting, const std::string& value);
    /// Throws `HttpError` 503 when the reason of a refusal is the database.
    void requireDatabase() const;

    SettingsFacade m_settings;
    const Database& m_database;
    const std::function<void()> m_changed;
};

}  // namespace host
