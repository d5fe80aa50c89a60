#pragma once

#include <functional>
#include <utility>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "host/management/SettingsFacade.h"

namespace host {

class Database;
class LocalManagement;
class Router;

/// The journal's own settings, which its management agent stores, and the phone's keys, which the management
/// stores. Thread-safe after the routes are added.
class SettingsResource {
public:
    /// Both are borrowed and outlive the resource. The settings are stored in `database`. `changed` is called
    /// after a setting of the journal changed, because that may have cleared lists.
    SettingsResource(LocalManagement& management, Database& database, std::function<void()> changed)
        : m_settings(management), m_database(database), m_changed(std::move(changed)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse settings() const;
    [[nodiscard]] HttpResponse changeSettings(const HttpRequest& request);
    /// All settings: the journal's and the phone's.
    [[nodiscard]] HttpResponse keys() const;
    [[nodiscard]] HttpResponse key(const HttpRequest& request) const;
    [[nodiscard]] HttpResponse changeKey(const HttpRequest& request);

    /// Returns the reason of a refusal; empty if the value was set.
    [[nodiscard]] RejectReason set(const Setting& setting, const std::string& value);
    /// Throws `HttpError` 503 if the deletions that follow a change of a value are kept and cannot be stored
    /// now.
    void requireStored(bool changes);
    /// Throws `HttpError` 503 if the database failed, which is then the reason of a refusal.
    void requireDatabase() const;

    SettingsFacade m_settings;
    Database& m_database;
    const std::function<void()> m_changed;
};

}  // namespace host
