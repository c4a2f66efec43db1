// SPDX-License-Identifier: MIT
#include "support/file_dialog.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/panel.h"
#include "support/register_test.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <utility>

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

/// Clicks this button, and chooses `path` in the file dialog that comes.
void chooseBehind(const Panel& panel, const QString& toolTip, const QString& path)
{
    const ModalDriver driver([&path](QWidget& dialog) { chooseFile(dialog, path); });
    QTest::mouseClick(panel.button(toolTip), Qt::LeftButton);
    QVERIFY(driver.isDone());
}

} // namespace

/// Saving the keys into a file, and merging one, by the panel's buttons.
class TestWidgetFiles : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void savingAddsTheExtension_data();
    void savingAddsTheExtension();
    void fileDialogsAskForXmlFilesInTheProgramsFolder();
    void savingAsksForAnyFileAndOpeningForOneThatIsThere();
    void openingTakesNoNameOfAMissingFile();
    void cancelledFileDialogsDoNothing();
    void failedSaveShowsOneErrorBox();
    void mergeAddsTheKeysOfAFile();
    void rejectedMergeShowsOneErrorBoxAndKeepsTheTable();
    void savedFileMergesBack();
};

void TestWidgetFiles::initTestCase()
{
    GuardedTest::initTestCase();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestWidgetFiles::savingAddsTheExtension_data()
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

void TestWidgetFiles::savingAddsTheExtension()
{
    QFETCH(QString, typed);
    QFETCH(QString, written);
    const QTemporaryDir folder;
    Panel panel;
    panel.add("a");
    panel.show();
    chooseBehind(panel, "Save", folder.filePath(typed));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{written});
    QFile saved(folder.filePath(written));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QVERIFY(saved.readAll().contains("alias=\"a\""));
}

void TestWidgetFiles::fileDialogsAskForXmlFilesInTheProgramsFolder()
{
    Panel panel;
    panel.show();
    const QString folder = QCoreApplication::applicationDirPath();
    QCOMPARE(fileDialogOf(panel, "Save"),
             QStringList({"Save configuration file", "Xml file (*.xml)", folder}));
    QCOMPARE(fileDialogOf(panel, "Open"),
             QStringList({"Merge with File", "Xml file (*.xml)", folder}));
}

void TestWidgetFiles::savingAsksForAnyFileAndOpeningForOneThatIsThere()
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

void TestWidgetFiles::openingTakesNoNameOfAMissingFile()
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

void TestWidgetFiles::cancelledFileDialogsDoNothing()
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

void TestWidgetFiles::failedSaveShowsOneErrorBox()
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

void TestWidgetFiles::mergeAddsTheKeysOfAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("keys.any");
    writeBytes(path, oneKeyFile);
    Panel panel;
    panel.add("a");
    panel.show();
    chooseBehind(panel, "Open", path);
    QCOMPARE(panel.tree()->topLevelItemCount(), 2);
    QCOMPARE(panel.row("new")->checkState(Widget::fColGraph), Qt::Checked);
    QCOMPARE(panel.graph()->fSeries["new"].first->blue, 3);
}

void TestWidgetFiles::rejectedMergeShowsOneErrorBoxAndKeepsTheTable()
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

void TestWidgetFiles::savedFileMergesBack()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("keys.xml");
    Panel panel;
    panel.add("a").graph = true;
    panel.show();
    chooseBehind(panel, "Save", path);
    chooseBehind(panel, "Open", path);
    QCOMPARE(panel.tree()->topLevelItemCount(), 2);
    QCOMPARE(panel.module->fModel->fSTMVals[1]->names.first, std::string("Key/a"));
    QVERIFY(panel.module->fModel->fSTMVals[1]->graph);
}

REGISTER_TEST(TestWidgetFiles, QApplication)
#include "tst_widget_files.moc"
