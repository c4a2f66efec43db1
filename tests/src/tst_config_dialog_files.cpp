// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/start_bench.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

/// Ends the start-up dialog with a result of its own if it is in front again after a warning.
class StartShownAgain
{
public:
    static constexpr int fResult = 42;

    explicit StartShownAgain(const StartBench& start)
    {
        QObject::connect(&fTimer, &QTimer::timeout, [this, &start] {
            auto* front = qobject_cast<ConfigDialog*>(QApplication::activeModalWidget());
            if (front && !start.warningText.isNull() && ++fLooks > 3)
                front->done(fResult);
        });
        fTimer.start(5);
    }

private:
    QTimer fTimer;
    int fLooks = 0;
};

} // namespace

/// The files that the start-up dialog opens and saves.
class TestConfigDialogFiles : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aFileIsOpened();
    void theOpenDialogAsksForXmlFilesInTheProgramsFolder();
    void cancellingTheOpenDialogLeavesTheStartOpen();
    void aFailedOpenEndsTheStart_data();
    void aFailedOpenEndsTheStart();
    void openingTakesExistingFilesOnly();
    void aFileThatWentMissingEndsTheStart();
    void anEditedAliasIsGraphedAndSaved();
    void everyDialogBelongsToTheStart();
    void chosenKeysAreGraphedAndSaved();
    void theSaveDialogAsksForXmlFilesInTheProgramsFolder();
    void cancellingTheChoiceLeavesTheStartOpen();
    void cancellingTheSaveAcceptsAllTheSame();
    void choosingNothingSavesAnEmptyFile();
    void theWholeModelIsSaved();
    void aFailedSaveWarnsAndAcceptsAllTheSame();
    void theEndingOfASavedFileIsComparedWithCase_data();
    void theEndingOfASavedFileIsComparedWithCase();
    void theWindowMayBeDeletedMeanwhile_data();
    void theWindowMayBeDeletedMeanwhile();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestConfigDialogFiles::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(fFolder->isValid());
}

void TestConfigDialogFiles::aFileIsOpened()
{
    writeBytes(path("keys.xml"),
               "<stm_viewer><stm_value name='a' alias='b' watch='1'/></stm_viewer>");
    StartBench start;
    start.press(openText);
    start.answerFileDialog(path("keys.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(1));
    QCOMPARE(start.values()[0]->names.second, std::string("b"));
    QVERIFY(start.memory.calls.empty());
}

void TestConfigDialogFiles::theOpenDialogAsksForXmlFilesInTheProgramsFolder()
{
    StartBench start;
    QString title;
    QString folder;
    QStringList filters;
    bool belongsToTheStart = false;
    start.press(openText);
    start.user.then<QFileDialog>([&](QFileDialog& dialog) {
        title = dialog.windowTitle();
        folder = dialog.directory().absolutePath();
        filters = dialog.nameFilters();
        belongsToTheStart = qobject_cast<ConfigDialog*>(dialog.parentWidget());
        dialog.reject();
    });
    start.giveUp<ConfigDialog>();
    QCOMPARE(start.run(), int(QDialog::Rejected));
    QCOMPARE(title, QString("Open File"));
    QCOMPARE(folder, QCoreApplication::applicationDirPath());
    QCOMPARE(filters, QStringList({"Xml file (*.xml)"}));
    QVERIFY(belongsToTheStart);
}

void TestConfigDialogFiles::cancellingTheOpenDialogLeavesTheStartOpen()
{
    StartBench start;
    start.press(openText);
    start.giveUp<QFileDialog>();
    start.press(allText);
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(3));
}

void TestConfigDialogFiles::aFailedOpenEndsTheStart_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::newRow("no XML")
        << QByteArray("<stm_viewer>")
        << "Could not parse XML from location %1.\nError reading Element value.\n"
           "Configuration file will not be loaded.";
    QTest::newRow("other root") << QByteArray("<viewer/>")
                                << "Incorrect Tarvek Glimmet configuration file at location %1.\n.";
}

void TestConfigDialogFiles::aFailedOpenEndsTheStart()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString name = path(QString::fromUtf8("gr\xC3\xBC"
                                                "n.xml"));
    writeBytes(name, bytes);
    StartBench start;
    start.press(openText);
    start.answerFileDialog(name);
    start.readWarning();
    const StartShownAgain again(start);
    QCOMPARE(start.run(), int(QDialog::Rejected));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.warningTitle, QString("Error"));
    QCOMPARE(start.warningText, message.arg(name));
    QCOMPARE(start.warningButtons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(start.values().empty());
}

