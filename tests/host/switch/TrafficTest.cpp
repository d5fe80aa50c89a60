#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <future>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "host/switch/traffic/CallsFile.h"
#include "host/switch/traffic/TrafficCall.h"
#include "host/switch/traffic/TrafficPlan.h"
#include "tests/host/switch/SwitchFixture.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using namespace std::chrono_literals;
using host::PlannedCall;
using host::TrafficOptions;
using host::TrafficResult;

TrafficOptions options(const std::string& range) {
    TrafficOptions options;
    options.devices = host::readDeviceRange(range).value();
    return options;
}

std::vector<PlannedCall> plan(const TrafficOptions& options) {
    std::vector<PlannedCall> calls;
    host::TrafficPlan plan(options);
    while (auto call = plan.next()) {
        calls.push_back(*call);
    }
    return calls;
}

TEST(TrafficTest, ranges) {
    const std::map<std::string, std::string> ranges = {
        {"2000..2002", "2000 2001 2002"},
        {"7..7", "7"},
        {"098..101", "098 099 100 101"},
        {"2001..2000", "none"},
        {"2000", "none"},
        {"2000..", "none"},
        {"..3", "none"},
        {"1..2..3", "none"},
        {"-1..3", "none"},
        {"1..100001", "none"},
        {"a..b", "none"},
        {"1234567890..1234567891", "none"},
        {"0000000001..2", "none"},
    };
    for (const auto& [text, expected] : ranges) {
        std::string devices;
        for (const std::string& device :
             host::readDeviceRange(text).value_or(std::vector<std::string>{"none"})) {
            devices += (devices.empty() ? "" : " ") + device;
        }
        EXPECT_EQ(devices, expected) << text;
    }
    EXPECT_EQ(host::readDeviceRange("1..100000").value().size(), 100'000U);
}

TEST(TrafficTest, a_plan_has_the_rate_and_the_shares_that_were_asked_for) {
    TrafficOptions traffic = options("2000..2099");
    traffic.rate = 50;
    traffic.calls = 20'000;
    traffic.groupSize = 8;
    const std::vector<PlannedCall> calls = plan(traffic);
    ASSERT_EQ(calls.size(), traffic.calls);
    const auto share = [&calls](auto&& isOne) {
        return static_cast<double>(std::count_if(calls.begin(), calls.end(), isOne)) /
               static_cast<double>(calls.size());
    };
    const auto mean = [&calls](auto&& timeOf) {
        std::chrono::duration<double> sum{0};
        for (const PlannedCall& call : calls) {
            sum += timeOf(call);
        }
        return sum.count() / static_cast<double>(calls.size());
    };
    EXPECT_NEAR(std::chrono::duration<double>(calls.back().begin).count(), 400, 12);
    EXPECT_NEAR(mean([](const PlannedCall& call) { return call.ringing; }), 5, 0.15);
    EXPECT_NEAR(mean([](const PlannedCall& call) { return call.talking; }), 60, 2);
    EXPECT_NEAR(share([](const PlannedCall& call) { return call.established; }), 0.7, 0.02);
    EXPECT_NEAR(share([](const PlannedCall& call) { return call.callerIsHere; }), 0.5, 0.02);
    EXPECT_NEAR(share([](const PlannedCall& call) { return call.callerIsHere && call.calledIsHere; }), 0.25,
                0.02);
    EXPECT_NEAR(share([](const PlannedCall& call) { return !call.group.empty(); }), 0.1, 0.01);
    EXPECT_TRUE(std::is_sorted(
        calls.begin(), calls.end(),
        [](const PlannedCall& one, const PlannedCall& other) { return one.begin < other.begin; }));

    std::set<std::string> groups;
    for (const PlannedCall& call : calls) {
        EXPECT_EQ(std::count(call.called.begin(), call.called.end(), call.caller), 0);
        EXPECT_LT(call.taker, call.called.size());
        if (!call.group.empty()) {
            groups.insert(call.group + " " + call.called.front() + "-" + call.called.back());
        }
    }
    EXPECT_EQ(groups.size(), 13U);
    EXPECT_EQ(*groups.begin(), "2100 2000-2007");
    EXPECT_EQ(*groups.rbegin(), "2112 2096-2099");
}

TEST(TrafficTest, a_seed_decides_all_calls) {
    const auto text = [](std::uint64_t seed) {
        TrafficOptions traffic = options("2000..2099");
        traffic.calls = 50;
        traffic.seed = seed;
        std::ostringstream out;
        for (const PlannedCall& call : plan(traffic)) {
            out << call.begin.count() << call.caller << call.called.front() << call.talking.count() << ' ';
        }
        return out.str();
    };
    EXPECT_EQ(text(7), text(7));
    EXPECT_NE(text(7), text(8));
}

TEST(TrafficTest, calls_together_ring_at_each_device_once) {
    for (const auto& [asked, expected] : std::map<std::uint64_t, std::size_t>{{0, 10}, {3, 3}, {99, 10}}) {
        TrafficOptions traffic = options("10..19");
        traffic.together = true;
        traffic.calls = asked;
        const std::vector<PlannedCall> calls = plan(traffic);
        EXPECT_EQ(calls.size(), expected) << asked;
        for (std::size_t each = 0; each < calls.size(); ++each) {
            EXPECT_EQ(calls[each].called, std::vector{traffic.devices[each]});
            EXPECT_EQ(calls[each].begin, 0s);
            EXPECT_EQ(calls[each].ringing, traffic.ringTime);
        }
    }
}

std::string word(TrafficResult result) {
    static const std::map<TrafficResult, std::string> words = {{TrafficResult::eMissed, "missed"},
                                                               {TrafficResult::eReceived, "received"},
                                                               {TrafficResult::eDialled, "dialled"},
                                                               {TrafficResult::eElsewhere, "elsewhere"}};
    return words.at(result);
}

/// The parts that end with the events.
std::string parts(const host::TrafficCall& call, const host::SwitchEvents& events) {
    std::string text;
    for (const host::SwitchEvent& event : events) {
        if (const auto part = call.endedPart(event)) {
            text += (text.empty() ? "" : ", ") + part->device + " " + word(part->result) + " " + part->number;
        }
    }
    return text;
}

TEST(TrafficTest, a_call_ends_for_each_of_its_devices_once) {
    struct Row {
        PlannedCall plan;
        /// At the end of the ringing, and of the talk.
        std::string first;
        std::string last;
    };
    const auto planned = [](const std::string& caller, std::vector<std::string> called, bool established) {
        PlannedCall call;
        call.caller = caller;
        call.callerIsHere = caller.size() == 4;
        call.calledIsHere = called.front().size() == 4;
        call.group = called.size() > 1 ? "2100" : "";
        call.called = std::move(called);
        call.established = established;
        call.taker = call.called.size() - 1;
        return call;
    };
    const std::vector<Row> rows = {
        {planned("+1555", {"2001"}, false), "2001 missed +1555", ""},
        {planned("+1555", {"2001"}, true), "", "2001 received +1555"},
        {planned("2001", {"+1555"}, false), "2001 dialled +1555", ""},
        {planned("2001", {"+1555"}, true), "", "2001 dialled +1555"},
        {planned("2001", {"2002"}, false), "2001 dialled 2002, 2002 missed 2001", ""},
        {planned("2001", {"2002"}, true), "", "2001 dialled 2002, 2002 received 2001"},
        {planned("+1555", {"2001", "2002", "2003"}, false),
         "2001 missed +1555, 2002 missed +1555, 2003 missed +1555", ""},
        {planned("+1555", {"2001", "2002", "2003"}, true), "2001 elsewhere +1555, 2002 elsewhere +1555",
         "2003 received +1555"},
    };
    for (const Row& row : rows) {
        host::TrafficCall call("1", row.plan);
        EXPECT_EQ(parts(call, call.begin()), "");
        EXPECT_EQ(parts(call, call.stopRinging()), row.first);
        EXPECT_EQ(call.isOver(), row.last.empty());
        EXPECT_EQ(parts(call, call.hangUp()), row.last);
        EXPECT_TRUE(call.isOver());
    }
}

TEST(TrafficTest, a_client_may_end_a_call) {
    PlannedCall plan;
    plan.caller = "+1555";
    plan.called = {"2001"};
    plan.calledIsHere = plan.established = true;
    host::TrafficCall call("1", plan);
    static_cast<void>(call.begin());
    EXPECT_EQ(call.find("2002"), nullptr);
    EXPECT_EQ(parts(call, call.find("2001")->hangUp(host::SwitchCall::Side::eCalled, "normalClearing")),
              "2001 missed +1555");
    EXPECT_TRUE(call.isOver());
    EXPECT_TRUE(call.stopRinging().empty());
    EXPECT_TRUE(call.hangUp().empty());
}

TEST(TrafficTest, phones_get_the_events_of_the_calls_that_the_file_names) {
    host::SwitchSimulator simulator({.port = 0});
    simulator.start();
    TrafficOptions traffic = options("2001..2004");
    traffic.rate = 2000;
    traffic.calls = 200;
    traffic.ringTime = traffic.talkTime = 1ms;
    traffic.groupSize = 2;
    std::promise<void> finished;
    unsigned begun = 0;
    std::map<std::string, unsigned> expected;
    simulator.run(traffic, {.begun = [&begun] { ++begun; },
                            .ended = [&expected](const std::string& /*callId*/,
                                                 const host::TrafficPart& part) { ++expected[part.device]; },
                            .finished = [&finished] { finished.set_value(); }});
    switchtest::Client client(simulator.port());
    auto over = finished.get_future();
    for (const std::string& device : traffic.devices) {
        EXPECT_EQ(over.wait_for(0s), std::future_status::timeout);
        client.monitor(device);
    }
    ASSERT_EQ(over.wait_for(30s), std::future_status::ready);
    EXPECT_EQ(begun, traffic.calls);

    std::map<std::string, unsigned> ended;
    std::istringstream devices(client.events());
    for (std::string device; std::getline(devices, device, ';');) {
        std::istringstream words(device);
        std::string number;
        words >> number;
        for (std::string event; words >> event;) {
            ended[number] += event == "Cleared/null" ? 1 : 0;
        }
    }
    EXPECT_EQ(ended, expected);
    EXPECT_EQ(expected.size(), 4U);
    simulator.stop();
}

TEST(TrafficTest, the_file_of_calls) {
    const ::TemporaryDirectory directory;
    const std::string path = directory.path() / "calls.csv";
    host::CallsFile file(path);
    file.add("17", {"2001", TrafficResult::eMissed, "+1555"},
             std::chrono::system_clock::time_point(1'700'000'000'000'042us));
    EXPECT_TRUE(file.finish());
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(),
              "device,result,number,call_id,ended\r\n2001,missed,+1555,17,2023-11-14T22:13:20.000042Z\r\n");
    EXPECT_THROW(host::CallsFile(directory.path() / "none" / "calls.csv"), std::runtime_error);
    EXPECT_THROW(host::CallsFile("/dev/full"), std::runtime_error);
}

}  // namespace
