#pragma once

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"
#include "host/management/SettingsDoor.h"

namespace host {

class Database;
class LocalManagement;
class Router;

/// The journal's own settings, which its management agent keeps, and the phone's keys, which the management keeps.
/// Threads: any, once the routes are added.
class SettingsResource {
public:
    /// Both are borrowed and outlive the resource. The database is the one that the settings are stored in.
    SettingsResource(LocalManagement& management, const Database& database)
        : m_settings(management), m_database(database) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse settings() const;
    [[nodiscard]] HttpResponse changeSettings(const HttpRequest& request);
    [[nodiscard]] HttpResponse key(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse changeKey(const HttpRequest& request);

    /// Throws `HttpError` 503 when the reason of a refusal is the database.
    void requireDatabase() const;

    SettingsDoor m_settings;
    const Database& m_database;
};

}  // namespace host
