// SPDX-License-Identifier: MIT
#pragma once

#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QWidget>

class Graph;
class QGridLayout;

/// The control strip of a graph: play and pause, speed, automatic or manual range. Writes into
/// the graph's members. Without a graph it is whole, but does nothing.
class GraphConfig : public QWidget
{
    Q_OBJECT

public:
    static const QString fPlayImg;
    static const QString fPauseImg;

    /// `graph` becomes the parent; may be null. `imageDir` stands directly in front of an
    /// image's relative path, so it ends in a slash. A missing image gives an empty icon.
    GraphConfig(Graph* graph, const QString& imageDir);

    Graph* fGraph; ///< not owned
    QPushButton* fPlayButton = nullptr;
    QDoubleSpinBox* fMinBox = nullptr;
    QDoubleSpinBox* fMaxBox = nullptr;
    QLabel* fMinLabel = nullptr;
    QLabel* fMaxLabel = nullptr;
    QString fImageDir;

public slots:
    /// Shows the pause image while the graph runs, the play image while it is paused.
    void xOnChangePlayMode(bool pChecked);
    /// Sets the speed, px/s.
    void xSpeedChanged(double pSpeed);
    /// Sets the bottom of the range and lifts the top to it; the top is then cut to a whole
    /// number, which the "Max:" box shows.
    void xMinYChange(double pMin);
    /// Sets the top of the range and lowers the bottom to it; the "Min:" box is left alone.
    void xMaxYChange(double pMax);
    /// Switches the automatic range (Qt::Checked) or the manual one, which starts as the last
    /// automatic one was.
    void xAutoScaleChange(int pState);

private:
    void xSetUpPlayButton();
    QDoubleSpinBox* xMakeSpeedBox();
    void xSetUpRangeBoxes();
    void xPlaceRangeControls(QGridLayout& grid);
};
