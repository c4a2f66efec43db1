// SPDX-License-Identifier: MIT
// Reading a robot's memory: whole fetches beside a bare MGET of the same keys, storing a reply,
// and reading numbers back. Prints the ratios that matter and the memory that a model takes.

#include "ratios.h"
#include "raw_fetch.h"

#include "gc_interface.h"
#include "module.h"
#include "record_finder.h"
#include "support/redis_server.h"
#include "support/request_for.h"

#include <zo/zo.h>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int mostKeys = 100000;

std::string keyName(int i)
{
    return "Body/Joint" + std::to_string(i) + "/Position";
}

std::string aliasName(int i)
{
    return "Joint" + std::to_string(i);
}

/// A float between 0.1 and 1, written with all of its 17 digits.
std::string longFloat(std::mt19937& generator)
{
    std::uniform_real_distribution<double> positions(0.1, 1.0);
    std::string text(32, '\0');
    const int size = std::snprintf(text.data(), text.size(), "%.17g", positions(generator));
    text.resize(static_cast<std::size_t>(size));
    return text;
}

/// The robot of all benchmarks, with every key.
const RedisServer& robot()
{
    static const auto server = [] {
        auto made = std::make_unique<RedisServer>();
        std::mt19937 generator(1);
        for (int i = 0; i < mostKeys;) {
            std::vector<std::string> words{"MSET"};
            for (const int end = i + 1000; i < end; ++i) {
                words.push_back(keyName(i));
                words.push_back(longFloat(generator));
            }
            made->command(words);
        }
        return made;
    }();
    return *server;
}

class Observer final : public GCInterface
{
public:
    void refreshTree() override { ++refreshed; }
    void resetTree() override {}

    int refreshed = 0;
};

/// A module with the first `keys` keys of the robot.
struct Panel
{
    explicit Panel(int keys)
    {
        module.fGCInterface = &observer;
        for (int i = 0; i < keys; ++i)
            module.addSTMVal(keyName(i), aliasName(i));
    }

    /// Whether a fetch went through: a failing one is silent and fast.
    bool fetch()
    {
        const int before = observer.refreshed;
        module.getDatas(true);
        return observer.refreshed == before + 1;
    }

    static ZoBrokerOptions patient()
    {
        ZoBrokerOptions options;
        options.exchangeTimeout = std::chrono::seconds(10); // a busy machine is no failure here
        return options;
    }

    boost::shared_ptr<ZoBroker> broker =
        ZoBroker::create("bench", "127.0.0.1", robot().port(), patient());
    Observer observer;
    Module module{boost::make_shared<ZoMemoryProxy>(broker->getProxy("ZoMemory", 0))};
};

