#include "apps/calljournal/command-line/TrafficOption.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cmath>
#include <functional>

namespace calljournal {

namespace {

using Check = std::function<std::string(const std::string&)>;

constexpr double kMaxSeconds = 86'400;

/// A check that `text` is a number of that range.
Check isWithin(double from, double to, const std::string& range) {
    return [from, to, range](const std::string& text) {
        double number = 0;
        return CLI::detail::lexical_cast(text, number) && number >= from && number <= to
                   ? std::string()
                   : text + " is not " + range;
    };
}

std::chrono::milliseconds milliseconds(double seconds) {
    constexpr double kSecond = 1000;
    return std::chrono::milliseconds(std::llround(seconds * kSecond));
}

}  // namespace

CLI::Option* addTrafficOptions(CLI::App& app, TrafficValues& values) {
    auto* const lines =
        app.add_option("--lines", values.lines,
                       "play random calls of these devices, 2000..11999, once all of them are monitored")
            ->type_name("FIRST..LAST")
            ->check(Check([](const std::string& text) {
                return host::readDeviceRange(text)
                           ? std::string()
                           : text + " is no range of devices; write 2000..11999 (at most 100000 devices)";
            }));
    const auto add = [&app, lines](const char* name, auto& value, const char* text, const char* type) {
        return app.add_option(name, value, text)->type_name(type)->needs(lines);
    };
    const Check seconds = isWithin(0, kMaxSeconds, "a number of seconds from 0 to 86400");
    add("--calls", values.calls, "end after so many calls [never]", "N");
    add("--ring-time", values.ringSeconds, "the mean time that a call rings [5]", "SECONDS")->check(seconds);
    add("--talk-time", values.talkSeconds, "the mean time that the parties talk [60]", "SECONDS")
        ->check(seconds);
    add("--answered", values.established, "the share of the calls that are answered [0.7]", "0..1")
        ->check(isWithin(0, 1, "a share from 0 to 1"));
    add("--group-size", values.groupSize, "make each so many lines a hunt group [no groups]", "N");
    add("--seed", values.seed, "play other calls; the same seed has the same ones [1]", "N");
    add("--calls-file", values.callsFile, "write what each call was for each line to this CSV file", "FILE");
    app.add_flag("--together", values.together, "let one call for each line ring at the same moment")
        ->needs(lines);
    return lines;
}

host::TrafficOptions trafficOptions(const TrafficValues& values, double rate) {
    host::TrafficOptions options;
    options.devices = host::readDeviceRange(values.lines).value();
    options.rate = rate > 0 ? rate : options.rate;
    options.calls = values.calls;
    options.together = values.together;
    options.ringTime = milliseconds(values.ringSeconds);
    options.talkTime = milliseconds(values.talkSeconds);
    options.established = values.established;
    options.groupSize = values.groupSize;
    options.seed = values.seed;
    return options;
}

}  // namespace calljournal
