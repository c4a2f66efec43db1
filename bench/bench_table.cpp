// SPDX-License-Identifier: MIT
// The key table: building it, writing it, and the commands that touch every row.
//
//   bench_table [--share [SECONDS]] [benchmark options]
//
// --share prints how much of a core a shown panel takes while 1,000 watched keys of a real server
// change every 100 ms, and ends. The platform is "offscreen" unless QT_QPA_PLATFORM names another.

#include "color_button.h"
#include "graph.h"
#include "latin1.h"
#include "module.h"
#include "paint_watch.h"
#include "ratios.h"
#include "support/forked_action.h"
#include "support/redis_server.h"
#include "widget.h"

#include <zo/zo.h>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <QApplication>
#include <QCheckBox>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTimer>
#include <QTreeWidget>

#include <chrono>
#include <ctime>
#include <memory>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Processor time of this process: unlike the clock on the wall it does not count what else runs.
double processSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::string aliasOf(int i, int count)
{
    return "Device/SubDeviceList/Joint" + std::to_string(1000000 + i * 7919LL % count) +
           "/Position/Sensor/Value";
}

/// As many records as asked for, whose values can all be changed at once.
class Keys
{
public:
    explicit Keys(int count) : fModel(boost::make_shared<Module>(nullptr))
    {
        for (int i = 0; i < count; ++i) {
            fModel->addSTMVal(aliasOf(i, count), aliasOf(i, count));
            records().back()->type = "float";
        }
        change();
    }

    /// Gives every key another number, so that their order by value changes, too.
    void change()
    {
        ++fGeneration;
        const auto count = static_cast<long>(records().size());
        for (long i = 0; i < count; ++i)
            records()[static_cast<std::size_t>(i)]->value =
                std::to_string((i * 7919 + fGeneration * (i % 13)) % count) + ".125";
    }

    const boost::shared_ptr<Module>& module() const { return fModel; }
    std::vector<boost::shared_ptr<STMVal>>& records() const { return fModel->fModel->fSTMVals; }

private:
    boost::shared_ptr<Module> fModel;
    long fGeneration = 0;
};

/// A shown panel that fetches nothing by itself.
class ShownPanel
{
public:
    explicit ShownPanel(const Keys& keys) : widget(keys.module(), QString(), nullptr)
    {
        emit widget.disconnected(nullptr);
        widget.findChild<Graph*>()->setPlay(false);
        widget.resetTree();
        widget.resize(2000, 700);
        widget.show();
        widget.findChild<QSplitter*>()->setSizes({1100, 900}); // every column is in sight
        tree->sortByColumn(Widget::fColName, Qt::AscendingOrder);
        paint.settle();
    }

    void pass()
    {
        widget.refreshTree();
        QMetaObject::invokeMethod(&widget, "xRefreshTree");
        paint.settle();
    }

    Widget widget;
    QTreeWidget* tree = widget.findChild<QTreeWidget*>();
    PaintWatch paint{tree->viewport()};
};

/// The rows of a table, as the panel has them, made of the toolkit's own items.
QList<QTreeWidgetItem*> makeItems(const Keys& keys)
{
    QList<QTreeWidgetItem*> items;
    for (const auto& record : keys.records()) {
        auto* item = new QTreeWidgetItem;
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
        item->setText(Widget::fColName, fromLatin1(record->names.second));
        item->setText(Widget::fColType, fromLatin1(record->type));
        item->setText(Widget::fColValue, fromLatin1(record->value));
        item->setCheckState(Widget::fColWatch, Qt::Unchecked);
        item->setCheckState(Widget::fColGraph, Qt::Unchecked);
        items.append(item);
    }
    return items;
}

void writeCells(const Keys& keys, const QList<QTreeWidgetItem*>& items)
{
    for (int i = 0; i < items.size(); ++i) {
        const STMVal& record = *keys.records()[static_cast<std::size_t>(i)];
        const QString name = items[i]->text(Widget::fColName);
        items[i]->setText(Widget::fColName, "vieux flan rabougri");
        items[i]->setText(Widget::fColName, name);
        items[i]->setText(Widget::fColType, fromLatin1(record.type));
        items[i]->setText(Widget::fColValue, fromLatin1(record.value));
    }
}

int rowsOf(const benchmark::State& state)
{
    return static_cast<int>(state.range(0));
}

/// Times `work` alone, after `prepare`, at each iteration, in processor time.
template <class Prepare, class Work>
void measure(benchmark::State& state, Prepare prepare, Work work)
{
    for (auto _ : state) {
        prepare();
        const double start = processSeconds();
        work();
        state.SetIterationTime(processSeconds() - start);
    }
}

const auto nothing = [] {};

void rebuildGlimmet(benchmark::State& state)
{
    const Keys keys(rowsOf(state));
    ShownPanel panel(keys);
    measure(state, nothing, [&panel] {
        panel.widget.resetTree();
        panel.paint.settle();
    });
}

