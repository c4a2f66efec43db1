// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "windows/drawing_paper.h"

#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

/// Draws in black on what is behind it.
class Drawing : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(0, 0, 5, 5, Qt::black); }
};

/// A part that draws nothing itself.
class Controls : public QWidget
{
    Q_OBJECT

public:
    explicit Controls(QWidget* parent) : QWidget(parent)
    {
        (new QVBoxLayout(this))->addWidget(new QPushButton("on"));
    }
};

/// Panels that draw, where the desktop's colours are dark.
class TestDrawingPaper : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aDrawingGetsLightPaperWhereColorsAreDark();
    void whereColorsAreLightNothingIsChanged();
    void whatTheToolkitDrawsKeepsItsColors();
    void thePaperGoesWithTheDarkness();

private:
    void color(const QColor& window);
    QColor background(QWidget& part) const;

    QScopedPointer<QWidget> fPanel;
    Drawing* fDrawing = nullptr;
    Controls* fControls = nullptr;
};

void TestDrawingPaper::init()
{
    fPanel.reset(new QWidget);
    auto* layout = new QVBoxLayout(fPanel.data());
    layout->addWidget(fDrawing = new Drawing);
    layout->addWidget(fControls = new Controls(fPanel.data()));
    fDrawing->setMinimumSize(20, 20);
    fPanel->resize(100, 100);
}

void TestDrawingPaper::color(const QColor& window)
{
    fPanel->setPalette(QPalette(window, window));
    givePaper(*fPanel);
}

/// At its right lower corner.
QColor TestDrawingPaper::background(QWidget& part) const
{
    const QImage image = fPanel->grab().toImage(); // which lays it out first
    return image.pixelColor(part.mapTo(fPanel.data(), part.rect().bottomRight()));
}

void TestDrawingPaper::aDrawingGetsLightPaperWhereColorsAreDark()
{
    color("#202020");
    QCOMPARE(background(*fDrawing), QColor(Qt::white));
}

void TestDrawingPaper::whereColorsAreLightNothingIsChanged()
{
    color("#e0e0e0");
    QCOMPARE(background(*fDrawing), QColor("#e0e0e0"));
    QVERIFY(!fDrawing->autoFillBackground());
}

void TestDrawingPaper::whatTheToolkitDrawsKeepsItsColors()
{
    color("#202020");
    QVERIFY(!fControls->autoFillBackground());
    for (const auto* button : fControls->findChildren<QPushButton*>())
        QVERIFY(!button->autoFillBackground());
}

void TestDrawingPaper::thePaperGoesWithTheDarkness()
{
    color("#202020");
    color("#e0e0e0");
    QCOMPARE(background(*fDrawing), QColor("#e0e0e0"));
}

REGISTER_TEST(TestDrawingPaper, QApplication)
#include "tst_drawing_paper.moc"
