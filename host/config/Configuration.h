#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/config/Endpoint.h"
#include "host/journal-events/JournalEvent.h"
#include "host/tls/TlsFiles.h"

namespace host {

/// The configuration of the program: the values of the configuration file (docs/configuration.md), each with
/// a default, and the overrides of the command line. `ConfigurationReader.h` reads it from TOML.
///
/// A plain value; not synchronised.
struct Configuration {
    /// A device of another person that the line shares.
    struct SharedDevice {
        std::string device;
        /// True if a call that is not answered at that device is logged as missed on this line.
        bool logMissedCalls = true;

        bool operator==(const SharedDevice&) const = default;
    };

    struct Line {
        /// The own number at the switch.
        std::string device = "2001";
        /// Whose telephone it is; may be empty.
        std::string name{};
        /// The name of its switch; empty for the first one.
        std::string switchName{};
        std::vector<SharedDevice> shared;
        /// True if a telephone is paired over Bluetooth.
        bool bluetooth = false;
        /// The numbers whose calls are not kept, in any spelling; those that end in "*" are the begin of a
        /// number.
        std::vector<std::string> neverLog{};
        /// First values of the line's management keys, which override those of `Configuration::management`.
        std::map<std::string, std::string> management{};
        /// std::nullopt: as `Data::keep`.
        std::optional<std::chrono::days> keep{};

        bool operator==(const Line&) const = default;
    };

    struct Switch {
        /// For lines that name their switch; empty for the only one.
        std::string name{};
        std::string host = "127.0.0.1";
        std::uint16_t port = 4242;
        /// "ed3" to "ed6".
        std::string edition = "ed4";
        /// The way to open the association: "auto" or "application-session".
        std::string session = "auto";
        /// True if MonitorStart carries the wanted filters.
        bool sendFilters = true;
        bool tls = false;
        /// The check of the switch's certificate, and the link's own one.
        ServerTrust trust{};
        std::chrono::seconds reconnectMax{30};
        std::chrono::hours callMax{12};

        bool operator==(const Switch&) const = default;
    };

    enum class Auth { eToken, eNone };
    struct Api {
        Endpoint listen{"127.0.0.1", 8080};
        Auth auth = Auth::eToken;
        /// The server's certificate and key; both empty for no TLS.
        CertificateFiles tls{};
        /// The URL of the page for browsers, if a proxy serves it; empty for none.
        std::string publicUrl{};
        /// The origins of other pages that may use the API, as `originOf` returns them.
        std::vector<std::string> allowedOrigins{};
        /// With more lines, the metrics have the sums of all lines only.
        std::size_t metricsPerLine = 100;

        bool operator==(const Api&) const = default;
    };

    struct Data {
        std::string store = "sqlite";
        /// The time for which calls and callbacks are kept; 0 for ever.
        std::chrono::days keep{0};

        bool operator==(const Data&) const = default;
    };

    struct Digits {
        /// The country of the line's numbering plan, as two capital letters.
        std::string region = "DE";
        std::vector<std::string> featureAccessCodes{"*61"};
        /// Dialled before a number of the public numbering plan; empty for none.
        std::string outsideLine;
        /// True if such a number is dialled as "+4930123456".
        bool dialInternational = false;

        bool operator==(const Digits&) const = default;
    };

    struct Logging {
        /// Words that `Log::levelOf` accepts: for the host's own lines, and for those of the library.
        std::string level = "info";
        std::string libraryLevel = "warning";
        /// The path of the log file. If empty, the log goes to standard error.
        std::string file;
        /// True if the log shows names and numbers as they are.
        bool isPrivate = false;

        bool operator==(const Logging&) const = default;
    };

    /// A program that is told of what happens (docs/webhooks.md).
    struct Webhook {
        /// "http://..." or "https://...", possibly with a user and a password.
        std::string url;
        std::set<JournalEventKind> events;
        /// The file with the secret with which it is signed.
        std::string secretFile;
        /// The authorities of the certificate of its https; empty for those of the system.
        std::string authorities;

        bool operator==(const Webhook&) const = default;
    };

    /// Management keys with their values.
    using Keys = std::map<std::string, std::string>;

    /// Never empty, each device once. The first line is the default.
    std::vector<Line> lines{Line{}};
    /// The first switch, and further ones; each has another name then.
    Switch callSwitch;
    std::vector<Switch> moreSwitches;
    Api api;
    Data data;
    /// First values. A value that was changed at run time overrides them.
    Keys management{
        {"mac-addr", "00:00:00:00:00:00"}, {"software-type", "Norlith Qorvex"}, {"system-identifier", "0"}};
    /// Values from the command line (`--set`). They override all others until they are changed at run time.
    Keys managementOverrides;
    Digits digits;
    Logging log;
    std::vector<Webhook> webhooks;

    /// Sets a management override from the KEY=VALUE of the command line. The value is everything after the
    /// first "=" and may be empty. Throws `ConfigurationError` if the text has no valid key.
    void set(std::string_view keyAndValue);

    bool operator==(const Configuration&) const = default;
};

}  // namespace host
