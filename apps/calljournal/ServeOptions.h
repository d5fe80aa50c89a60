#pragma once

#include <string>
#include <vector>

#include "host/config/Configuration.h"

namespace CLI {
class App;
}

namespace calljournal {

/// The options with which a journal is served, and what they say together. Later ones win: the file, then `--listen` and
/// `--switch`, then `--set`.
class ServeOptions {
public:
    /// `withSwitch`: also `--switch`, where the command does not bring a switch of its own.
    void addTo(CLI::App& app, bool withSwitch);

    /// Throws `ConfigurationError`. Sets up the log as the configuration says; `logLevel` is that without a file.
    [[nodiscard]] host::Configuration configure(const std::string& logLevel = "info") const;

private:
    std::string m_file;
    std::string m_listen;
    std::string m_switch;
    std::vector<std::string> m_keys;
};

}  // namespace calljournal
