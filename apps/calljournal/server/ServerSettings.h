#pragma once

#include <filesystem>
#include <set>
#include <vector>

#include "host/config/Configuration.h"
#include "host/http/HttpApi.h"
#include "host/served-lines/ServedLines.h"
#include "host/webhooks/Webhook.h"

namespace calljournal {

// The settings of the server's components, from the configuration. They throw a `std::exception` with a text
// for the user if a file that the configuration names cannot be used.

[[nodiscard]] host::ServedLines::Settings linesSettings(const host::Configuration& configuration);
[[nodiscard]] host::HttpApiSettings httpSettings(const host::Configuration& configuration,
                                                 const std::filesystem::path& tokenFile);
[[nodiscard]] std::vector<host::WebhookSettings> webhookSettings(const host::Configuration& configuration);
/// The events that some webhook wants.
[[nodiscard]] std::set<host::JournalEventKind> webhookEvents(const host::Configuration& configuration);

}  // namespace calljournal
