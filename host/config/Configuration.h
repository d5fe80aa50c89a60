#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/config/ConfigurationError.h"
#include "host/config/Endpoint.h"

namespace host {

/// What the program is told from outside: the values of the configuration file (docs/configuration.md), every one with
/// a default, and what the command line puts above them. A plain value: whoever shares one synchronises.
///
/// A file is checked as a whole when it is read. An unknown key, a wrong type or a value out of bounds is refused with
/// a `ConfigurationError` that names file, line and key; nothing is guessed and nothing is passed over.
struct Configuration {
    /// A device of somebody else that the line shares.
    struct SharedDevice {
        std::string device;
        /// Whether a call that rings there unanswered is logged as missed here.
        bool logMissedCalls = true;

        bool operator==(const SharedDevice&) const = default;
    };

    struct Line {
        /// The own number at the switch.
        std::string device = "2001";
        std::vector<SharedDevice> shared;
        /// A telephone is paired over Bluetooth.
        bool bluetooth = false;

        bool operator==(const Line&) const = default;
    };

    struct Switch {
        std::string host = "127.0.0.1";
        std::uint16_t port = 4242;
        /// "ed3" to "ed6".
        std::string edition = "ed4";
        /// How the association is opened: "auto" or "application-session".
        std::string session = "auto";
        /// Whether monitors carry the wanted filters.
        bool sendFilters = true;
        bool tls = false;
        std::chrono::seconds reconnectMax{30};

        bool operator==(const Switch&) const = default;
    };

    enum class Auth { eToken, eNone };
    struct Api {
        Endpoint listen{"127.0.0.1", 8080};
        Auth auth = Auth::eToken;

        bool operator==(const Api&) const = default;
    };

    struct Data {
        std::string store = "sqlite";

        bool operator==(const Data&) const = default;
    };

    struct Digits {
        /// Two capital letters: the country whose numbering plan holds for the line.
        std::string region = "DE";
        std::vector<std::string> featureAccessCodes{"*61"};

        bool operator==(const Digits&) const = default;
    };

    struct Logging {
        /// One of the words of `Log::levelOf`.
        std::string level = "info";
        /// Empty: the standard error output.
        std::string file;

        bool operator==(const Logging&) const = default;
    };

    /// Management keys with their values.
    using Keys = std::map<std::string, std::string>;

    /// Never empty. The first is the one that is served when nobody names another.
    std::vector<Line> lines{Line{}};
    Switch callSwitch;
    Api api;
    Data data;
    /// First values; a value that was changed at run time wins over them.
    Keys management{
        {"mac-addr", "00:00:00:00:00:00"}, {"software-type", "Norlith Qorvex"}, {"system-identifier", "0"}};
    /// Values from the command line (`--set`); they win over everything until they are changed at run time.
    Keys managementOverrides;
    Digits digits;
    Logging log;

    /// Reads TOML; `fileName` is for messages.
    [[nodiscard]] static Configuration parse(std::string_view toml, const std::string& fileName);
    /// Reads a file; one that is absent or cannot be read is an error too.
    [[nodiscard]] static Configuration load(const std::filesystem::path& file);

    /// Takes a KEY=VALUE of the command line; everything behind the first "=" is the value, also when that is empty.
    void set(std::string_view keyAndValue);

    bool operator==(const Configuration&) const = default;
};

}  // namespace host