/// A shown table of the toolkit's own, of the size that the panel gives its, and as much in sight.
class BareTable
{
public:
    BareTable()
    {
        const ShownPanel panel(Keys(100));
        tree.setColumnCount(panel.tree->columnCount());
        for (int column = 0; column < panel.tree->columnCount(); ++column)
            tree.setColumnWidth(column, panel.tree->columnWidth(column));
        tree.resize(panel.tree->size());
        tree.show();
        paint.settle();
    }

    /// Makes a button for each row, and puts those of the rows in sight into their cells. (The
    /// panel makes those beyond the first RowButtons::fLimit when they come into sight.)
    void makeButtons(const Keys& keys)
    {
        const int count = static_cast<int>(keys.records().size());
        for (int row = 0; row < count; ++row) {
            Color& color = keys.records()[static_cast<std::size_t>(row)]->color;
            fButtons.push_back(std::make_unique<ColorButton>(color, nullptr));
        }
        for (int row = 0; row < count; ++row) {
            const QRect cell = tree.visualRect(tree.model()->index(row, Widget::fColColor));
            if (!cell.intersects(tree.viewport()->rect()))
                break;
            ColorButton& button = *fButtons[static_cast<std::size_t>(row)];
            button.setParent(tree.viewport());
            button.move(cell.topLeft());
            button.show();
        }
    }
    void deleteButtons() { fButtons.clear(); }

    QTreeWidget tree;
    PaintWatch paint{tree.viewport()};

private:
    std::vector<std::unique_ptr<ColorButton>> fButtons;
};

/// The least that a new table takes: the old rows and buttons go, the new ones come, and the view
/// paints what is in sight.
void rebuildBare(benchmark::State& state)
{
    const Keys keys(rowsOf(state));
    BareTable table;
    const auto rebuild = [&] {
        table.deleteButtons();
        table.tree.clear();
        table.tree.addTopLevelItems(makeItems(keys));
        table.makeButtons(keys);
        table.paint.settle();
    };
    rebuild();
    measure(state, nothing, rebuild);
}

void passGlimmet(benchmark::State& state, int sortColumn)
{
    Keys keys(rowsOf(state));
    ShownPanel panel(keys);
    panel.tree->sortByColumn(sortColumn, Qt::AscendingOrder);
    panel.pass();
    const auto change = [&keys] { keys.change(); };
    measure(state, change, [&panel] { panel.pass(); });
}

void passByName(benchmark::State& state)
{
    passGlimmet(state, Widget::fColName);
}

void passByValue(benchmark::State& state)
{
    passGlimmet(state, Widget::fColValue);
}

/// The least that a pass takes: the cells are written while the view does not listen, and then it
/// paints what is in sight.
void passBare(benchmark::State& state)
{
    Keys keys(rowsOf(state));
    BareTable table;
    const QList<QTreeWidgetItem*> items = makeItems(keys);
    table.tree.addTopLevelItems(items);
    table.makeButtons(keys);
    // The first writes of new items search for their rows.
    writeCells(keys, items);
    table.paint.settle();
    measure(
        state, [&keys] { keys.change(); },
        [&] {
            {
                const QSignalBlocker deaf(table.tree.model());
                writeCells(keys, items);
            }
            table.tree.viewport()->update();
            table.paint.settle();
        });
}

void passLiteral(benchmark::State& state)
{
    Keys keys(rowsOf(state));
    BareTable table;
    QTreeWidget& tree = table.tree;
    tree.hide(); // until all buttons are in: each would lay a shown table out anew
    const QList<QTreeWidgetItem*> items = makeItems(keys);
    tree.addTopLevelItems(items);
    for (int i = 0; i < items.size(); ++i) {
        Color& color = keys.records()[static_cast<std::size_t>(i)]->color;
        tree.setItemWidget(items[i], Widget::fColColor, new ColorButton(color, &tree));
    }
    tree.setSortingEnabled(true);
    tree.sortByColumn(Widget::fColName, Qt::AscendingOrder);
    tree.show();
    table.paint.settle();
    measure(
        state, [&keys] { keys.change(); },
        [&] {
            writeCells(keys, items);
            tree.viewport()->update();
            table.paint.settle();
        });
}

/// One click on a box for all rows; every other click takes it back.
void command(benchmark::State& state, const QString& text)
{
    const Keys keys(rowsOf(state));
    ShownPanel panel(keys);
    QCheckBox* box = nullptr;
    for (QCheckBox* candidate : panel.widget.findChildren<QCheckBox*>())
        if (candidate->text() == text)
            box = candidate;
    measure(state, nothing, [&] {
        box->click();
        panel.paint.settle();
    });
}

void graphAll(benchmark::State& state)
{
    command(state, "Graph All");
}

void watchAll(benchmark::State& state)
{
    command(state, "Watch All");
}

