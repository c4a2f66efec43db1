// SPDX-License-Identifier: MIT
#include "graph_config.h"

#include "graph.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QIcon>

#include <algorithm>
#include <cmath>

const QString GraphConfig::fPlayImg(QStringLiteral("buttons/play.png"));
const QString GraphConfig::fPauseImg(QStringLiteral("buttons/pause.png"));

GraphConfig::GraphConfig(Graph* graph, const QString& imageDir)
    : QWidget(graph), fGraph(graph), fImageDir(imageDir)
{
    auto* grid = new QGridLayout(this);
    xSetUpPlayButton();
    QDoubleSpinBox* speedBox = xMakeSpeedBox();
    auto* playLabel = new QLabel(QStringLiteral("Start/Stop graph: "), this);
    auto* speedLabel = new QLabel(QStringLiteral("Speed in pixels/second: "), this);
    auto* autoscaleBox = new QCheckBox(QStringLiteral("Autoscale"), this);
    xSetUpRangeBoxes();
    if (fGraph) {
        autoscaleBox->setChecked(fGraph->fAutoscale);
        fMinBox->setEnabled(!fGraph->fAutoscale);
        fMaxBox->setEnabled(!fGraph->fAutoscale);
    }
    // Only now, so that building the strip changes nothing in the graph.
    connect(fMinBox, SIGNAL(valueChanged(double)), this, SLOT(xMinYChange(double)));
    connect(fMaxBox, SIGNAL(valueChanged(double)), this, SLOT(xMaxYChange(double)));
    connect(autoscaleBox, SIGNAL(stateChanged(int)), this, SLOT(xAutoScaleChange(int)));
    grid->addWidget(playLabel, 0, 0);
    grid->addWidget(fPlayButton, 0, 1);
    grid->addWidget(speedLabel, 0, 4);
    grid->addWidget(speedBox, 0, 5);
    grid->addWidget(autoscaleBox, 1, 0, 1, 2);
    xPlaceRangeControls(*grid);
}

void GraphConfig::xSetUpPlayButton()
{
    fPlayButton = new QPushButton(QIcon(fImageDir + fPauseImg), QString(), this);
    fPlayButton->setFixedSize(25, 25);
    fPlayButton->setFlat(true);
    fPlayButton->setCheckable(true);
    fPlayButton->setChecked(true);
    connect(fPlayButton, SIGNAL(toggled(bool)), this, SLOT(xOnChangePlayMode(bool)));
    if (fGraph)
        connect(fPlayButton, SIGNAL(toggled(bool)), fGraph, SLOT(setPlay(bool)));
}

QDoubleSpinBox* GraphConfig::xMakeSpeedBox()
{
    auto* box = new QDoubleSpinBox(this);
    box->setMinimum(Graph::fMinSpeed);
    box->setMaximum(Graph::fMaxSpeed);
    if (fGraph)
        box->setValue(fGraph->fSpeed);
    connect(box, SIGNAL(valueChanged(double)), this, SLOT(xSpeedChanged(double)));
    return box;
}

void GraphConfig::xSetUpRangeBoxes()
{
    fMinLabel = new QLabel(QStringLiteral("Min:"), this);
    fMaxLabel = new QLabel(QStringLiteral("Max:"), this);
    fMinBox = new QDoubleSpinBox(this);
    fMaxBox = new QDoubleSpinBox(this);
    // In this order the boxes' first ranges cut the values: they start at 0.00 and 99.99.
    fMinBox->setValue(Graph::fDefaultMinY);
    fMaxBox->setValue(Graph::fDefaultMaxY);
    fMinBox->setRange(Graph::fMinYPossible, Graph::fMaxYPossible);
    fMaxBox->setRange(Graph::fMinYPossible, Graph::fMaxYPossible);
}

void GraphConfig::xPlaceRangeControls(QGridLayout& grid)
{
    grid.addWidget(fMinLabel, 1, 2, Qt::AlignRight);
    grid.addWidget(fMinBox, 1, 3);
    grid.addWidget(fMaxLabel, 1, 4, Qt::AlignRight);
    grid.addWidget(fMaxBox, 1, 5);
}

void GraphConfig::xOnChangePlayMode(bool pChecked)
{
    if (fGraph)
        fPlayButton->setIcon(QIcon(fImageDir + (pChecked ? fPauseImg : fPlayImg)));
}

void GraphConfig::xSpeedChanged(double pSpeed)
{
    if (fGraph)
        fGraph->fSpeed = pSpeed;
}

void GraphConfig::xMinYChange(double pMin)
{
    if (!fGraph)
        return;
    fGraph->fMinY = pMin;
    fGraph->fMaxY = std::max(fGraph->fMaxY, pMin);
    const double wholeTop = std::trunc(fGraph->fMaxY);
    if (fMaxBox->value() != wholeTop)
        fMaxBox->setValue(wholeTop);
}

void GraphConfig::xMaxYChange(double pMax)
{
    if (!fGraph)
        return;
    fGraph->fMaxY = pMax;
    fGraph->fMinY = std::min(fGraph->fMinY, pMax);
}

void GraphConfig::xAutoScaleChange(int pState)
{
    if (!fGraph)
        return;
    fGraph->fAutoscale = pState == Qt::Checked;
    const bool manual = !fGraph->fAutoscale;
    for (QWidget* control : {static_cast<QWidget*>(fMinBox), static_cast<QWidget*>(fMaxBox),
                             static_cast<QWidget*>(fMinLabel), static_cast<QWidget*>(fMaxLabel)})
        control->setEnabled(manual);
    if (!manual)
        return;
    // Both are read first: setting the first box moves both ends.
    const double bottom = fGraph->fMinY;
    const double top = fGraph->fMaxY;
    fMinBox->setValue(bottom);
    fMaxBox->setValue(top);
}
