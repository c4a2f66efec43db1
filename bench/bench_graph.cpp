// SPDX-License-Identifier: MIT
// The graph's painting beside that of two plot widgets, and the cost of its sampling.
//
//   bench_graph [--save DIR] [--idle] [benchmark options]
//
// --save writes the pictures that are painted into DIR and ends; --idle prints how much of a
// core a shown graph with nothing in it takes and ends.

#include "graph.h"
#include "model.h"
#include "ratios.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

#include <qcustomplot.h>
#ifdef BENCH_QWT
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#endif

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <thread>

namespace {

constexpr int width = 800;
constexpr int height = 400;

/// Curves over one picture's width, in pixels, that fill its height.
struct Curves
{
    QVector<double> columns;
    QVector<QVector<double>> values;
    double bottom = 0;
    double top = 0;
};

/// Waves with a little noise, as sensors give them.
Curves makeCurves(int count, int samples)
{
    std::mt19937 generator(1);
    std::normal_distribution<double> noise(0, 1);
    Curves curves;
    for (int i = 0; i < samples; ++i)
        curves.columns.append(static_cast<double>(width) * i / samples);
    for (int c = 0; c < count; ++c) {
        QVector<double> values;
        for (int i = 0; i < samples; ++i)
            values.append((40 + c % 10 * 5) * std::sin(i * 20.0 / samples + c) + noise(generator));
        const auto [least, greatest] = std::minmax_element(values.cbegin(), values.cend());
        curves.bottom = std::min(curves.bottom, *least);
        curves.top = std::max(curves.top, *greatest);
        curves.values.append(values);
    }
    return curves;
}

QColor colorOf(int curve)
{
    return QColor::fromHsv(curve * 37 % 360, 200, 200);
}

/// A shown widget with curves of one kind in it.
class Subject
{
public:
    Subject() = default;
    virtual ~Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    virtual QWidget& widget() = 0;
    /// Works out and paints the picture anew, into the window.
    virtual void paint() = 0;

protected:
    void show()
    {
        widget().resize(width, height);
        widget().show();
        QApplication::processEvents();
    }
};

class GlimmetSubject : public Subject
{
public:
    explicit GlimmetSubject(const Curves& curves) : fGraph({}, nullptr)
    {
        fGraph.init();
        // So slow that the plot stands still while it is measured.
        fGraph.fSpeed = 1e-3;
        for (int c = 0; c < curves.values.size(); ++c)
            addCurve(curves, c);
        show();
    }

    QWidget& widget() override { return fGraph; }
    void paint() override { fGraph.repaint(); }

private:
    void addCurve(const Curves& curves, int c)
    {
        const QColor shown = colorOf(c);
        fColors.push_back(std::make_unique<Color>());
        Color* color = fColors.back().get();
        color->red = shown.red();
        color->green = shown.green();
        color->blue = shown.blue();
        const QString name = QString::number(c);
        fGraph.addSTMValue(name, color);
        QList<TimeValue>& samples = fGraph.fSeries[name].second;
        for (int i = 0; i < curves.columns.size(); ++i) {
            const double age = std::floor(width - curves.columns.at(i)) + 0.5;
            samples.append({-age / fGraph.fSpeed, curves.values.at(c).at(i)});
        }
    }

    std::vector<std::unique_ptr<Color>> fColors;
    Graph fGraph;
};

/// The same lines as bare painter calls, on paths made beforehand: what the picture itself costs.
class BareSubject : public Subject
{
    class Canvas : public QWidget
    {
    public:
        QVector<QPainterPath> fPaths;