/// One turn of the wheel, three rows down or back up, in the middle of the table.
void scroll(benchmark::State& state)
{
    const Keys keys(rowsOf(state));
    ShownPanel panel(keys);
    QScrollBar* bar = panel.tree->verticalScrollBar();
    const int middle = bar->maximum() / 2;
    bool isDown = false;
    const auto turn = [&] {
        isDown = !isDown;
        bar->setValue(middle + (isDown ? 3 : 0));
        panel.paint.settle();
    };
    // The first sight of rows makes their buttons.
    turn();
    turn();
    measure(state, nothing, turn);
}

void registerAll()
{
    using benchmark::RegisterBenchmark;
    const auto add = [](const char* name, auto run, std::initializer_list<int> counts) {
        auto* made = RegisterBenchmark(name, run);
        for (const int count : counts)
            made->Arg(count);
        made->UseManualTime()->Unit(benchmark::kMillisecond);
    };
    const auto all = {100, 1000, 10000, 100000};
    add("rebuild/glimmet", rebuildGlimmet, all);
    add("rebuild/bare", rebuildBare, all);
    add("pass/glimmet/name", passByName, all);
    add("pass/glimmet/value", passByValue, all);
    add("pass/bare", passBare, all);
    add("pass/literal", passLiteral, {100, 1000});
    add("command/graph_all", graphAll, all);
    add("command/watch_all", watchAll, all);
    add("scroll", scroll, all);
}

const std::vector<Ratio> ratios{
    {"rebuild/glimmet/10000", "rebuild/bare/10000", 3},
    {"rebuild/glimmet/100000", "rebuild/glimmet/10000", 12},
    {"pass/glimmet/name/10000", "pass/bare/10000", 2},
    {"pass/glimmet/value/10000", "pass/bare/10000", 4},
    {"pass/glimmet/name/1000", "pass/literal/1000", 0.01},
    {"pass/glimmet/name/100000", "pass/glimmet/name/10000", 12},
    {"pass/glimmet/value/100000", "pass/glimmet/value/10000", 12},
    {"command/graph_all/10000", "command/graph_all/1000", 15},
    {"command/watch_all/10000", "command/watch_all/1000", 15},
    {"scroll/10000", "scroll/100", 1.5},
    {"scroll/100000", "scroll/100", 1.5},
};

constexpr int sharedKeys = 1000;

/// Changes all keys of the server every 100 ms, for ever.
[[noreturn]] void writeKeys(const RedisServer& server)
{
    for (long generation = 0;; ++generation) {
        std::vector<std::string> words{"MSET"};
        for (int i = 0; i < sharedKeys; ++i) {
            words.push_back(aliasOf(i, sharedKeys));
            words.push_back(std::to_string((i * 31L + generation * 17) % 1000) + ".125");
        }
        server.command(words);
        ::usleep(100000); // the robot's own pace, which the share is measured at
    }
}

void printShare(int sortColumn, const char* sortedBy, const RedisServer& server, int seconds)
{
    const auto broker = ZoBroker::create("BenchTable", "127.0.0.1", server.port());
    const auto module = boost::make_shared<Module>(
        boost::make_shared<ZoMemoryProxy>(broker->getProxy("ZoMemory", 0)));
    for (int i = 0; i < sharedKeys; ++i) {
        module->addSTMVal(aliasOf(i, sharedKeys), aliasOf(i, sharedKeys));
        module->watchStmVal(aliasOf(i, sharedKeys), true);
    }
    Widget panel(module, QString(), nullptr);
    module->fGCInterface = &panel;
    panel.resetTree();
    panel.resize(1200, 700);
    panel.show();
    auto* tree = panel.findChild<QTreeWidget*>();
    tree->sortByColumn(sortColumn, Qt::AscendingOrder);

    int changes = 0;
    QObject::connect(tree->model(), &QAbstractItemModel::dataChanged,
                     [&](const QModelIndex& cell) { changes += cell.column() == 4; });
    const double before = processSeconds();
    const Clock::time_point start = Clock::now();
    QTimer::singleShot(seconds * 1000, qApp, &QCoreApplication::quit);
    QApplication::exec();
    const double wall = secondsSince(start);
    std::printf("sorted by %-5s: %4.1f %% of a core, %.0f value cells changed a second "
                "(aim: below 10 %%)\n",
                sortedBy, (processSeconds() - before) / wall * 100, changes / wall);
}

int share(int seconds)
{
    const RedisServer server;
    const int atMost = 2 * seconds + patience / 1000;
    const ForkedAction writer([&server]() -> int { writeKeys(server); }, atMost);
    printShare(Widget::fColName, "name", server, seconds);
    printShare(Widget::fColValue, "value", server, seconds);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc > 1 && std::string(argv[1]) == "--share")
        return share(argc > 2 ? std::max(1, std::atoi(argv[2])) : 10);
    registerAll();
    return runBenchmarks(argc, argv, ratios);
}
