// SPDX-License-Identifier: MIT
// Opening and filtering the key selection beside a plain list of the same items.
#include "paint_watch.h"
#include "ratios.h"
#include "stmlist_dialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

// In no order, a fifth of them device keys.
std::vector<std::string> keyNames(int count)
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int number = static_cast<int>(i * 7919LL % count);
        const char* folder = number % 5 == 0 ? "Device/SubDeviceList/" : "Motion/Body/";
        names.push_back(folder + ("Joint" + std::to_string(number)) + "/Position/Value");
    }
    return names;
}

void showAndPaint(QWidget& window, QListWidget& list)
{
    PaintWatch watch(list.viewport());
    window.show();
    watch.settle();
}

void openGlimmet(benchmark::State& state)
{
    const auto names = keyNames(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto dialog = std::make_unique<StmListDialog>(names, nullptr);
        showAndPaint(*dialog, *dialog->findChild<QListWidget*>());
        state.PauseTiming();
        dialog.reset();
        state.ResumeTiming();
    }
}

void openBare(benchmark::State& state)
{
    const auto names = keyNames(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto dialog = std::make_unique<QDialog>();
        auto* layout = new QVBoxLayout(dialog.get());
        auto* list = new QListWidget(dialog.get());
        layout->addWidget(list);
        for (const std::string& name : names) {
            auto* item = new QListWidgetItem(QString::fromLatin1(name.c_str()));
            item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
            item->setCheckState(Qt::Unchecked);
            list->addItem(item);
        }
        list->sortItems(Qt::AscendingOrder);
        showAndPaint(*dialog, *list);
        state.PauseTiming();
        dialog.reset();
        state.ResumeTiming();
    }
}

void press(QWidget& widget, int key, const QString& text)
{
    QKeyEvent pressed(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &pressed);
}

void filterGlimmet(benchmark::State& state)
{
    StmListDialog dialog(keyNames(static_cast<int>(state.range(0))), nullptr);
    auto* list = dialog.findChild<QListWidget*>();
    auto* edit = dialog.findChild<QLineEdit*>();
    showAndPaint(dialog, *list);
    PaintWatch watch(list->viewport());
    bool isFiltered = false;
    for (auto _ : state) {
        // A digit that hides most of the entries, and back.
        press(*edit, isFiltered ? Qt::Key_Backspace : Qt::Key_7, isFiltered ? "" : "7");
        isFiltered = !isFiltered;
        watch.settle();
    }
}

// The offscreen platform says for each window what it cannot do.
void dropChatter(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    if (!text.contains("propagateSizeHints"))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

std::vector<Ratio> ratiosWanted()
{
    std::vector<Ratio> ratios = {{"open/glimmet/10000", "open/bare/10000", 1.5},
                                 {"filter/glimmet/10000", "open/bare/10000", 2.5},
                                 {"open/glimmet/100000", "open/bare/100000", 1.5}};
    for (const std::string name : {"open/glimmet", "filter/glimmet"})
        ratios.push_back({name + "/100000", name + "/10000", 15});
    return ratios;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(dropChatter);
    const QApplication application(argc, argv);
    const auto add = [](const char* name, void (*body)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, body)
            ->RangeMultiplier(10)
            ->Range(100, 100000)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    add("open/glimmet", openGlimmet);
    add("open/bare", openBare);
    add("filter/glimmet", filterGlimmet);
    return runBenchmarks(argc, argv, ratiosWanted());
}