    protected:
        void paintEvent(QPaintEvent*) override
        {
            QPainter painter(this);
            painter.setClipRect(rect());
            painter.translate(0, 1);
            painter.setRenderHint(QPainter::Antialiasing);
            for (int c = 0; c < fPaths.size(); ++c) {
                painter.setPen({colorOf(c), 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
                painter.drawPath(fPaths.at(c));
            }
        }
    };

public:
    explicit BareSubject(const Curves& curves)
    {
        const double units = (curves.top - curves.bottom) / (height - 2);
        for (const auto& values : curves.values) {
            QPainterPath path;
            for (int i = 0; i < values.size(); ++i) {
                const QPointF point(std::ceil(curves.columns.at(i)),
                                    std::trunc((curves.top - values.at(i)) / units));
                i == 0 ? path.moveTo(point) : path.lineTo(point);
            }
            fCanvas.fPaths.append(path);
        }
        show();
    }

    QWidget& widget() override { return fCanvas; }
    void paint() override { fCanvas.repaint(); }

private:
    Canvas fCanvas;
};

class QCustomPlotSubject : public Subject
{
public:
    explicit QCustomPlotSubject(const Curves& curves)
    {
        fPlot.axisRect()->setAutoMargins(QCP::msNone);
        fPlot.axisRect()->setMargins(QMargins(0, 0, 0, 0));
        for (QCPAxis* axis : fPlot.axisRect()->axes())
            axis->setVisible(false);
        for (int c = 0; c < curves.values.size(); ++c) {
            QCPGraph* graph = fPlot.addGraph();
            graph->setPen(QPen(colorOf(c), 1.0));
            graph->setAntialiased(true);
            graph->setData(curves.columns, curves.values.at(c), true);
        }
        fPlot.xAxis->setRange(0, width);
        fPlot.yAxis->setRange(curves.bottom, curves.top);
        show();
    }

    QWidget& widget() override { return fPlot; }
    void paint() override { fPlot.replot(QCustomPlot::rpImmediateRefresh); }

private:
    QCustomPlot fPlot;
};

#ifdef BENCH_QWT
class QwtSubject : public Subject
{
public:
    explicit QwtSubject(const Curves& curves)
    {
        for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
            fPlot.enableAxis(axis, false);
        static_cast<QwtPlotCanvas*>(fPlot.canvas())->setFrameStyle(QFrame::NoFrame);
        for (int c = 0; c < curves.values.size(); ++c) {
            auto* curve = new QwtPlotCurve; // the plot deletes it
            curve->setRenderHint(QwtPlotItem::RenderAntialiased);
            curve->setPen(QPen(colorOf(c), 1.0));
            curve->setSamples(curves.columns, curves.values.at(c));
            curve->attach(&fPlot);
        }
        fPlot.setAxisScale(QwtPlot::xBottom, 0, width);
        fPlot.setAxisScale(QwtPlot::yLeft, curves.bottom, curves.top);
        show();
    }

