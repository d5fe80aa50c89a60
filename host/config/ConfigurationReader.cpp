#include "host/config/ConfigurationReader.h"

#include <algorithm>
#include <limits>
#include <set>
#include <stdexcept>
#include <system_error>

#include "host/config/LinesFile.h"
#include "host/config/TomlSection.h"
#include "host/config/WebOrigin.h"
#include "host/digits/DialledText.h"
#include "host/digits/NumberingPlan.h"
#include "host/management/SettingRules.h"
#include "host/text-files/WholeFile.h"

namespace host {
namespace {

Configuration::SharedDevice readSharedDevice(TomlSection& section) {
    Configuration::SharedDevice shared;
    section.readName("device", shared.device);
    section.read("log-missed-calls", shared.logMissedCalls);
    section.finish();
    return shared;
}

bool isNumberPattern(const std::string& text) {
    const bool isBegin = text.ends_with('*');
    const std::string number = withoutSeparators(isBegin ? text.substr(0, text.size() - 1) : text);
    return number.find_first_of("0123456789") != std::string::npos && isDialledNumber(number);
}

void readManagement(TomlSection& section, Configuration::Keys& keys) {
    for (const std::string& key : section.takeAllKeys()) {
        std::string& value = keys[key];
        section.read(key.c_str(), value);
        if (!isAccepted(key, value)) {
            section.refuse(key, "must be " + std::string(acceptedValues(key)));
        }
    }
}

/// Leaves `days` if the key is absent.
void readKeepDays(TomlSection& section, std::optional<std::chrono::days>& keep) {
    constexpr std::int64_t kAbsent = -1;
    std::int64_t days = kAbsent;
    section.read("keep-days", days, 0, 36500);
    if (days != kAbsent) {
        keep = std::chrono::days(days);
    }
}

Configuration::Line readLine(TomlSection& section) {
    Configuration::Line line;
    section.readName("device", line.device);
    if (line.device.find('/') != std::string::npos) {
        section.refuse("device", "must have no /");
    }
    section.read("name", line.name);
    section.read("switch", line.switchName);
    readKeepDays(section, line.keep);
    if (std::optional<TomlSection> management = section.section("management")) {
        readManagement(*management, line.management);
    }
    std::vector<std::string> devices{line.device};
    for (TomlSection& each : section.sections("shared")) {
        line.shared.push_back(readSharedDevice(each));
        const std::string& device = line.shared.back().device;
        if (std::find(devices.begin(), devices.end(), device) != devices.end()) {
            each.refuse("device", "\"" + device + "\" is named already");
        }
        devices.push_back(device);
    }
    section.read("bluetooth", line.bluetooth);
    section.read("never-log", line.neverLog);
    if (!std::all_of(line.neverLog.begin(), line.neverLog.end(), isNumberPattern)) {
        section.refuse("never-log",
                       "must be numbers, such as \"030 123456\", or begins of numbers, such as "
                       "\"+49800*\"");
    }
    section.finish();
    return line;
}

/// Reads `[line]`, or each `[[line]]`.
void readLines(TomlSection& file, std::vector<Configuration::Line>& lines) {
    std::vector<TomlSection> sections = file.sections("line");
    if (sections.empty()) {
        return;
    }
    lines.clear();
    std::set<std::string> devices;
    for (TomlSection& section : sections) {
        lines.push_back(readLine(section));
        if (!devices.insert(lines.back().device).second) {
            section.refuse("device", "\"" + lines.back().device + "\" is another line already");
        }
    }
}

void readPath(TomlSection& section, const char* key, std::filesystem::path& path) {
    std::string text = path.string();
    section.read(key, text);
    path = text;
}

void readCertificate(TomlSection& section, CertificateFiles& files) {
    readPath(section, "tls-certificate", files.certificate);
    readPath(section, "tls-key", files.key);
    if (files.certificate.empty() != files.key.empty()) {
        section.refuse(files.key.empty() ? "tls-certificate" : "tls-key",
                       "needs the other one of tls-certificate and tls-key");
    }
}

void readSwitch(TomlSection& section, Configuration::Switch& callSwitch) {
    section.read("name", callSwitch.name);
    section.readName("host", callSwitch.host);
    std::int64_t port = callSwitch.port;
    section.read("port", port, 1, std::numeric_limits<std::uint16_t>::max());
    callSwitch.port = static_cast<std::uint16_t>(port);
    section.readWord("edition", callSwitch.edition, {"ed3", "ed4", "ed5", "ed6"});
    section.readWord("session", callSwitch.session, {"auto", "application-session"});
    section.read("send-filters", callSwitch.sendFilters);
    section.read("tls", callSwitch.tls);
    readPath(section, "tls-ca", callSwitch.trust.authorities);
    section.read("tls-name", callSwitch.trust.name);
    readCertificate(section, callSwitch.trust.own);
    const ServerTrust& trust = callSwitch.trust;
    for (const auto& [key, isSet] :
         {std::pair("tls-ca", !trust.authorities.empty()), std::pair("tls-name", !trust.name.empty()),
          std::pair("tls-certificate", !trust.own.certificate.empty())}) {
        if (isSet && !callSwitch.tls) {
            section.refuse(key, "has no effect without TLS: tls must be true");
        }
    }
    std::int64_t pause = callSwitch.reconnectMax.count();
    section.read("reconnect-max-s", pause, 1, 3600);
    callSwitch.reconnectMax = std::chrono::seconds(pause);
    std::int64_t callMax = callSwitch.callMax.count();
    section.read("call-max-hours", callMax, 1, 8760);
    callSwitch.callMax = std::chrono::hours(callMax);
    section.finish();
}

void readApi(TomlSection& section, Configuration::Api& api) {
    std::string listen = api.listen.text();
    section.read("listen", listen);
    const auto endpoint = parseEndpoint(listen);
    if (!endpoint) {
        section.refuse("listen", "must be ADDR:PORT, such as \"127.0.0.1:8080\" or \"[::1]:8080\"");
    }
    api.listen = *endpoint;
    std::string auth = "token";
    section.readWord("auth", auth, {"token", "none"});
    api.auth = auth == "none" ? Configuration::Auth::eNone : Configuration::Auth::eToken;
    readCertificate(section, api.tls);
    section.read("public-url", api.publicUrl);
    if (!api.publicUrl.empty() && !originOf(api.publicUrl)) {
        section.refuse("public-url",
                       "must be the URL of the page, such as \"https://phone.example/journal/\"");
    }
    std::vector<std::string> origins = api.allowedOrigins;
    section.read("allowed-origins", origins);
    api.allowedOrigins.clear();
    for (const std::string& each : origins) {
        const auto origin = originOf(each);
        if (!origin || each.find('/', each.find("://") + 3) != std::string::npos) {
            section.refuse("allowed-origins", "must be origins, such as \"https://wallboard.example\"");
        }
        api.allowedOrigins.push_back(*origin);
    }
    auto perLine = static_cast<std::int64_t>(api.metricsPerLine);
    section.read("metrics-per-line", perLine, 0, 100'000);
    api.metricsPerLine = static_cast<std::size_t>(perLine);
    section.finish();
}

void readData(TomlSection& section, Configuration::Data& data) {
    section.readWord("store", data.store, {"sqlite"});
    std::optional<std::chrono::days> keep;
    readKeepDays(section, keep);
    data.keep = keep.value_or(data.keep);
    section.finish();
}

bool isRegion(const std::string& text) {
    return text.size() == 2 &&
           std::all_of(text.begin(), text.end(), [](char each) { return each >= 'A' && each <= 'Z'; });
}

bool isAccessCode(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789*#") == std::string::npos;
}

void readDigits(TomlSection& section, Configuration::Digits& digits) {
    section.read("region", digits.region);
    if (!isRegion(digits.region)) {
        section.refuse("region", "must be the two capital letters of a country, such as \"DE\"");
    }
    if (!NumberingPlan(digits.region).supportsRegion()) {
        // Numbers and emergency numbers would be judged by no country.
        section.refuse("region", "\"" + digits.region +
                                     "\" is no country with a numbering plan; that of the United Kingdom is "
                                     "\"GB\"");
    }
    section.read("feature-access-codes", digits.featureAccessCodes);
    if (!std::all_of(digits.featureAccessCodes.begin(), digits.featureAccessCodes.end(), isAccessCode)) {
        section.refuse("feature-access-codes", "each code must consist of digits, \"*\" and \"#\"");
    }
    section.read("outside-line", digits.outsideLine);
    if (!digits.outsideLine.empty() && !isAccessCode(digits.outsideLine)) {
        section.refuse("outside-line", "must consist of digits, \"*\" and \"#\"");
    }
    std::string form = digits.dialInternational ? "international" : "national";
    section.readWord("dial", form, {"national", "international"});
    digits.dialInternational = form == "international";
    section.finish();
}

/// "call.filed, call.ringing, ...".
std::string eventWords() {
    std::string text;
    for (const std::string_view word : kJournalEventWords) {
        text += (text.empty() ? "" : ", ") + std::string(word);
    }
    return text;
}

void readLog(TomlSection& section, Configuration::Logging& log) {
    section.readWord("level", log.level, {"error", "warning", "info", "debug", "trace"});
    section.readWord("library-level", log.libraryLevel, {"error", "warning", "info", "debug", "trace"});
    section.read("file", log.file);
    section.read("private", log.isPrivate);
    section.finish();
}

Configuration::Webhook readWebhook(TomlSection& section) {
    Configuration::Webhook hook;
    section.readName("url", hook.url);
    if (!receiverOrigin(hook.url)) {
        section.refuse("url", "must be the URL of a receiver, such as \"https://crm.example/calls\"");
    }
    std::vector<std::string> words;
    section.read("events", words);
    for (const std::string& word : words) {
        const auto kind = journalEventOf(word);
        if (!kind) {
            section.refuse("events", "\"" + word + "\" is no event; there are " + eventWords());
        }
        hook.events.insert(*kind);
    }
    if (hook.events.empty()) {
        section.refuse("events", "must name one event or more of " + eventWords());
    }
    section.readName("secret-file", hook.secretFile);
    section.read("ca-file", hook.authorities);
    if (!hook.authorities.empty() && !hook.url.starts_with("https:")) {
        section.refuse("ca-file", "is for a receiver with https");
    }
    section.finish();
    return hook;
}

void readWebhooks(TomlSection& file, std::vector<Configuration::Webhook>& webhooks) {
    constexpr std::size_t kMost = 16;
    for (TomlSection& section : file.sections("webhook")) {
        Configuration::Webhook hook = readWebhook(section);
        if (std::any_of(webhooks.begin(), webhooks.end(),
                        [&hook](const auto& other) { return other.url == hook.url; })) {
            section.refuse("url", "is the URL of another webhook already");
        }
        if (webhooks.size() == kMost) {
            section.refuse("", "there may be " + std::to_string(kMost) + " webhooks");
        }
        webhooks.push_back(std::move(hook));
    }
}

template <typename Section>
void readSection(TomlSection& file, const char* name, void (*reader)(TomlSection&, Section&),
                 Section& result) {
    if (std::optional<TomlSection> section = file.section(name)) {
        reader(*section, result);
    }
}

/// Reads `[switch]`, or each `[[switch]]`.
void readSwitches(TomlSection& file, Configuration& configuration) {
    std::vector<TomlSection> sections = file.sections("switch");
    std::set<std::string> names;
    for (std::size_t at = 0; at < sections.size(); ++at) {
        Configuration::Switch callSwitch = at == 0 ? configuration.callSwitch : Configuration::Switch();
        readSwitch(sections[at], callSwitch);
        if (sections.size() > 1 && callSwitch.name.empty()) {
            sections[at].refuse("name", "is needed where there are several switches");
        }
        if (!names.insert(callSwitch.name).second) {
            sections[at].refuse("name", "\"" + callSwitch.name + "\" is another switch already");
        }
        if (at == 0) {
            configuration.callSwitch = std::move(callSwitch);
        } else {
            configuration.moreSwitches.push_back(std::move(callSwitch));
        }
    }
}

/// Refuses a line that names a switch which there is not.
void requireSwitches(const TomlSection& file, const Configuration& configuration) {
    std::set<std::string> names{"", configuration.callSwitch.name};
    for (const Configuration::Switch& each : configuration.moreSwitches) {
        names.insert(each.name);
    }
    for (const Configuration::Line& line : configuration.lines) {
        if (!names.contains(line.switchName)) {
            file.refuse("line", "line " + line.device + " has the switch \"" + line.switchName +
                                    "\", which is none of the switches");
        }
    }
}

/// Adds the lines of the file that `lines-file` names; a relative path begins at the configuration's
/// directory.
void readLinesFile(TomlSection& file, const std::string& fileName, std::vector<Configuration::Line>& lines) {
    std::string name;
    file.read("lines-file", name);
    if (name.empty()) {
        return;
    }
    const std::filesystem::path path = std::filesystem::path(fileName).parent_path() / name;
    if (!file.has("line")) {
        lines.clear();
    }
    try {
        addLinesOf(path, lines);
    } catch (const std::runtime_error& error) {
        file.refuse("lines-file", error.what());
    }
}

}  // namespace

Configuration readConfiguration(std::string_view toml, const std::string& fileName,
                                Configuration configuration) {
    const toml::table table = parseToml(toml, fileName);
    TomlSection file(table, "", fileName);
    readLines(file, configuration.lines);
    readSwitches(file, configuration);
    readLinesFile(file, fileName, configuration.lines);
    requireSwitches(file, configuration);
    readSection(file, "api", readApi, configuration.api);
    readSection(file, "data", readData, configuration.data);
    readSection(file, "management", readManagement, configuration.management);
    readSection(file, "digits", readDigits, configuration.digits);
    readSection(file, "log", readLog, configuration.log);
    readWebhooks(file, configuration.webhooks);
    file.finish();
    return configuration;
}

Configuration loadConfiguration(const std::filesystem::path& file, Configuration defaults) {
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
        throw ConfigurationError(file.string() + ": is a directory, not a configuration file");
    }
    constexpr std::size_t kMostBytes = 1024U * 1024U;
    std::string toml;
    try {
        toml = readWholeFile(file, kMostBytes);
    } catch (const std::runtime_error& failure) {
        throw ConfigurationError(file.string() + ": cannot be read: " + failure.what());
    }
    return readConfiguration(toml, file.string(), std::move(defaults));
}

}  // namespace host
