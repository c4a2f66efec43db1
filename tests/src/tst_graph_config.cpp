// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include "graph.h"
#include "graph_config.h"
#include "model.h"

#include <boost/make_shared.hpp>

#include <QCheckBox>
#include <QGridLayout>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QDoubleSpinBox* speedBoxOf(const GraphConfig& config)
{
    for (auto* box : config.findChildren<QDoubleSpinBox*>()) {
        if (box != config.fMinBox && box != config.fMaxBox)
            return box;
    }
    return nullptr;
}

/// A running graph without curves under its shown control strip.
struct Panel
{
    explicit Panel(const QString& imageDir = QString())
        : model(boost::make_shared<Model>()), graph(model, nullptr)
    {
        graph.init();
        config = new GraphConfig(&graph, imageDir);
        graph.resize(config->sizeHint());
        config->resize(graph.size());
        graph.show();
    }

    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    QCheckBox* autoscaleBox() const { return config->findChild<QCheckBox*>(); }

    QDoubleSpinBox* speedBox() const { return speedBoxOf(*config); }

    boost::shared_ptr<Model> model;
    Graph graph;
    GraphConfig* config;
};

/// Replaces the text of a box with the keyboard.
void type(QDoubleSpinBox* box, const QString& text)
{
    box->setFocus();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

void click(QCheckBox* box)
{
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, {8, box->height() / 2});
}

QString labelAt(const QGridLayout& grid, int row, int column)
{
    auto* item = grid.itemAtPosition(row, column);
    const auto* label = item ? qobject_cast<QLabel*>(item->widget()) : nullptr;
    return label ? label->text() : QString();
}

QImage iconOf(const QPushButton& button)
{
    return button.icon().pixmap(16, 16).toImage();
}

/// A green play image and a red pause image where the strip looks for them.
bool saveImages(const QTemporaryDir& directory)
{
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(Qt::green);
    if (!QDir(directory.path()).mkdir("buttons") ||
        !image.save(directory.filePath("buttons/play.png")))
        return false;
    image.fill(Qt::red);
    return image.save(directory.filePath("buttons/pause.png"));
}

} // namespace

/// The control strip, moved by mouse and keyboard.
class TestGraphConfig : public GuardedTest
{
    Q_OBJECT

private slots:
    void controlsAreMadeInTheirOrder();
    void controlsStandInTheirPlaces();
    void theStripStartsAsTheGraphIs();
    void aManualGraphStartsWithEnabledBoxes();
    void boxesShowTwoDecimalsAndStepByOne();
    void buildingTheStripChangesNothingInTheGraph();
    void thePlayButtonPausesAndResumes();
    void imagesComeFromTheImageDirectory();
    void missingImagesGiveEmptyIcons();
    void speedIsTypedInPixelsPerSecond();
    void eachKeyPressedCounts();
    void aBottomAboveTheTopLiftsIt();
    void editingTheBottomCutsTheTopToAWholeNumber();
    void editingTheBottomLeavesAWholeTopAlone();
    void aTopBelowTheBottomLowersItAndNotTheBox();
    void aHugeTopIsCutWithoutHarm();
    void autoscaleOnDisablesBoxesAndLabels();
    void autoscaleOffTakesOverTheRange();
    void autoscaleOffTakesOverTheInvertedRange();
    void onlyTheCheckedStateIsAutoscale();
    void withoutGraphTheStripIsWholeAndIdle();
};

void TestGraphConfig::controlsAreMadeInTheirOrder()
{
    const Panel panel;
    QStringList labels;
    for (const auto* label : panel.config->findChildren<QLabel*>())
        labels += label->text();
    QCOMPARE(labels,
             QStringList({"Start/Stop graph: ", "Speed in pixels/second: ", "Min:", "Max:"}));
    QCOMPARE(
        panel.config->findChildren<QDoubleSpinBox*>(),
        (QList<QDoubleSpinBox*>{panel.speedBox(), panel.config->fMinBox, panel.config->fMaxBox}));
}

