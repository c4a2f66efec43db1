// SPDX-License-Identifier: MIT
#include "support/file_dialog.h"
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/panel.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// Knows the panel's texts word for word, and only these.
class Dictionary : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        static const QMap<QByteArray, QString> german{
            {"Error", "Fehler"},
            {"Save configuration file", "Konfiguration speichern"},
            {"Merge with File", "Mit Datei vereinen"},
            {"Xml file (*.xml)", "XML-Datei (*.xml)"},
            {"Time interval", "Zeitabstand"},
            {"Get data every (ms):", "Daten holen alle (ms):"}};
        return qstrcmp(context, "Widget") == 0 ? german.value(text) : QString();
    }
};

} // namespace

class TestWidgetDialogs : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void periodDialogStartsAtThePeriodAndHasItsBounds();
    void confirmedPeriodIsUsed_data();
    void confirmedPeriodIsUsed();
    void cancelledPeriodDialogEndsFetching();
    void noSubscriptionStopsFetching();
    void subscribeOnDataIsPassedOn();
    void textThatNamesNoModeChangesNothing();
    void textsOfDialogsAreTranslatedAsAWhole();
    void colourButtonOfARowChangesTheCurvesColour();
    void panelMayBeDeletedWhileADialogIsOpen_data();
    void panelMayBeDeletedWhileADialogIsOpen();
    void panelMayBeDeletedWhileThePopupsChoiceIsAskedFor();
};

void TestWidgetDialogs::initTestCase()
{
    GuardedTest::initTestCase();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestWidgetDialogs::periodDialogStartsAtThePeriodAndHasItsBounds()
{
    Panel panel;
    panel.module->fModel->setTimePolicy(250);
    panel.show();
    panel.subscriptionBox()->setCurrentIndex(1);
    const ModalDriver driver([&](QWidget& dialog) {
        auto* input = qobject_cast<QInputDialog*>(&dialog);
        QVERIFY(input);
        QCOMPARE(input->parentWidget(), panel.widget.get());
        QCOMPARE(input->windowTitle(), QString("Time interval"));
        QCOMPARE(input->labelText(), QString("Get data every (ms):"));
        QCOMPARE(input->intValue(), 250);
        QCOMPARE(input->intMinimum(), 60);
        QCOMPARE(input->intMaximum(), 10000);
        QCOMPARE(input->intStep(), 1);
        cancelDialog(dialog);
    });
    panel.subscriptionBox()->setCurrentIndex(0);
    QVERIFY(driver.isDone());
}

void TestWidgetDialogs::confirmedPeriodIsUsed_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("period");
    QTest::newRow("shortest") << "60" << 60;
    QTest::newRow("longest") << "10000" << 10000;
    QTest::newRow("ordinary") << "500" << 500;
    QTest::newRow("more digits than fit") << "100001" << 10000;
}

void TestWidgetDialogs::confirmedPeriodIsUsed()
{
    QFETCH(QString, typed);
    QFETCH(int, period);
    Panel panel;
    panel.show();
    panel.subscriptionBox()->setCurrentIndex(1);
    QVERIFY(!panel.dataTimer()->isActive());
    const ModalDriver driver([&](QWidget& dialog) {
        auto* spin = dialog.findChild<QSpinBox*>();
        QVERIFY(spin);
        spin->selectAll();
        QTest::keyClicks(spin, typed);
        acceptDialog(dialog);
    });
    panel.subscriptionBox()->setFocus();
    QTest::keyClick(panel.subscriptionBox(), Qt::Key_Up);
    QVERIFY(driver.isDone());
    QCOMPARE(panel.dataTimer()->interval(), period);
    QVERIFY(panel.dataTimer()->isActive() && panel.dataTimer()->isSingleShot());
    QCOMPARE(panel.module->fModel->fTimePolicy, period);
    QCOMPARE(panel.module->fModel->fSubscribeMode, Model::SUBSCRIBE_EVERY);
}

void TestWidgetDialogs::cancelledPeriodDialogEndsFetching()
{
    Panel panel;
    panel.module->fModel->setTimePolicy(250);
    panel.show();
    panel.subscriptionBox()->setCurrentIndex(1);
    panel.dataTimer()->start();
    const ModalDriver driver(cancelDialog);
    panel.subscriptionBox()->setCurrentIndex(0);
    QVERIFY(driver.isDone());
    QCOMPARE(panel.subscriptionBox()->currentIndex(), 1);
    QVERIFY(!panel.dataTimer()->isActive());
    QCOMPARE(panel.module->fModel->fSubscribeMode, Model::SUBSCRIBE_NONE);
    QCOMPARE(panel.module->fModel->fTimePolicy, 250);
}

void TestWidgetDialogs::noSubscriptionStopsFetching()
{
    Panel panel;
    panel.add("a").watch = true;
    panel.show();
    QTest::keyClick(panel.subscriptionBox(), Qt::Key_Down);
    QCOMPARE(panel.subscriptionBox()->currentText(), QString("No subcription"));
    QVERIFY(!panel.dataTimer()->isActive());
    QCOMPARE(panel.module->fModel->fSubscribeMode, Model::SUBSCRIBE_NONE);
    QCOMPARE(panel.module->fModel->fTimePolicy, 100);
}