void TestConfigDialogFiles::openingTakesExistingFilesOnly()
{
    StartBench start;
    QFileDialog::FileMode mode{};
    QFileDialog::AcceptMode direction{};
    QStringList schemes;
    start.press(openText);
    start.user.then<QFileDialog>([&](QFileDialog& dialog) {
        mode = dialog.fileMode();
        direction = dialog.acceptMode();
        schemes = dialog.supportedSchemes();
        dialog.reject();
    });
    start.giveUp<ConfigDialog>();
    QCOMPARE(start.run(), int(QDialog::Rejected));
    QCOMPARE(mode, QFileDialog::ExistingFile);
    QCOMPARE(direction, QFileDialog::AcceptOpen);
    QCOMPARE(schemes, QStringList("file"));
}

void TestConfigDialogFiles::aFileThatWentMissingEndsTheStart()
{
    const QString name = path("keys.xml");
    writeBytes(name, "<stm_viewer><stm_value name='a' alias='b'/></stm_viewer>");
    StartBench start;
    start.press(openText);
    start.user.then<QFileDialog>([name](QFileDialog& dialog) {
        QObject::connect(&dialog, &QFileDialog::fileSelected, [name] { QFile::remove(name); });
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(name);
        QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    });
    start.readWarning();
    const StartShownAgain again(start);
    QCOMPARE(start.run(), int(QDialog::Rejected));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.warningText, "Failed to open location " + name +
                                    " for reading.\nConfiguration file will not be loaded.");
    QVERIFY(start.values().empty());
}

