// SPDX-License-Identifier: MIT
#include "support/files.h"
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

const QByteArray oneKeyFile = "<stm_viewer>\n"
                              "    <stm_value name=\"Key/new\" alias=\"new\" watch=\"1\" "
                              "graph=\"1\">\n"
                              "        <color red=\"1\" green=\"2\" blue=\"3\" />\n"
                              "    </stm_value>\n"
                              "</stm_viewer>\n";

/// Answers the file dialog with `path`, then records every box that comes, and closes it.
class ErrorBoxes
{
public:
    explicit ErrorBoxes(const QString& path)
        : fFile([this, path](QWidget& dialog) {
              QTimer::singleShot(0, [this] { waitForBox(); });
              chooseFile(dialog, path);
          })
    {
    }

    QStringList texts;

private:
    void waitForBox()
    {
        fBox = std::make_unique<ModalDriver>([this](QWidget& dialog) {
            const auto* box = qobject_cast<QMessageBox*>(&dialog);
            QVERIFY(box);
            QVERIFY(qobject_cast<Widget*>(box->parentWidget()));
            QCOMPARE(box->windowTitle(), QString("Error"));
            QCOMPARE(box->icon(), QMessageBox::Warning);
            QCOMPARE(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            texts += box->text();
            acceptDialog(dialog);
        });
    }

    ModalDriver fFile;
    std::unique_ptr<ModalDriver> fBox;
};

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

/// What a user reads in the file dialog behind a button: title, filters, folder.
QStringList fileDialogOf(const Panel& panel, const QString& toolTip)
{
    QStringList read;
    const ModalDriver driver([&](QWidget& dialog) {
        if (const auto* files = qobject_cast<QFileDialog*>(&dialog))
            read << files->windowTitle() << files->nameFilters()
                 << files->directory().absolutePath();
        cancelDialog(dialog);
    });
    QTest::mouseClick(panel.button(toolTip), Qt::LeftButton);
    return read;
}

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
    void savingAddsTheExtension_data();
    void savingAddsTheExtension();
    void fileDialogsAskForXmlFilesInTheProgramsFolder();
    void savingAsksForAnyFileAndOpeningForOneThatIsThere();
    void openingTakesNoNameOfAMissingFile();
    void textsOfDialogsAreTranslatedAsAWhole();
    void cancelledFileDialogsDoNothing();
    void failedSaveShowsOneErrorBox();
    void mergeAddsTheKeysOfAFile();
    void rejectedMergeShowsOneErrorBoxAndKeepsTheTable();
    void savedFileMergesBack();
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

void TestWidgetDialogs::savingAddsTheExtension_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    QTest::newRow("without") << "cfg"
                             << "cfg.xml";
    QTest::newRow("with") << "cfg.xml"
                          << "cfg.xml";
    QTest::newRow("upper case") << "cfg.XML"
                                << "cfg.XML.xml";
    QTest::newRow("without dot") << "xml"
                                 << "xml.xml";
}

void TestWidgetDialogs::savingAddsTheExtension()
{
    QFETCH(QString, typed);
    QFETCH(QString, written);
    const QTemporaryDir folder;
    Panel panel;
    panel.add("a");
    panel.show();
    const ModalDriver driver([&](QWidget& dialog) {
        auto* file = qobject_cast<QFileDialog*>(&dialog);
        QVERIFY(file);
        QCOMPARE(file->windowTitle(), QString("Save configuration file"));
        QCOMPARE(file->nameFilters(), QStringList{"Xml file (*.xml)"});
        QCOMPARE(file->directory().absolutePath(), QApplication::applicationDirPath());
        chooseFile(dialog, folder.filePath(typed));
    });
    QTest::mouseClick(panel.button("Save"), Qt::LeftButton);
    QVERIFY(driver.isDone());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{written});
    QFile saved(folder.filePath(written));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QVERIFY(saved.readAll().contains("alias=\"a\""));
}

void TestWidgetDialogs::fileDialogsAskForXmlFilesInTheProgramsFolder()
{
    Panel panel;
    panel.show();
    const QString folder = QCoreApplication::applicationDirPath();
    QCOMPARE(fileDialogOf(panel, "Save"),
             QStringList({"Save configuration file", "Xml file (*.xml)", folder}));
    QCOMPARE(fileDialogOf(panel, "Open"),
             QStringList({"Merge with File", "Xml file (*.xml)", folder}));
}

void TestWidgetDialogs::savingAsksForAnyFileAndOpeningForOneThatIsThere()
{
    Panel panel;
    panel.show();
    using Mode = std::pair<QFileDialog::AcceptMode, QFileDialog::FileMode>;
    const auto modeOf = [&panel](const QString& toolTip) {
        Mode mode;
        const ModalDriver driver([&](QWidget& dialog) {
            const auto& files = dynamic_cast<QFileDialog&>(dialog);
            QCOMPARE(files.parentWidget(), panel.widget.get());
            QCOMPARE(files.options(), QFileDialog::Options());
            mode = {files.acceptMode(), files.fileMode()};
            cancelDialog(dialog);
        });
        QTest::mouseClick(panel.button(toolTip), Qt::LeftButton);
        return mode;
    };
    QVERIFY(modeOf("Save") == Mode(QFileDialog::AcceptSave, QFileDialog::AnyFile));
    QVERIFY(modeOf("Open") == Mode(QFileDialog::AcceptOpen, QFileDialog::ExistingFile));
}

