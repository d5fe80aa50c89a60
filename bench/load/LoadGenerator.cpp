// Plays calls to a server as its switch, over TCP, and measures how fast an observer is notified of them:
//   load_generator [options] -- COMMAND...
// COMMAND (`calljournal serve --listen 127.0.0.1:0`, `journal_baseline`) is started with `--data` and
// `--switch` appended. Prints one JSON object.

#include <CLI/CLI.hpp>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "bench/load/LoadRun.h"
#include "bench/load/LoadSwitch.h"
#include "bench/load/ObserverCrowd.h"
#include "bench/load/ObserverSocket.h"
#include "bench/load/ServerProcess.h"

namespace {

using Kind = bench::ObserverSocket::Kind;

constexpr std::size_t kFillInFlight = 64;
/// Longer than a second: two calls of one party within the same second are one call to a journal.
constexpr std::chrono::milliseconds kPause{1100};
/// Primes that divide no usual length of a list, so that the parties of each burst come in another order.
constexpr std::array<std::size_t, 6> kStrides = {7, 11, 13, 17, 19, 23};

struct Options {
    std::vector<std::string> command;
    std::filesystem::path data;
    std::vector<std::string> kinds{"received"};
    std::size_t fill = 1000;
    bool repeatsParties = false;
    std::size_t bursts = 1;
    bool textIds = false;
    bool measuresStream = false;
    std::size_t observers = 0;
    std::size_t streams = 0;
    std::size_t stoppedObservers = 0;
    std::size_t stoppedStreams = 0;
    bench::Pace pace;
};

void addOptions(CLI::App& app, Options& options) {
    app.add_option("--data", options.data, "the directory of the server's data; begins empty")->required();
    app.add_option("--kind", options.kinds,
                   "received, missed, dialled, forwarded: the lists to fill; the calls are of the last one")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--fill", options.fill,
                   "calls of each kind that fill the lists beforehand, each of another party");
    app.add_option("--calls", options.pace.calls, "calls to measure");
    app.add_option("--in-flight", options.pace.inFlight,
                   "calls that wait for their notification at most; 1 is a closed loop");
    app.add_option("--rate", options.pace.rate, "calls per second; as fast as possible without it");
    app.add_option("--bursts", options.bursts, "plays so many times --calls, with a pause between them");
    app.add_flag("--repeat", options.repeatsParties,
                 "the calls are of parties of the filled list; else each is of a new one");
    app.add_flag("--text-ids", options.textIds, "call ids that are no decimal numbers");
    app.add_flag("--stream", options.measuresStream, "measure an event stream, not a remote observer");
    app.add_option("--observers", options.observers, "remote observers beside the measured one");
    app.add_option("--streams", options.streams, "event streams beside the measured one");
    app.add_option("--stopped-observers", options.stoppedObservers, "remote observers that never read");
    app.add_option("--stopped-streams", options.stoppedStreams, "event streams that never read");
    app.add_option("command", options.command, "the server")->required();
}

/// The calls that fill the lists; returns the plan of the calls to measure.
bench::CallPlan fill(const Options& options, bench::LoadSwitch& callSwitch, bench::ObserverSocket& observer) {
    bench::CallPlan plan{.decimalIds = !options.textIds};
    for (const std::string& kind : options.kinds) {
        plan.kind = bench::callKindNamed(kind);
        if (options.fill > 0) {
            static_cast<void>(
                bench::LoadRun(callSwitch, observer, plan, {.calls = options.fill, .inFlight = kFillInFlight})
                    .play());
        }
        plan.firstParty += options.fill;
        plan.idPrefix += '7';
    }
    if (options.repeatsParties) {
        if (options.pace.calls > options.fill) {
            throw std::invalid_argument("with --repeat a burst has at most as many calls as --fill");
        }
        plan.firstParty -= options.fill;
        plan.parties = options.fill;
    }
    return plan;
}

/// The plan of the burst after `burst`.
bench::CallPlan following(bench::CallPlan plan, std::size_t calls, std::size_t burst) {
    if (plan.parties == 0) {
        plan.firstParty += calls;
    }
    plan.stride = kStrides.at(burst % kStrides.size());
    plan.idPrefix = "2" + std::to_string(burst);
    return plan;
}

nlohmann::json measure(const Options& options) {
    std::filesystem::remove_all(options.data);
    bench::LoadSwitch callSwitch;
    const bench::ServerProcess server(options.command, options.data, callSwitch.address());
    callSwitch.awaitMonitor();
    server.awaitSocket();
    bench::ObserverSocket observer(options.measuresStream ? Kind::eStream : Kind::eRemote, options.data);
    const std::size_t emptyKib = server.residentKib();
    bench::CallPlan plan = fill(options, callSwitch, observer);

    bench::ObserverCrowd crowd;
    crowd.add(Kind::eRemote, options.observers, options.data);
    crowd.add(Kind::eStream, options.streams, options.data);
    crowd.add(Kind::eRemote, options.stoppedObservers, options.data, false);
    crowd.add(Kind::eStream, options.stoppedStreams, options.data, false);
    crowd.start();

    const std::size_t filledKib = server.residentKib();
    bench::LoadResult result;
    std::chrono::microseconds processorTime{0};
    for (std::size_t burst = 0; burst < options.bursts; ++burst) {
        bench::LoadRun run(callSwitch, observer, plan, options.pace);
        std::this_thread::sleep_for(kPause);
        const auto processorBegin = server.processorTime();
        result.add(run.play());
        processorTime += server.processorTime() - processorBegin;
        plan = following(plan, options.pace.calls, burst);
    }
    const auto calls = static_cast<double>(result.latencies.size());
    return {{"calls", result.latencies.size()},
            {"seconds", result.time.count()},
            {"calls-per-second", result.callsPerSecond()},
            {"server-processor-us-per-call", static_cast<double>(processorTime.count()) / calls},
            {"latency-us",
             {{"p50", result.latency(0.5).count()},
              {"p99", result.latency(0.99).count()},
              {"p99.9", result.latency(0.999).count()},
              {"most", result.latencies.back().count()}}},
            {"most-in-flight", result.mostInFlight},
            {"resident-kib", {{"empty", emptyKib}, {"filled", filledKib}, {"end", server.residentKib()}}},
            {"crowd", {{"bytes", crowd.receivedBytes()}, {"disconnected", crowd.disconnected()}}}};
}

}  // namespace

int main(int count, char** arguments) {
    CLI::App app(
        "Plays calls to a server as its switch and measures how fast an observer is notified of them.");
    Options options;
    addOptions(app, options);
    CLI11_PARSE(app, count, arguments);
    try {
        std::cout << measure(options).dump() << std::endl;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "load_generator: %s\n", error.what());
        return 1;
    }
    return 0;
}