void TestConfigDialogFiles::anEditedAliasIsGraphedAndSaved()
{
    StartBench start;
    start.press(newText);
    start.user.then<StmListDialog>([](StmListDialog& dialog) {
        auto* item = dialog.findChild<QListWidget*>()->findItems("Leg/Knee", Qt::MatchExactly)[0];
        item->setText(QString("genou ") + QChar(0xe9));
        item->setCheckState(Qt::Checked);
        QTest::mouseClick(buttonOf(dialog, "Ok"), Qt::LeftButton);
    });
    start.answerFileDialog(path("keys.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(start.values().size(), std::size_t(1));
    QCOMPARE(start.values()[0]->names,
             std::make_pair(std::string("Leg/Knee"), std::string("genou \xe9")));
    QVERIFY(start.values()[0]->graph && start.values()[0]->watch);

    StartBench next;
    next.press(openText);
    next.answerFileDialog(path("keys.xml"));
    QCOMPARE(next.run(), int(QDialog::Accepted));
    QCOMPARE(next.values().size(), std::size_t(1));
    QCOMPARE(next.values()[0]->names, start.values()[0]->names);
    QVERIFY(next.values()[0]->graph);
}

void TestConfigDialogFiles::everyDialogBelongsToTheStart()
{
    StartBench start;
    QStringList parents;
    const auto note = [&parents](const QWidget& dialog) {
        const QWidget* parent = dialog.parentWidget();
        parents += parent ? parent->metaObject()->className() : "none";
    };
    start.press(newText);
    start.user.then<StmListDialog>([note](StmListDialog& dialog) {
        note(dialog);
        dialog.onOk();
    });
    start.user.then<QFileDialog>([this, note](QFileDialog& dialog) {
        note(dialog);
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path("none/keys"));
        QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    });
    start.user.then<QMessageBox>([note](QMessageBox& box) {
        note(box);
        box.accept();
    });
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(parents, (QStringList{"ConfigDialog", "ConfigDialog", "ConfigDialog"}));
}

void TestConfigDialogFiles::chosenKeysAreGraphedAndSaved()
{
    StartBench start;
    start.press(newText);
    start.choose({"Arm/Elbow", "Leg/Knee"});
    start.answerFileDialog(path("keys.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(2));
    QCOMPARE(start.values()[0]->names,
             std::make_pair(std::string("Leg/Knee"), std::string("Leg/Knee")));
    QCOMPARE(start.values()[1]->names.first, std::string("Arm/Elbow"));
    QVERIFY(start.values()[0]->graph && start.values()[0]->watch);
    QVERIFY(start.values()[1]->graph && start.values()[1]->watch);
    const QByteArray saved = bytesOf(path("keys.xml"));
    QVERIFY2(saved.contains("name=\"Leg/Knee\" alias=\"Leg/Knee\" watch=\"1\" graph=\"1\""), saved);
    QCOMPARE(saved.count("stm_value name"), 2);
}

void TestConfigDialogFiles::theSaveDialogAsksForXmlFilesInTheProgramsFolder()
{
    StartBench start;
    QString title;
    QString folder;
    QStringList filters;
    start.press(newText);
    start.choose({});
    start.user.then<QFileDialog>([&](QFileDialog& dialog) {
        title = dialog.windowTitle();
        folder = dialog.directory().absolutePath();
        filters = dialog.nameFilters();
        dialog.reject();
    });
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(title, QString("Save configuration file"));
    QCOMPARE(folder, QCoreApplication::applicationDirPath());
    QCOMPARE(filters, QStringList({"Xml file (*.xml)"}));
}

void TestConfigDialogFiles::cancellingTheChoiceLeavesTheStartOpen()
{
    StartBench start;
    start.press(newText);
    start.giveUp<StmListDialog>();
    start.giveUp<ConfigDialog>();
    QCOMPARE(start.run(), int(QDialog::Rejected));
    QVERIFY(start.user.isDone());
    QVERIFY(start.values().empty());
}

void TestConfigDialogFiles::cancellingTheSaveAcceptsAllTheSame()
{
    StartBench start;
    start.press(newText);
    start.choose({"Arm/Elbow"});
    start.giveUp<QFileDialog>();
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(1));
}

void TestConfigDialogFiles::choosingNothingSavesAnEmptyFile()
{
    StartBench start;
    start.press(newText);
    start.choose({});
    start.answerFileDialog(path("none.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(bytesOf(path("none.xml")), QByteArray("<stm_viewer />\n"));
}

void TestConfigDialogFiles::theWholeModelIsSaved()
{
    StartBench start;
    start.module->addSTMVal("before", "earlier");
    start.press(newText);
    start.choose({"Arm/Elbow"});
    start.answerFileDialog(path("keys.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    const QByteArray saved = bytesOf(path("keys.xml"));
    QVERIFY(saved.contains("name=\"before\" alias=\"earlier\" watch=\"0\" graph=\"0\""));
    QVERIFY(saved.contains("name=\"Arm/Elbow\""));
}

void TestConfigDialogFiles::aFailedSaveWarnsAndAcceptsAllTheSame()
{
    QVERIFY(QDir().mkpath(path(QString::fromUtf8("gr\xC3\xBC"
                                                 "n.xml"))));
    const QString name = path(QString::fromUtf8("none/gr\xC3\xBC"
                                                "n.xml"));
    StartBench start;
    start.press(newText);
    start.choose({"Arm/Elbow"});
    start.answerFileDialog(name);
    start.readWarning();
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.warningTitle, QString("Error"));
    QCOMPARE(start.warningText, "Failed to open location " + name +
                                    " for writing.\n%2\nConfiguration file will not be saved.");
    QCOMPARE(start.warningButtons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(start.values().size(), std::size_t(1));
}

void TestConfigDialogFiles::theEndingOfASavedFileIsComparedWithCase_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("saved");
    QTest::newRow("lower case") << "keys.xml"
                                << "keys.xml";
    QTest::newRow("upper case") << "keys.XML"
                                << "keys.XML.xml";
    QTest::newRow("none") << "keys"
                          << "keys.xml";
    QTest::newRow("no dot") << "keysxml"
                            << "keysxml.xml";
}

void TestConfigDialogFiles::theEndingOfASavedFileIsComparedWithCase()
{
    QFETCH(QString, given);
    QFETCH(QString, saved);
    StartBench start;
    start.press(newText);
    start.choose({});
    start.answerFileDialog(path(given));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(QDir(fFolder->path()).entryList(QDir::Files), QStringList({saved}));
}

void TestConfigDialogFiles::theWindowMayBeDeletedMeanwhile_data()
{
    QTest::addColumn<QString>("open");
    for (const char* open : {"start", "file to open", "complaint on opening", "choice",
                             "file to save", "complaint on saving"})
        QTest::newRow(open) << open;
}

void TestConfigDialogFiles::theWindowMayBeDeletedMeanwhile()
{
    QFETCH(QString, open);
    writeBytes(path("other.xml"), "<other/>");
    StartBench start;
    const bool saves = open == "file to save" || open == "complaint on saving";
    if (open == "start") {
        start.closeTheWindowBehind<ConfigDialog>();
    } else if (open == "file to open") {
        start.press(openText);
        start.closeTheWindowBehind<QFileDialog>();
    } else if (open == "complaint on opening") {
        start.press(openText);
        start.answerFileDialog(path("other.xml"));
        start.closeTheWindowBehind<QMessageBox>();
    } else if (open == "choice") {
        start.press(newText);
        start.closeTheWindowBehind<StmListDialog>();
    } else {
        start.press(newText);
        start.choose({"Arm/Elbow"});
        if (open == "complaint on saving") {
            start.answerFileDialog(path("none/keys.xml"));
            start.closeTheWindowBehind<QMessageBox>();
        } else {
            start.closeTheWindowBehind<QFileDialog>();
        }
    }
    QCOMPARE(start.runInWindow(), int(QDialog::Rejected));
    QVERIFY(start.user.isDone());
    QVERIFY(!start.window);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(start.values().size(), std::size_t(saves ? 1 : 0));
    QVERIFY(!QFile::exists(path("keys.xml")));
}

REGISTER_TEST(TestConfigDialogFiles, QApplication)
#include "tst_config_dialog_files.moc"
