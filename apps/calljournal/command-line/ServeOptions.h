#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/config/Configuration.h"

namespace CLI {
class App;
}

namespace calljournal {

/// Configures the log of the program. Throws `std::runtime_error` if the file cannot be written.
void configureLog(const host::Configuration::Logging& log);

/// The options of `serve` and `demo`, and the configuration that they result in. `--listen`, `--switch` and
/// `--set` override the file.
class ServeOptions {
public:
    /// `withSwitch`: adds `--switch` too, for a command without its own switch; it also reads the user's
    /// configuration file if no other is named.
    void addTo(CLI::App& app, bool withSwitch);

    /// Returns the configuration, over the default values of `configuration`, and configures the log with it.
    /// `logLevel` applies if there is no file. Throws `ConfigurationError`.
    [[nodiscard]] host::Configuration configure(const std::string& logLevel = "info",
                                                host::Configuration configuration = {}) const;

    /// The same without the log's configuration: reads the file again.
    [[nodiscard]] host::Configuration load(const std::string& logLevel,
                                           host::Configuration configuration) const;

    /// The configuration file that is read; empty for none.
    [[nodiscard]] std::filesystem::path file() const;
    /// True if `--config` names it.
    [[nodiscard]] bool namesFile() const noexcept { return !m_file.empty(); }
    /// As `--config`.
    void setFile(const std::filesystem::path& file) { m_file = file.string(); }

private:
    bool m_readsUserFile = false;
    std::string m_file;
    std::string m_listen;
    std::string m_switch;
    std::vector<std::string> m_keys;
};

}  // namespace calljournal
