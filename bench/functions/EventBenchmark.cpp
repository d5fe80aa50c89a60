// An event from its message to the list.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "bench/calls/CallWriter.h"
#include "bench/functions/PhoneUnderLoad.h"
#include "host/calls/PhoneCalls.h"
#include "host/csta-events/EventReader.h"
#include "host/csta-wire/WireDocument.h"

namespace {

constexpr std::size_t kListLength = 1000;
constexpr std::size_t kEventsOfCall = 5;

void countEvents(benchmark::State& state, std::size_t each) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(each));
}

/// Parses the five messages of a call and makes the phone's events of them.
void parseEvents(benchmark::State& state) {
    const host::SwitchMonitor monitor{
        .id = "1", .device = bench::kDevice, .number = bench::kDevice, .client = 1, .filter = {}};
    const std::vector<std::string> messages = bench::messagesOf({}, 17, monitor);
    host::PhoneCalls calls;
    host::EventReader reader(bench::kDevice, calls);
    for (auto _ : state) {
        for (const std::string& message : messages) {
            std::string fault;
            const std::optional<host::WireDocument> document = host::WireDocument::parse(message, fault);
            benchmark::DoNotOptimize(reader.read(*document, {monitor.id, bench::kDevice}));
        }
    }
    countEvents(state, messages.size());
}
BENCHMARK(parseEvents);

/// Delivers calls of the parties that are in the list already. The argument is the length of the list.
void fileRepeatedCalls(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    bench::PhoneUnderLoad phone(length);
    const auto events = bench::PhoneUnderLoad::eventsOf(
        {.parties = length, .stride = length == 1 ? std::size_t{1} : std::size_t{7}, .idPrefix = "4"},
        length);
    for (auto _ : state) {
        phone.deliver(events);
    }
    countEvents(state, events.size());
}
BENCHMARK(fileRepeatedCalls)->Arg(1)->Arg(kListLength)->Unit(benchmark::kMicrosecond);

/// Delivers calls of new parties into a full list, so that each evicts an entry.
void fileNewCallers(benchmark::State& state, bool decimalIds) {
    bench::PhoneUnderLoad phone(kListLength);
    std::vector<std::vector<host::PhoneEvent>> passes;
    for (const std::size_t first : {std::size_t{1}, std::size_t{2}}) {
        passes.push_back(bench::PhoneUnderLoad::eventsOf(
            {.firstParty = first * kListLength, .decimalIds = decimalIds, .idPrefix = "5"}, kListLength));
    }
    std::size_t pass = 0;
    for (auto _ : state) {
        phone.deliver(passes[pass]);
        pass = 1 - pass;
    }
    countEvents(state, kListLength * kEventsOfCall);
}
BENCHMARK_CAPTURE(fileNewCallers, decimalIds, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(fileNewCallers, textIds, false)->Unit(benchmark::kMicrosecond);

/// Delivers the events of a call that no list shows: a handler and the tracker of calls without the filing.
void deliverHeldCall(benchmark::State& state) {
    bench::PhoneUnderLoad phone(1);
    auto events = bench::PhoneUnderLoad::eventsOf({.idPrefix = "6"}, 1);
    phone.phone().delivers(*events.at(0).event);
    phone.phone().delivers(*events.at(1).event);
    for (auto _ : state) {
        phone.phone().delivers(*events.at(2).event);
        phone.phone().delivers(*events.at(3).event);
    }
    countEvents(state, 2);
}
BENCHMARK(deliverHeldCall);

}  // namespace