void TestWidgetDialogs::openingTakesNoNameOfAMissingFile()
{
    const QTemporaryDir folder;
    Panel panel;
    panel.show();
    QStringList seen;
    std::unique_ptr<ModalDriver> complaint;
    const ModalDriver driver([&](QWidget& dialog) {
        complaint = std::make_unique<ModalDriver>([&](QWidget& box) {
            seen += box.parentWidget() == &dialog ? "complaint of the file dialog" : "other";
            acceptDialog(box);
        });
        // The complaint comes over the dialog: not from within the driver of the one beneath it.
        QTimer::singleShot(0, &dialog, [&] {
            chooseFile(dialog, folder.filePath("missing.xml"));
            seen += dialog.isVisible() ? "still open" : "closed";
            cancelDialog(dialog);
        });
    });
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QCOMPARE(seen, (QStringList{"complaint of the file dialog", "still open"}));
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

void TestWidgetDialogs::cancelledFileDialogsDoNothing()
{
    Panel panel;
    panel.add("a");
    panel.show();
    for (const char* toolTip : {"Save", "Open"}) {
        const ModalDriver driver(cancelDialog);
        QTest::mouseClick(panel.button(toolTip), Qt::LeftButton);
        QVERIFY(driver.isDone());
        QVERIFY(!QApplication::activeModalWidget());
    }
    QCOMPARE(panel.tree()->topLevelItemCount(), 1);
}

void TestWidgetDialogs::failedSaveShowsOneErrorBox()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("taken.xml"));
    Panel panel;
    panel.show();
    const ErrorBoxes boxes(folder.filePath("taken"));
    QTest::mouseClick(panel.button("Save"), Qt::LeftButton);
    QCOMPARE(boxes.texts, QStringList{QString("Failed to open location %1 for writing.\n%2\n"
                                              "Configuration file will not be saved.")
                                          .arg(folder.filePath("taken.xml"), "%2")});
}

void TestWidgetDialogs::mergeAddsTheKeysOfAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("keys.any");
    writeBytes(path, oneKeyFile);
    Panel panel;
    panel.add("a");
    panel.show();
    const ModalDriver driver([&](QWidget& dialog) {
        auto* file = qobject_cast<QFileDialog*>(&dialog);
        QVERIFY(file);
        QCOMPARE(file->windowTitle(), QString("Merge with File"));
        QCOMPARE(file->nameFilters(), QStringList{"Xml file (*.xml)"});
        QCOMPARE(file->directory().absolutePath(), QApplication::applicationDirPath());
        chooseFile(dialog, path);
    });
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QVERIFY(driver.isDone());
    QCOMPARE(panel.tree()->topLevelItemCount(), 2);
    QCOMPARE(panel.row("new")->checkState(Widget::fColGraph), Qt::Checked);
    QCOMPARE(panel.graph()->fSeries["new"].first->blue, 3);
}

void TestWidgetDialogs::rejectedMergeShowsOneErrorBoxAndKeepsTheTable()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("other.xml");
    writeBytes(path, "<other/>");
    Panel panel;
    STMVal& value = panel.add("a");
    value.watch = value.graph = true;
    panel.add("b").watch = true;
    panel.show();
    panel.graph()->fSeries["a"].second.append({1, 2});
    // What the table shows is not what the model holds: only a rebuild would bring it in line.
    value.watch = value.graph = false;
    QTreeWidgetItem* row = panel.row("a");
    QTreeWidgetItem* other = panel.row("b");
    const ErrorBoxes boxes(path);
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QCOMPARE(boxes.texts, QStringList{"Incorrect Tarvek Glimmet configuration file at location " +
                                      path + ".\n."});
    QCOMPARE(panel.tree()->topLevelItemCount(), 2);
    QCOMPARE(panel.row("a"), row);
    QCOMPARE(row->checkState(Widget::fColWatch), Qt::Checked);
    QCOMPARE(row->checkState(Widget::fColGraph), Qt::Checked);
    QCOMPARE(other->checkState(Widget::fColWatch), Qt::Checked);
    QCOMPARE(other->checkState(Widget::fColGraph), Qt::Unchecked);
    QCOMPARE(panel.graph()->fSeries.keys(), QStringList{"a"});
    QCOMPARE(panel.graph()->fSeries["a"].second.size(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestWidgetDialogs::savedFileMergesBack()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("keys.xml");
    Panel panel;
    panel.add("a").graph = true;
    panel.show();
    const ModalDriver save([&path](QWidget& dialog) { chooseFile(dialog, path); });
    QTest::mouseClick(panel.button("Save"), Qt::LeftButton);
    const ModalDriver open([&path](QWidget& dialog) { chooseFile(dialog, path); });
    QTest::mouseClick(panel.button("Open"), Qt::LeftButton);
    QCOMPARE(panel.tree()->topLevelItemCount(), 2);
    QCOMPARE(panel.module->fModel->fSTMVals[1]->names.first, std::string("Key/a"));
    QVERIFY(panel.module->fModel->fSTMVals[1]->graph);
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
