// SPDX-License-Identifier: MIT
// Loading and saving configuration files beside what the XML library needs alone for the same
// file.
#include "config_manager.h"
#include "model.h"
#include "module.h"
#include "ratios.h"
#include "support/config_files.h"

#include <QString>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <stdexcept>
#include <sys/resource.h>
#include <tinyxml.h>

namespace {

/// Models of each size, each saved in a file once.
class Samples
{
public:
    struct Sample
    {
        boost::shared_ptr<Module> module;
        QString path;
    };

    const Sample& operator[](int size)
    {
        Sample& sample = fSamples[size];
        if (!sample.module) {
            sample = {newModule(), fFolder.filePath(QString::number(size) + ".xml")};
            for (int i = 0; i < size; ++i)
                add(*sample.module, i);
            ConfigManager::saveConfigurationFile(sample.module->fModel, sample.path);
        }
        return sample;
    }

    QString scratch() const { return fFolder.filePath("scratch.xml"); }

private:
    static void add(Module& module, int i)
    {
        const std::string name = "Device/SubDeviceList/Joint" + std::to_string(i) + "/Value";
        module.addSTMVal(name, i % 2 ? name : "joint " + std::to_string(i));
    }

    QTemporaryDir fFolder;
    std::map<int, Sample> fSamples;
};

Samples& samples()
{
    static Samples all;
    return all;
}

void load(benchmark::State& state)
{
    const auto& sample = samples()[static_cast<int>(state.range(0))];
    for (auto _ : state) {
        state.PauseTiming();
        auto module = newModule();
        state.ResumeTiming();
        ConfigManager::loadConfigurationFile(module, sample.path);
        state.PauseTiming();
        module.reset();
        state.ResumeTiming();
    }
}

void parser(benchmark::State& state)
{
    const auto& sample = samples()[static_cast<int>(state.range(0))];
    for (auto _ : state) {
        std::FILE* stream = std::fopen(sample.path.toUtf8().constData(), "rb");
        TiXmlDocument document;
        if (!stream || !document.LoadFile(stream, TIXML_ENCODING_UNKNOWN))
            throw std::runtime_error("the parser fails");
        std::fclose(stream);
    }
}

void save(benchmark::State& state)
{
    const auto& sample = samples()[static_cast<int>(state.range(0))];
    for (auto _ : state)
        ConfigManager::saveConfigurationFile(sample.module->fModel, samples().scratch());
}

/// By the library's faster way: into memory, and from there into the file at once.
void print(const TiXmlDocument& document)
{
    TiXmlPrinter printer;
    document.Accept(&printer);
    std::FILE* stream = std::fopen(samples().scratch().toUtf8().constData(), "wb");
    if (!stream || std::fwrite(printer.CStr(), 1, printer.Size(), stream) != printer.Size())
        throw std::runtime_error("the printer fails");
    std::fclose(stream);
}

void printer(benchmark::State& state)
{
    const auto& sample = samples()[static_cast<int>(state.range(0))];
    TiXmlDocument document;
    std::FILE* from = std::fopen(sample.path.toUtf8().constData(), "rb");
    if (!from || !document.LoadFile(from, TIXML_ENCODING_UNKNOWN))
        throw std::runtime_error("the parser fails");
    std::fclose(from);
    for (auto _ : state)
        print(document);
}

// What the library needs for the document itself, as no file can be printed without one.
void library(benchmark::State& state)
{
    const auto& sample = samples()[static_cast<int>(state.range(0))];
    for (auto _ : state) {
        TiXmlDocument document;
        auto* root = new TiXmlElement("stm_viewer");
        document.LinkEndChild(root);
        for (const auto& value : sample.module->fModel->fSTMVals) {
            auto* entry = new TiXmlElement("stm_value");
            root->LinkEndChild(entry);
            entry->SetAttribute("name", value->names.first.c_str());
            entry->SetAttribute("alias", value->names.second.c_str());
            entry->SetAttribute("watch", 0);
            entry->SetAttribute("graph", 0);
            auto* color = new TiXmlElement("color");
            entry->LinkEndChild(color);
            color->SetAttribute("red", value->color.red);
            color->SetAttribute("green", value->color.green);
            color->SetAttribute("blue", value->color.blue);
        }
        print(document);
    }
}

// A loaded file stays open, by design.
void allowManyOpenFiles()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        throw std::runtime_error("the limit of open files is unknown");
    limit.rlim_cur = limit.rlim_max;
    if (setrlimit(RLIMIT_NOFILE, &limit) != 0)
        throw std::runtime_error("the limit of open files cannot be raised");
}

std::vector<Ratio> ratiosWanted()
{
    std::vector<Ratio> ratios;
    for (const std::string size : {"1000", "10000", "100000"}) {
        ratios.push_back({"config/load/" + size, "config/parser/" + size, 1.5});
        ratios.push_back({"config/save/" + size, "config/printer/" + size, 1.5});
        ratios.push_back({"config/save/" + size, "config/library/" + size, 1.5});
    }
    for (const std::string name : {"config/load", "config/save"})
        ratios.push_back({name + "/100000", name + "/10000", 12});
    return ratios;
}

} // namespace

int main(int argc, char** argv)
{
    allowManyOpenFiles();
    const auto add = [](const char* name, void (*body)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, body)
            ->RangeMultiplier(10)
            ->Range(1000, 100000)
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime();
    };
    add("config/load", load);
    add("config/parser", parser);
    add("config/save", save);
    add("config/printer", printer);
    add("config/library", library);
    return runBenchmarks(argc, argv, ratiosWanted());
}