void TestGraphConfig::controlsStandInTheirPlaces()
{
    const Panel panel;
    const auto* grid = qobject_cast<QGridLayout*>(panel.config->layout());
    QVERIFY(grid);
    QCOMPARE(labelAt(*grid, 0, 0), QString("Start/Stop graph: "));
    QCOMPARE(grid->itemAtPosition(0, 1)->widget(), panel.config->fPlayButton);
    QVERIFY(!grid->itemAtPosition(0, 2));
    QVERIFY(!grid->itemAtPosition(0, 3));
    QCOMPARE(labelAt(*grid, 0, 4), QString("Speed in pixels/second: "));
    QCOMPARE(grid->itemAtPosition(0, 5)->widget(), panel.speedBox());
    QVERIFY(grid->itemAtPosition(1, 0) == grid->itemAtPosition(1, 1));
    QCOMPARE(grid->itemAtPosition(1, 1)->widget(), panel.autoscaleBox());
    QCOMPARE(panel.autoscaleBox()->text(), QString("Autoscale"));
    QCOMPARE(labelAt(*grid, 1, 2), QString("Min:"));
    QCOMPARE(grid->itemAtPosition(1, 2)->widget(), panel.config->fMinLabel);
    QCOMPARE(grid->itemAtPosition(1, 2)->alignment(), Qt::AlignRight);
    QCOMPARE(grid->itemAtPosition(1, 3)->widget(), panel.config->fMinBox);
    QCOMPARE(labelAt(*grid, 1, 4), QString("Max:"));
    QCOMPARE(grid->itemAtPosition(1, 4)->widget(), panel.config->fMaxLabel);
    QCOMPARE(grid->itemAtPosition(1, 4)->alignment(), Qt::AlignRight);
    QCOMPARE(grid->itemAtPosition(1, 5)->widget(), panel.config->fMaxBox);
}

void TestGraphConfig::theStripStartsAsTheGraphIs()
{
    const Panel panel;
    const GraphConfig& config = *panel.config;
    QCOMPARE(config.parentWidget(), &panel.graph);
    QCOMPARE(config.fPlayButton->size(), QSize(25, 25));
    QVERIFY(config.fPlayButton->isFlat());
    QVERIFY(config.fPlayButton->isCheckable());
    QVERIFY(config.fPlayButton->isChecked());
    QVERIFY(config.fPlayButton->text().isEmpty());
    QCOMPARE(panel.speedBox()->value(), 100.0);
    QCOMPARE(panel.speedBox()->minimum(), 0.0);
    QCOMPARE(panel.speedBox()->maximum(), 1000.0);
    QCOMPARE(config.fMinBox->text(), QString("0.00"));
    QCOMPARE(config.fMaxBox->text(), QString("99.99"));
    for (const auto* box : {config.fMinBox, config.fMaxBox}) {
        QCOMPARE(box->minimum(), -2147483647.0);
        QCOMPARE(box->maximum(), 2147483647.0);
        QVERIFY(!box->isEnabled());
    }
    QVERIFY(panel.autoscaleBox()->isChecked());
    QVERIFY2(config.fMinLabel->isEnabled(), "labels are switched by the check box only");
    QVERIFY(config.fMaxLabel->isEnabled());
}

void TestGraphConfig::aManualGraphStartsWithEnabledBoxes()
{
    Graph graph({}, nullptr);
    graph.fAutoscale = false;
    graph.fSpeed = 250;
    const GraphConfig config(&graph, QString());
    QVERIFY(!config.findChild<QCheckBox*>()->isChecked());
    QVERIFY(config.fMinBox->isEnabled());
    QVERIFY(config.fMaxBox->isEnabled());
    QCOMPARE(graph.fSpeed, 250.0);
    QCOMPARE(speedBoxOf(config)->value(), 250.0);
}

void TestGraphConfig::boxesShowTwoDecimalsAndStepByOne()
{
    const Panel panel;
    const auto boxes = panel.config->findChildren<QDoubleSpinBox*>();
    QCOMPARE(boxes.size(), 3);
    for (const auto* box : boxes) {
        QCOMPARE(box->decimals(), 2);
        QCOMPARE(box->singleStep(), 1.0);
    }
}

void TestGraphConfig::buildingTheStripChangesNothingInTheGraph()
{
    const Panel panel;
    QCOMPARE(panel.graph.fMinY, 0.0);
    QCOMPARE(panel.graph.fMaxY, 0.0);
    QVERIFY(panel.graph.fAutoscale);
    QCOMPARE(panel.graph.fSpeed, 100.0);
    QVERIFY(panel.graph.fTimer->isActive());
    Graph graph({}, nullptr);
    graph.fSpeed = 5000;
    const GraphConfig config(&graph, QString());
    QCOMPARE(speedBoxOf(config)->value(), 1000.0);
    QVERIFY2(graph.fSpeed == 5000, "the box's bounds hold for what is typed");
}

