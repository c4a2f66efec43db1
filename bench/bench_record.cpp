// SPDX-License-Identifier: MIT
// Recording and playing: what rows and files cost beside reading the robot, and what steps of a
// recording cost beside finding its fields.

#include "ratios.h"

#include "support/redis_server.h"
#include "support/request_for.h"

#include <kit/temporary_folder.h>

#include <replay/replay.h>
#include <row_sink.h>
#include <rows.h>

#include <zo/zo.h>

#include <benchmark/benchmark.h>

#include <csv.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int mostKeys = 100000;
constexpr auto moment = std::chrono::hours(24 * 365 * 50);

std::vector<std::string> keyNames(std::int64_t count)
{
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < count; ++i)
        names.push_back("Body/Joint" + std::to_string(i) + "/Position");
    return names;
}

std::vector<double> numbers(std::int64_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> positions(0.1, 1.0);
    std::vector<double> values(static_cast<std::size_t>(count));
    for (double& value : values)
        value = positions(generator);
    return values;
}

/// The robot of all benchmarks, with every key.
ZoMemoryProxy robotMemory()
{
    static const RedisServer server;
    static const auto broker = [] {
        ZoBrokerOptions options;
        options.exchangeTimeout = std::chrono::seconds(10); // a busy machine is no failure here
        auto made = ZoBroker::create("bench", "127.0.0.1", server.port(), options);
        const auto names = keyNames(mostKeys);
        const auto values = numbers(mostKeys, 1);
        ZoValue::Elements pairs;
        for (std::size_t i = 0; i < names.size(); ++i)
            pairs.push_back(ZoValue::fromElements({ZoValue(names[i]), ZoValue(values[i])}));
        ZoMemoryProxy(made->getProxy("ZoMemory", 0)).setListData(ZoValue::fromElements(pairs));
        return made;
    }();
    return ZoMemoryProxy(broker->getProxy("ZoMemory", 0));
}

void readAnswer(benchmark::State& state)
{
    ZoMemoryProxy memory = robotMemory();
    const ZoValue request = requestFor(keyNames(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(memory.getListAnswer(request));
}

/// The same, and a row of it in a file; `changes`: each value is another one than before.
void recordAnswer(benchmark::State& state, bool changes)
{
    ZoMemoryProxy memory = robotMemory();
    const auto names = keyNames(state.range(0));
    const ZoValue request = requestFor(names);
    std::vector<int> all(names.size());
    std::iota(all.begin(), all.end(), 0);
    TableRows rows(columnsOf(names));
    const kit::TemporaryFolder folder("bench");
    Rotation rotation;
    rotation.bytes = 50000000; // lest the disk fills up
    std::string text;
    std::unique_ptr<RotatingSink> sink;
    for (auto _ : state) {
        if (!sink || sink->bytes() > rotation.bytes) {
            state.PauseTiming();
            sink.reset();
            for (const auto& file : std::filesystem::directory_iterator(folder.path()))
                std::filesystem::remove(file);
            sink = std::make_unique<RotatingSink>(folder.path() + "/a.csv",
                                                  RecordingFile::Form{rows.header(), rows.fields()},
                                                  rotation, [](const std::string&) {});
            state.ResumeTiming();
        }
        ZoListAnswer answer = memory.getListAnswer(request);
        if (changes)
            answer.changed = all;
        text.clear();
        rows.add(moment, answer, text);
        sink->beginsFile(text.size(), moment);
        sink->add(text, moment);
    }
}

/// A table of so many keys and some megabytes, all of whose values change in each row.
class Table
{
public:
    explicit Table(std::int64_t keys)
    {
        std::vector<int> all(static_cast<std::size_t>(keys));
        std::iota(all.begin(), all.end(), 0);
        TableRows rows(columnsOf(keyNames(keys)));
        std::ofstream file(fPath);
        file << rows.header();
        for (fRows = 0; fRows * keys < 500000; ++fRows) {
            ZoValue::Elements values;
            for (const double number : numbers(keys, static_cast<unsigned>(fRows)))
                values.emplace_back(number);
            std::string row;
            rows.add(moment + std::chrono::milliseconds(fRows),
                     {ZoValue::fromElements(std::move(values)), {}, all}, row);
            file << row;
        }
    }

    const std::string& path() const { return fPath; }

private:
    const kit::TemporaryFolder fFolder{"bench"};
    const std::string fPath = fFolder.path() + "/table.csv";
    std::int64_t fRows = 0;
};

void findFields(benchmark::State& state)
{
    const Table table(state.range(0));
    std::vector<char> piece(65536);
    for (auto _ : state) {
        csv_parser parser{};
        csv_init(&parser, CSV_STRICT);
        std::size_t fields = 0;
        const auto count = [](void*, std::size_t, void* sum) { ++*static_cast<std::size_t*>(sum); };
        std::ifstream file(table.path());
        while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())),
               file.gcount() > 0)
            csv_parse(&parser, piece.data(), static_cast<std::size_t>(file.gcount()), count,
                      nullptr, &fields);
        csv_free(&parser);
        benchmark::DoNotOptimize(fields);
    }
}

void readSteps(benchmark::State& state)
{
    const Table table(state.range(0));
    for (auto _ : state) {
        RecordedFile recording(table.path());
        ReplayStep step;
        while (recording.next(step))
            benchmark::DoNotOptimize(step);
    }
}

std::vector<Ratio> ratiosWanted()
{
    std::vector<Ratio> ratios;
    for (const std::string keys : {"1000", "10000", "100000"}) {
        ratios.push_back({"record/steady/" + keys, "record/read_only/" + keys, 1.5});
        ratios.push_back({"record/changing/" + keys, "record/read_only/" + keys, 2.5});
    }
    for (const std::string keys : {"1000", "10000"})
        ratios.push_back({"replay/steps/" + keys, "replay/fields_only/" + keys, 2});
    return ratios;
}

} // namespace

int main(int argc, char** argv)
{
    const auto add = [](const std::string& name, auto body, int most) {
        benchmark::RegisterBenchmark(name.c_str(), body)
            ->RangeMultiplier(10)
            ->Range(1000, most)
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
    };
    add("record/read_only", readAnswer, mostKeys);
    add(
        "record/steady", [](benchmark::State& state) { recordAnswer(state, false); }, mostKeys);
    add(
        "record/changing", [](benchmark::State& state) { recordAnswer(state, true); }, mostKeys);
    add("replay/fields_only", findFields, 10000);
    add("replay/steps", readSteps, 10000);
    return runBenchmarks(argc, argv, ratiosWanted());
}