    QWidget& widget() override { return fPlot; }
    void paint() override
    {
        fPlot.replot();
        fPlot.canvas()->repaint();
    }

private:
    QwtPlot fPlot;
};
#endif

using Maker = std::function<std::unique_ptr<Subject>(const Curves&)>;

template <class Kind>
std::unique_ptr<Subject> make(const Curves& curves)
{
    return std::make_unique<Kind>(curves);
}

const std::vector<std::pair<std::string, Maker>>& subjects()
{
    static const std::vector<std::pair<std::string, Maker>> all{
        {"glimmet", make<GlimmetSubject>},
        {"qcustomplot", make<QCustomPlotSubject>},
#ifdef BENCH_QWT
        {"qwt", make<QwtSubject>},
#endif
        {"bare", make<BareSubject>}};
    return all;
}

constexpr std::array<std::pair<int, int>, 4> sizes{
    {{10, 200}, {100, 200}, {10, 2000}, {10, 20000}}};

std::string sizeName(const std::pair<int, int>& size)
{
    return std::to_string(size.first) + "x" + std::to_string(size.second);
}

void paint(benchmark::State& state, const Maker& maker, const std::pair<int, int>& size)
{
    const auto subject = maker(makeCurves(size.first, size.second));
    subject->paint();
    for (auto _ : state)
        subject->paint();
}

/// One sampling step with `state.range(0)` graphed keys of a model of 10,000, at the pace of use:
/// between two steps, which are not timed, other things take the processor's caches.
void sample(benchmark::State& state)
{
    constexpr int keys = 10000;
    const auto model = boost::make_shared<Model>();
    Graph graph(model, nullptr);
    graph.resize(width, height);
    graph.fSpeed = Graph::fMaxSpeed;
    for (int i = 0; i < keys; ++i) {
        const std::string alias = "alias of key " + std::to_string(i);
        model->addSTMVal("Robot/Arm/Joint/" + std::to_string(i), alias);
        model->fSTMVals.back()->type = "float";
        model->fSTMVals.back()->value = "0.12345678901234567";
    }
    // Spread over the whole model: the cost is that of the keys, and not of the luckiest ones.
    const int graphed = static_cast<int>(state.range(0));
    for (int i = 0; i < graphed; ++i)
        graph.addSTMValue("alias of key " + QString::number(i * (keys / graphed)), nullptr);
    graph.init();
    for (auto _ : state) {
        // The pace of use: it is what is measured at, and waits for nothing.
        std::this_thread::sleep_for(std::chrono::milliseconds(Graph::fInterval));
        const auto start = std::chrono::steady_clock::now();
        graph.xUpdateTime();
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    if (graph.fSeries.size() != graphed)
        state.SkipWithError("curves dropped out");
}

/// The graph takes at most the time of the faster peer, and where a curve has many samples in
/// each column, half the time that the bare painter takes for the same pixels.
std::vector<Ratio> ratios()
{
    std::vector<Ratio> all;
    for (const auto& size : sizes) {
        const std::string name = "/" + sizeName(size) + "/";
        all.push_back({"paint/glimmet" + name, "paint/qcustomplot" + name, 1.0});
#ifdef BENCH_QWT
        all.push_back({"paint/glimmet" + name, "paint/qwt" + name, 1.0});
#endif
    }
    all.push_back({"paint/glimmet/10x20000/", "paint/bare/10x20000/", 0.5});
    all.push_back({"sample/1000", "sample/100", 12.0});
    all.push_back({"sample/10000", "sample/1000", 12.0});
    return all;
}

int savePictures(const QString& folder)
{
    for (const auto& size : sizes) {
        const Curves curves = makeCurves(size.first, size.second);
        for (const auto& [name, maker] : subjects()) {
            const auto subject = maker(curves);
            subject->paint();
            const QString file =
                QStringLiteral("%1/%2-%3.png")
                    .arg(folder, QString::fromStdString(sizeName(size)), name.c_str());
            if (!subject->widget().grab().save(file)) {
                std::fprintf(stderr, "bench_graph: cannot write %s\n", qPrintable(file));
                return 1;
            }
        }
    }
    return 0;
}

int measureIdle()
{
    constexpr int seconds = 10;
    const auto model = boost::make_shared<Model>();
    Graph graph(model, nullptr);
    graph.resize(width, height);
    graph.init();
    graph.show();
    QTimer::singleShot(1000 * seconds, qApp, &QCoreApplication::quit);
    QApplication::processEvents();
    const std::clock_t began = std::clock();
    QApplication::exec();
    const double used = static_cast<double>(std::clock() - began) / CLOCKS_PER_SEC;
    std::printf("idle graph, shown: %.2f %% of a core (at most 1)\n", 100 * used / seconds);
    return used / seconds < 0.01 ? 0 : 1;
}

void registerAll()
{
    for (const auto& size : sizes) {
        for (const auto& [name, maker] : subjects())
            benchmark::RegisterBenchmark(
                // NOLINTNEXTLINE(readability-redundant-string-cstr): older libraries take no string
                ("paint/" + name + "/" + sizeName(size)).c_str(),
                [make = maker, size](benchmark::State& state) { paint(state, make, size); })
                ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark("sample", sample)
        ->Arg(100)
        ->Arg(1000)
        ->Arg(10000)
        ->Iterations(50)
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--save") && arguments.size() == 3)
        return savePictures(arguments.at(2));
    if (arguments.value(1) == QLatin1String("--idle"))
        return measureIdle();
    registerAll();
    return runBenchmarks(argc, argv, ratios());
}
