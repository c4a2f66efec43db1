// SPDX-License-Identifier: MIT
#pragma once

#include "graph_math.h"
#include "record_finder.h"

#include <QColor>
#include <QMap>
#include <QPair>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <optional>
#include <string>
#include <vector>

struct Color;
class GraphClock;
class Model;
class QPainter;

/// A scrolling plot of numbers in the Model: one curve per graphed key, the newest sample at the
/// right edge. Lives on the GUI thread and takes no lock of its own. Samples that are not finite
/// are kept, but do not count for the automatic range; a NaN leaves a gap in its curve, and an
/// infinity leads the curve out of sight.
class Graph : public QWidget
{
    Q_OBJECT

public:
    static constexpr int fInterval = 40;      ///< sampling period, ms
    static constexpr int fMargin = 2;         ///< kept free at top and bottom, px
    static constexpr int fScaleAcc = 3;       ///< significant digits of the range labels
    static constexpr int fScaleMargin = 10;   ///< how far a range of one value is widened
    static constexpr int fDefaultSpeed = 100; ///< px/s
    static constexpr int fMaxSpeed = 1000;    ///< px/s
    static constexpr int fMinSpeed = 0;       ///< px/s; 0 on purpose: a plot may stand still
    static constexpr double fDefaultMinY = -100.0;
    static constexpr double fDefaultMaxY = 100.0;
    /// Ends of the range controls; the automatic range is searched inwards from them.
    static constexpr double fMinYPossible = -2147483647.0;
    static constexpr double fMaxYPossible = 2147483647.0;
    static const QColor fDefaultColor; ///< of a curve without colour

    /// Keeps a weak reference to `model`. Does not run before `init()`.
    Graph(const boost::shared_ptr<const Model>& model, QWidget* parent);
    ~Graph() override;

    /// Starts sampling, on a fresh timer and clock; the curves stay as they are. A fresh clock
    /// goes on where the old one was.
    void init();

    /// Adds an empty curve for the key with the alias `name`, unless it has one. `color` is not
    /// owned, may be null, and is read at each paint.
    void addSTMValue(const QString& name, Color* color);
    /// Removes the curve of `name`, if there is one.
    void deleteSTMValue(const QString& name);
    /// Removes all curves.
    void clear();

    /// Sets fMinY and fMaxY to the least and the greatest sample of all curves, widened by
    /// fScaleMargin if these are equal. Without a finite sample the range is inverted:
    /// fMinY = fMaxYPossible and fMaxY = fMinYPossible.
    void xSetScaleFromAutoScale();
    /// Empties every curve.
    void xCleanup();

    boost::weak_ptr<const Model> fModel;
    /// By alias: the curve's colour, and its samples, oldest first. Their times are readings of
    /// fClock, and set back with it.
    QMap<QString, QPair<Color*, QList<TimeValue>>> fSeries;
    QTimer* fTimer = nullptr;      ///< owned; null before init()
    GraphClock* fClock = nullptr;  ///< owned; null before init()
    double fSpeed = fDefaultSpeed; ///< px/s
    bool fAutoscale = true;        ///< every paint sets fMinY and fMaxY from the samples
    double fMinY = 0;              ///< value at the bottom
    double fMaxY = 0;              ///< value at the top

public slots:
    /// Runs or pauses the graph; pausing empties every curve. Nothing before init().
    void setPlay(bool pPlay);
    /// One sampling step: a new sample for each curve; the curve of a key that is no number now
    /// is removed. Every tenth step of the process forgets what has scrolled out of sight.
    /// Does nothing, not even repaint, when the model is gone.
    void xUpdateTime();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double xNow() const;
    void xSetTimesBack();
    void xReadNumbers(const Model& model);
    void xPaintPlot(QPainter& painter) const;
    void xPaintFrame(QPainter& painter, const PlotScale& scale) const;

    AliasFinder fByAlias;
    std::vector<std::string> fAliases;           ///< of all curves, filled at each step
    std::vector<std::optional<double>> fNumbers; ///< for these, filled at each step
};