void TestGraphConfig::thePlayButtonPausesAndResumes()
{
    const Panel panel;
    QTest::mouseClick(panel.config->fPlayButton, Qt::LeftButton);
    QVERIFY(!panel.config->fPlayButton->isChecked());
    QVERIFY(!panel.graph.fTimer->isActive());
    QTest::keyClick(panel.config->fPlayButton, Qt::Key_Space);
    QVERIFY(panel.config->fPlayButton->isChecked());
    QVERIFY(panel.graph.fTimer->isActive());
}

void TestGraphConfig::imagesComeFromTheImageDirectory()
{
    const QTemporaryDir directory;
    QVERIFY(saveImages(directory));
    const Panel panel(directory.path() + "/");
    const QPushButton& button = *panel.config->fPlayButton;
    QCOMPARE(iconOf(button).pixelColor(8, 8), QColor(Qt::red));
    QTest::mouseClick(panel.config->fPlayButton, Qt::LeftButton);
    QCOMPARE(iconOf(button).pixelColor(8, 8), QColor(Qt::green));
    QTest::mouseClick(panel.config->fPlayButton, Qt::LeftButton);
    QCOMPARE(iconOf(button).pixelColor(8, 8), QColor(Qt::red));
}

void TestGraphConfig::missingImagesGiveEmptyIcons()
{
    const Panel panel("/nowhere/");
    QVERIFY(panel.config->fPlayButton->icon().pixmap(16, 16).isNull());
    QTest::mouseClick(panel.config->fPlayButton, Qt::LeftButton);
    QVERIFY(panel.config->fPlayButton->icon().pixmap(16, 16).isNull());
}

void TestGraphConfig::speedIsTypedInPixelsPerSecond()
{
    const Panel panel;
    type(panel.speedBox(), "37.5");
    QCOMPARE(panel.graph.fSpeed, 37.5);
    QTest::keyClick(panel.speedBox(), Qt::Key_Up);
    QCOMPARE(panel.graph.fSpeed, 38.5);
    type(panel.speedBox(), "0");
    QCOMPARE(panel.graph.fSpeed, 0.0);
}

void TestGraphConfig::eachKeyPressedCounts()
{
    Panel panel;
    click(panel.autoscaleBox());
    const auto type45 = [](QDoubleSpinBox* box) {
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, "45");
    };
    type45(panel.speedBox());
    QCOMPARE(panel.graph.fSpeed, 45.0);
    type45(panel.config->fMaxBox);
    QCOMPARE(panel.graph.fMaxY, 45.0);
    type45(panel.config->fMinBox);
    QCOMPARE(panel.graph.fMinY, 45.0);
}

void TestGraphConfig::aBottomAboveTheTopLiftsIt()
{
    Panel panel;
    click(panel.autoscaleBox());
    panel.graph.fMinY = 0;
    panel.graph.fMaxY = 2.5;
    type(panel.config->fMinBox, "5");
    QCOMPARE(panel.graph.fMinY, 5.0);
    QCOMPARE(panel.graph.fMaxY, 5.0);
    QCOMPARE(panel.config->fMaxBox->value(), 5.0);
}

void TestGraphConfig::editingTheBottomCutsTheTopToAWholeNumber()
{
    Panel panel;
    panel.graph.fAutoscale = false;
    panel.config->xAutoScaleChange(Qt::Unchecked);
    type(panel.config->fMaxBox, "10.5");
    QCOMPARE(panel.graph.fMaxY, 10.5);
    panel.config->xMinYChange(3.7);
    QCOMPARE(panel.graph.fMinY, 3.7);
    QCOMPARE(panel.graph.fMaxY, 10.0);
    QCOMPARE(panel.config->fMaxBox->value(), 10.0);

    panel.graph.fMaxY = -10.5;
    panel.graph.fMinY = -20;
    panel.config->xMinYChange(-15);
    QCOMPARE(panel.graph.fMaxY, -10.0);
}

void TestGraphConfig::editingTheBottomLeavesAWholeTopAlone()
{
    Panel panel;
    panel.graph.fMaxY = 10.5;
    panel.config->fMaxBox->blockSignals(true);
    panel.config->fMaxBox->setValue(10);
    panel.config->fMaxBox->blockSignals(false);
    panel.config->xMinYChange(3);
    QVERIFY2(panel.graph.fMaxY == 10.5, "the box shows 10 already and so writes nothing back");
}