void TestWidgetDialogs::subscribeOnDataIsPassedOn()
{
    Panel panel;
    panel.show();
    panel.subscriptionBox()->addItem("Subscribe on data");
    panel.subscriptionBox()->setCurrentIndex(2);
    QCOMPARE(panel.module->fModel->fSubscribeMode, Model::SUBSCRIBE_ON_DATA);
    QVERIFY(panel.dataTimer()->isActive());
}

void TestWidgetDialogs::textThatNamesNoModeChangesNothing()
{
    Panel panel;
    panel.show();
    panel.subscriptionBox()->addItem("No subscription");
    panel.subscriptionBox()->setCurrentIndex(2);
    QCOMPARE(panel.module->fModel->fSubscribeMode, Model::SUBSCRIBE_EVERY);
    QVERIFY(panel.dataTimer()->isActive());
}

void TestWidgetDialogs::textsOfDialogsAreTranslatedAsAWhole()
{
    Dictionary dictionary;
    QVERIFY(QCoreApplication::installTranslator(&dictionary));
    Panel panel;
    panel.show();
    QCOMPARE(fileDialogOf(panel, "Save").mid(0, 2),
             QStringList({"Konfiguration speichern", "XML-Datei (*.xml)"}));
    QCOMPARE(fileDialogOf(panel, "Open").mid(0, 2),
             QStringList({"Mit Datei vereinen", "XML-Datei (*.xml)"}));
    panel.subscriptionBox()->setCurrentIndex(1);
    QStringList read;
    ModalDriver driver([&](QWidget& dialog) {
        if (const auto* input = qobject_cast<QInputDialog*>(&dialog))
            read << input->windowTitle() << input->labelText();
        cancelDialog(dialog);
    });
    panel.subscriptionBox()->setCurrentIndex(0);
    QCOMPARE(read, QStringList({"Zeitabstand", "Daten holen alle (ms):"}));
    driver.then<QFileDialog>([](QFileDialog& files) { chooseFile(files, "/dev/null"); });
    driver.then<QMessageBox>([&read](QMessageBox& box) {
        read = QStringList(box.windowTitle());
        box.accept();
    });
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QCOMPARE(read, QStringList("Fehler"));
}

void TestWidgetDialogs::colourButtonOfARowChangesTheCurvesColour()
{
    Panel panel;
    STMVal& value = panel.add("a");
    value.graph = true;
    panel.show();
    const ModalDriver driver([](QWidget& dialog) {
        auto* chooser = qobject_cast<QColorDialog*>(&dialog);
        QVERIFY(chooser);
        chooser->setCurrentColor(QColor(10, 20, 30));
        acceptDialog(dialog);
    });
    panel.tree()->scrollToItem(panel.row("a"));
    QTest::mouseClick(panel.tree()->itemWidget(panel.row("a"), Widget::fColColor), Qt::LeftButton);
    QVERIFY(driver.isDone());
    QCOMPARE(value.color.green, 20);
    QCOMPARE(panel.graph()->fSeries["a"].first->green, 20);
}

void TestWidgetDialogs::panelMayBeDeletedWhileADialogIsOpen_data()
{
    QTest::addColumn<QString>("opener");
    for (const char* opener : {"Save", "Open", "period", "colour", "error"})
        QTest::newRow(opener) << opener;
}

void TestWidgetDialogs::panelMayBeDeletedWhileADialogIsOpen()
{
    QFETCH(QString, opener);
    const QTemporaryDir folder;
    Panel panel;
    panel.add("a");
    panel.show();
    const QPointer<Widget> widget = panel.widget.get();
    const std::function<void(QWidget&)> remove = [&panel](QWidget&) { panel.widget.reset(); };
    std::unique_ptr<ModalDriver> second;
    const ModalDriver driver([&](QWidget& dialog) {
        if (opener != "error") {
            remove(dialog);
            return;
        }
        QTimer::singleShot(0, [&] { second = std::make_unique<ModalDriver>(remove); });
        chooseFile(dialog, folder.filePath("missing/cfg"));
    });
    if (opener == "Save" || opener == "Open")
        QTest::mouseClick(panel.button(opener), Qt::LeftButton);
    else if (opener == "error")
        QTest::mouseClick(panel.button("Save"), Qt::LeftButton);
    else if (opener == "colour")
        QTest::mouseClick(panel.tree()->itemWidget(panel.row("a"), Widget::fColColor),
                          Qt::LeftButton);
    else {
        panel.subscriptionBox()->setCurrentIndex(1);
        panel.subscriptionBox()->setCurrentIndex(0);
    }
    QVERIFY(driver.isDone());
    QVERIFY(!widget);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestWidgetDialogs::panelMayBeDeletedWhileThePopupsChoiceIsAskedFor()
{
    Panel panel;
    panel.show();
    const QPointer<QComboBox> box = panel.subscriptionBox();
    box->setCurrentIndex(1);
    const ModalDriver driver([&panel](QWidget&) { panel.widget.reset(); });
    box->showPopup();
    TRY_VERIFY(QApplication::activePopupWidget());
    QWidget* list = QApplication::activePopupWidget()->findChild<QAbstractItemView*>();
    QTest::keyClick(list, Qt::Key_Up);
    QTest::keyClick(list, Qt::Key_Return);
    QVERIFY(driver.isDone());
    QVERIFY(!panel.widget);
    TRY_VERIFY(!box);
}

REGISTER_TEST(TestWidgetDialogs, QApplication)
#include "tst_widget_dialogs.moc"