void fetchGlimmet(benchmark::State& state)
{
    Panel panel(static_cast<int>(state.range(0)));
    if (!panel.fetch() || panel.module.fModel->fSTMVals.back()->type != "float")
        return state.SkipWithError("the first fetch failed");
    for (auto _ : state) {
        if (!panel.fetch())
            return state.SkipWithError("a fetch failed");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// A request for a model's first `keys` keys, and a reply of as many floats.
std::pair<ZoValue, ZoValue> exchangeOf(int keys)
{
    std::mt19937 generator(2);
    std::vector<std::string> names;
    ZoValue reply;
    reply.arraySetSize(keys);
    for (int i = 0; i < keys; ++i) {
        names.push_back(keyName(i));
        reply[i] = std::strtod(longFloat(generator).c_str(), nullptr);
    }
    return {requestFor(names), std::move(reply)};
}

/// The first fetch of a panel over a link that is up: its request is made, and every record gets
/// its first type and value.
void fetchCold(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        std::optional<Panel> panel(static_cast<int>(state.range(0)));
        ZoMemoryProxy(panel->broker->getProxy("ZoMemory", 0)).getListData(exchangeOf(1).first);
        state.ResumeTiming();
        if (!panel->fetch())
            return state.SkipWithError("a fetch failed");
        state.PauseTiming();
        panel.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::vector<std::string> keyNames(int keys)
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(keys));
    for (int i = 0; i < keys; ++i)
        names.push_back(keyName(i));
    return names;
}

void fetchRawMget(benchmark::State& state)
{
    RawFetch raw(robot().port(), keyNames(static_cast<int>(state.range(0))));
    raw.format();
    for (auto _ : state) {
        if (!raw.fetch())
            return state.SkipWithError("MGET failed");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void fetchRawCold(benchmark::State& state)
{
    RawFetch raw(robot().port(), keyNames(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        raw.format();
        if (!raw.fetch())
            return state.SkipWithError("MGET failed");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void fill(Model& model, int keys)
{
    for (int i = 0; i < keys; ++i)
        model.addSTMVal(keyName(i), aliasName(i));
}

void store(benchmark::State& state)
{
    const int keys = static_cast<int>(state.range(0));
    Model model;
    fill(model, keys);
    const auto [request, reply] = exchangeOf(keys);
    KeyFinder byKey;
    for (auto _ : state)
        model.refreshSTMVals(request, reply, byKey);
    state.SetItemsProcessed(state.iterations() * keys);
}

void numbers(benchmark::State& state)
{
    const int keys = static_cast<int>(state.range(0));
    Model model;
    fill(model, keys);
    const auto [request, reply] = exchangeOf(keys);
    KeyFinder byKey;
    model.refreshSTMVals(request, reply, byKey);
    std::vector<std::string> aliases;
    aliases.reserve(static_cast<std::size_t>(keys));
    for (int i = 0; i < keys; ++i)
        aliases.push_back(aliasName(i));
    std::sort(aliases.begin(), aliases.end()); // as series are kept, not as keys were added
    AliasFinder byAlias;
    std::vector<std::optional<double>> found;
    for (auto _ : state) {
        model.getDoubleVals(aliases, byAlias, found);
        benchmark::DoNotOptimize(found.data());
    }
    state.SetItemsProcessed(state.iterations() * keys);
}

std::size_t allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::size_t textBytes(const Model& model)
{
    std::size_t bytes = 0;
    for (const auto& record : model.fSTMVals)
        bytes += record->names.first.size() + record->names.second.size() + record->type.size() +
                 record->value.size();
    return bytes;
}

void printBytes(const char* what, std::size_t bytes, const Model& model)
{
    const double all = static_cast<double>(bytes) / mostKeys;
    const double texts = static_cast<double>(textBytes(model)) / mostKeys;
    std::printf("%s of %d fetched keys: %.0f bytes a key, of which %.0f are texts and %.0f are "
                "not\n",
                what, mostKeys, all, texts, all - texts);
}

/// Of the records with what finds them, and of everything that stays after a fetch: beside the
/// model, the request kept for the next one, as values and encoded, and the link's buffers.
void printMemory()
{
    const auto exchange = exchangeOf(mostKeys);
    robot();
    std::size_t before = allocatedBytes();
    {
        Model model;
        KeyFinder byKey;
        fill(model, mostKeys);
        model.refreshSTMVals(exchange.first, exchange.second, byKey);
        printBytes("model    ", allocatedBytes() - before, model);
    }
    before = allocatedBytes();
    Panel panel(mostKeys);
    if (!panel.fetch())
        throw std::runtime_error("the fetch for the memory figure failed");
    printBytes("all of it", allocatedBytes() - before, *panel.module.fModel);
}

std::vector<Ratio> ratiosWanted()
{
    std::vector<Ratio> ratios;
    for (const char* keys : {"1000", "10000", "100000"})
        ratios.push_back(
            {std::string("fetch/glimmet/") + keys, std::string("fetch/raw_mget/") + keys, 1.5});
    for (const char* keys : {"1000", "10000", "100000"})
        ratios.push_back(
            {std::string("fetch/cold/") + keys, std::string("fetch/raw_cold/") + keys, 2.5});
    for (const std::string name : {"fetch/glimmet", "fetch/cold", "store", "numbers"})
        ratios.push_back({name + "/100000", name + "/10000", 12});
    return ratios;
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const char* name, void (*body)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, body)
            ->RangeMultiplier(10)
            ->Range(100, mostKeys)
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
    };
    add("fetch/glimmet", fetchGlimmet);
    add("fetch/raw_mget", fetchRawMget);
    add("fetch/cold", fetchCold);
    add("fetch/raw_cold", fetchRawCold);
    add("store", store);
    add("numbers", numbers);
    const int status = runBenchmarks(argc, argv, ratiosWanted());
    printMemory();
    return status;
}
