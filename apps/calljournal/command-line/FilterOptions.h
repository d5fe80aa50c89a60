#pragma once

#include <map>
#include <string>

#include "host/api-client/ApiClient.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace calljournal {

/// The options that select calls of the history, the same as the parameters of the HTTP API. Passes their
/// texts on: the server checks them and words the errors. One thread.
///
/// Requires: the object outlives the `app` that its options are added to.
class FilterOptions {
public:
    FilterOptions() = default;
    FilterOptions(const FilterOptions&) = delete;
    FilterOptions& operator=(const FilterOptions&) = delete;

    /// Adds --since, --until, --tz, --number, --search, --list, --direction, --viewed and --min-duration.
    void addSelection(CLI::App& app);
    /// Adds --sort.
    void addOrder(CLI::App& app);

    /// True if an option that leaves out calls is given: not --tz and --sort.
    [[nodiscard]] bool selectsCalls() const;
    /// The given options as parameters of a request, also those with an empty text, which the server refuses.
    [[nodiscard]] host::ApiClient::Query query() const;

private:
    void add(CLI::App& app, const char* name, const char* type, const char* help);

    struct Filter {
        /// Owned by the `app`.
        const CLI::Option* option = nullptr;
        std::string value;
    };

    [[nodiscard]] static bool isGiven(const Filter& filter);

    /// By the name of the parameter.
    std::map<std::string, Filter> m_filters;
};

}  // namespace calljournal
