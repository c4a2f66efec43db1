// SPDX-License-Identifier: MIT
// What the desktop costs its user: the time from the start of the program to the first values, and
// the share of a core that it takes with a panel open. Each run is a process of its own, on the
// display that this runs on.
//   bench_desktop [--smoke]
#include "session.h"
#include "support/following.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/program.h"

#include <tarvek/tarvek_widget.h>

#include <QEventLoop>
#include <QLineEdit>
#include <QSettings>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr char begunName[] = "BENCH_BEGUN"; ///< of the environment: when the process was started
constexpr char nothingWatched[] = "nothing watched";
constexpr char allWatched[] = "all keys watched";
constexpr char example[] = "the guide's example, six curves";
constexpr char firstValues[] = "first values";
constexpr int valueColumn = 4;
constexpr int settling = 2000; ///< ms, until what belongs to the opening is over

long long nanoseconds()
{
    return std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
}

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Without the waits of the test framework, which look for something many times a second.
void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Per cent of a core.
double share(int milliseconds)
{
    runFor(std::min(settling, milliseconds));
    const double before = processorSeconds();
    const auto begun = Clock::now();
    runFor(milliseconds);
    const std::chrono::duration<double> time = Clock::now() - begun;
    return 100 * (processorSeconds() - before) / time.count();
}

void tell(const char* what, double value)
{
    std::printf("%s: %g\n", what, value);
    std::fflush(stdout);
}

TarvekWidget* openPanel(Session& session, MainWindow& window, bool isExample)
{
    ModalDriver user;
    user.then("ConfigDialog", [&](QDialog& dialog) {
        if (isExample)
            user.then("QFileDialog", [](QDialog& files) {
                files.findChild<QLineEdit*>("fileNameEdit")->setText(EXAMPLE_CONFIGURATION);
                clickButton(files, "&Open");
            });
        clickButton(dialog, isExample ? Session::fOpenFile : Session::fAllKeys);
    });
    window.openPanel(session.desktop().plugins().find("Glimmet"));
    return window.findChild<TarvekWidget*>();
}

/// One run, in a process of its own.
int measure(const QStringList& words)
{
    const bool isExample = words.at(0) == "example";
    const int time = words.at(3).toInt();
    QSettings().clear();
    Session session;
    MainWindow* const window =
        session.connectTo(words.at(1), words.at(2).toStdString(), following());
    TarvekWidget* const panel = window ? openPanel(session, *window, isExample) : nullptr;
    const auto hasValues = [panel] {
        const QTreeWidgetItem* row = tableOf(panel)->topLevelItem(0);
        return row && !row->text(valueColumn).isEmpty();
    };
    if (!panel || !QTest::qWaitFor(hasValues, patience))
        return 1;
    const long long taken = nanoseconds() - qEnvironmentVariable(begunName).toLongLong();
    tell(firstValues, static_cast<double>(taken) / 1e6);
    tell(isExample ? example : nothingWatched, share(time));
    if (isExample)
        return 0;
    clickButton(*panel, "Watch All");
    tell(allWatched, share(time));
    return 0;
}

/// Of each figure one number for each run.
using Figures = QMap<QString, std::vector<double>>;

bool runOnce(const QString& program, const QStringList& words, Figures& figures)
{
    Program run(program, QStringList("--measure") + words);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(begunName, QString::number(nanoseconds()));
    run.setProcessEnvironment(environment);
    run.start();
    if (!run.waitForFinished(2 * patience) || run.exitCode() != 0) {
        std::fprintf(stderr, "a run failed: %s\n", qPrintable(run.errors()));
        return false;
    }
    for (const QString& line : QString::fromLocal8Bit(run.output()).split('\n')) {
        const auto colon = line.indexOf(": ");
        if (colon > 0)
            figures[line.left(colon)].push_back(line.mid(colon + 2).toDouble());
    }
    return true;
}

void report(const Figures& figures)
{
    for (auto figure = figures.begin(); figure != figures.end(); ++figure) {
        std::vector<double> values = figure.value();
        std::sort(values.begin(), values.end());
        std::printf("%-32s %8.2f %s  (%.2f to %.2f, %zu runs)\n", qPrintable(figure.key()),
                    values[values.size() / 2], figure.key() == firstValues ? "ms" : "% ",
                    values.front(), values.back(), values.size());
    }
}

int runAll(const QString& program, bool isSmoke)
{
    const int runs = isSmoke ? 1 : 5;
    const QString time = isSmoke ? "100" : "10000"; // ms
    RobotProgram robot;
    if (!robot.startAndWait())
        return 1;
    Figures figures;
    const QString password = QString::fromStdString(robot.password());
    for (int i = 0; i < runs; ++i)
        for (const char* way : {"all", "example"})
            if (!runOnce(program, {way, robot.address(), password, time}, figures))
                return 1;
    report(figures);
    return figures.size() == 4 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const QStringList words = [&] {
        QStringList all;
        for (int i = 1; i < argc; ++i)
            all += QString::fromLocal8Bit(argv[i]);
        return all;
    }();
    if (words.value(0) != "--measure") {
        const QCoreApplication application(argc, argv);
        return runAll(QCoreApplication::applicationFilePath(), words.contains("--smoke"));
    }
    const HostApplication application(argc, argv);
    return measure(words.mid(1));
}