void TestGraphConfig::aTopBelowTheBottomLowersItAndNotTheBox()
{
    Panel panel;
    click(panel.autoscaleBox());
    panel.graph.fMinY = 0;
    const QString shown = panel.config->fMinBox->text();
    type(panel.config->fMaxBox, "-20");
    QCOMPARE(panel.graph.fMinY, -20.0);
    QCOMPARE(panel.graph.fMaxY, -20.0);
    QCOMPARE(panel.config->fMinBox->text(), shown);
}

void TestGraphConfig::aHugeTopIsCutWithoutHarm()
{
    Panel panel;
    panel.graph.fMaxY = 1e300;
    panel.config->xMinYChange(1);
    QCOMPARE(panel.graph.fMinY, 1.0);
    QCOMPARE(panel.graph.fMaxY, 2147483647.0);
    QCOMPARE(panel.config->fMaxBox->value(), 2147483647.0);
}

void TestGraphConfig::autoscaleOnDisablesBoxesAndLabels()
{
    const Panel panel;
    const GraphConfig& config = *panel.config;
    const QList<QWidget*> switched{config.fMinBox, config.fMaxBox, config.fMinLabel,
                                   config.fMaxLabel};
    click(panel.autoscaleBox());
    for (const QWidget* control : switched)
        QVERIFY(control->isEnabled());
    QVERIFY(!panel.graph.fAutoscale);
    click(panel.autoscaleBox());
    for (const QWidget* control : switched)
        QVERIFY(!control->isEnabled());
    QVERIFY(panel.graph.fAutoscale);
}

void TestGraphConfig::autoscaleOffTakesOverTheRange()
{
    Panel panel;
    panel.graph.addSTMValue("a", nullptr);
    panel.graph.fSeries["a"].second = {{0, -7.25}, {0, 31.75}};
    panel.graph.xSetScaleFromAutoScale();
    click(panel.autoscaleBox());
    QCOMPARE(panel.config->fMinBox->value(), -7.25);
    QCOMPARE(panel.config->fMaxBox->value(), 31.75);
    QCOMPARE(panel.graph.fMinY, -7.25);
    QCOMPARE(panel.graph.fMaxY, 31.75);
}

void TestGraphConfig::autoscaleOffTakesOverTheInvertedRange()
{
    Panel panel;
    panel.graph.xSetScaleFromAutoScale();
    click(panel.autoscaleBox());
    QCOMPARE(panel.config->fMinBox->value(), 2147483647.0);
    QCOMPARE(panel.config->fMaxBox->value(), -2147483647.0);
    QCOMPARE(panel.graph.fMinY, -2147483647.0);
    QCOMPARE(panel.graph.fMaxY, -2147483647.0);
}

void TestGraphConfig::onlyTheCheckedStateIsAutoscale()
{
    Panel panel;
    panel.config->xAutoScaleChange(Qt::PartiallyChecked);
    QVERIFY(!panel.graph.fAutoscale);
    panel.config->xAutoScaleChange(Qt::Checked);
    QVERIFY(panel.graph.fAutoscale);
}

void TestGraphConfig::withoutGraphTheStripIsWholeAndIdle()
{
    const QTemporaryDir directory;
    QVERIFY(saveImages(directory));
    GraphConfig config(nullptr, directory.path() + "/");
    config.show();
    QCOMPARE(config.findChildren<QDoubleSpinBox*>().size(), 3);
    auto* autoscale = config.findChild<QCheckBox*>();
    QVERIFY(!autoscale->isChecked());
    QVERIFY(config.fMinBox->isEnabled());
    for (auto* box : config.findChildren<QDoubleSpinBox*>())
        type(box, "12");
    QCOMPARE(config.fMaxBox->value(), 12.0);
    click(autoscale);
    QVERIFY(autoscale->isChecked());
    for (const QWidget* control : config.findChildren<QWidget*>())
        QVERIFY2(control->isEnabled(), "no graph: the slot does nothing");
    QTest::mouseClick(config.fPlayButton, Qt::LeftButton);
    QVERIFY(!config.fPlayButton->isChecked());
    QCOMPARE(iconOf(*config.fPlayButton).pixelColor(8, 8), QColor(Qt::red));
}

REGISTER_TEST(TestGraphConfig, QApplication)
#include "tst_graph_config.moc"
