// SPDX-License-Identifier: MIT
#include "config_dialog.h"
#include "latin1.h"
#include "model.h"
#include "module.h"
#include "stmlist_dialog.h"
#include "support/captured_stderr.h"
#include "support/fake_memory.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/register_test.h"

#include <zo/error.h>

#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

namespace {

const QString newText = "New configuration file";
const QString openText = "Open configuration file";
const QString allText = "Do not use a config file (slow)";

/// The start-up dialog over a robot with some keys, and a user who answers what it opens.
struct Start
{
    Start() : module(boost::make_shared<Module>(memory.proxy()))
    {
        memory.answer = [this](const ZoValue&) { return ZoValue(keys); };
    }

    int run()
    {
        ConfigDialog dialog(module, "", nullptr);
        return dialog.exec();
    }

    /// Runs the dialog as the child of a window that may be deleted meanwhile.
    int runInWindow() { return (new ConfigDialog(module, "", window.get()))->exec(); }

    /// Deletes that window once a dialog of this kind is in front.
    template <class Dialog>
    void closeTheWindowBehind()
    {
        user.then<Dialog>([this](Dialog&) { window.reset(); });
    }

    void press(const QString& text)
    {
        user.then<ConfigDialog>([text](ConfigDialog& dialog) {
            QTest::mouseClick(buttonOf(dialog, text), Qt::LeftButton);
        });
    }

    void answerFileDialog(const QString& name)
    {
        user.then<QFileDialog>([name](QFileDialog& dialog) {
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(name);
            QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
        });
    }

    template <class Dialog>
    void giveUp()
    {
        user.then<Dialog>([](Dialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    }

    void choose(const QStringList& names)
    {
        user.then<StmListDialog>([names](StmListDialog& dialog) {
            auto* list = dialog.findChild<QListWidget*>();
            for (const QString& name : names)
                list->findItems(name, Qt::MatchExactly).value(0)->setCheckState(Qt::Checked);
            QTest::mouseClick(buttonOf(dialog, "Ok"), Qt::LeftButton);
        });
    }

    void readWarning()
    {
        user.then<QMessageBox>([this](QMessageBox& box) {
            warningTitle = box.windowTitle();
            warningText = box.text();
            warningButtons = box.standardButtons();
            QTest::keyClick(&box, Qt::Key_Return);
        });
    }

    const std::vector<boost::shared_ptr<STMVal>>& values() const
    {
        return module->fModel->fSTMVals;
    }

    std::vector<std::string> keys = {"Leg/Knee", "Arm/Elbow", "Device/Raw"};
    FakeMemory memory;
    boost::shared_ptr<Module> module;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    ModalDriver user;
    QString warningTitle;
    QString warningText;
    QMessageBox::StandardButtons warningButtons;
};

/// Ends the start-up dialog with a result of its own if it is in front again after a warning.
class StartShownAgain
{
public:
    static constexpr int fResult = 42;

    explicit StartShownAgain(const Start& start)
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

class TestConfigDialog : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void itShowsThreeButtonsInAFixedSize();
    void textsFitTheButtonsInAnyFont();
    void imagesAreFoundBehindThePrefix();
    void theKeyboardReachesAndOperatesEveryButton();
    void aFileIsOpened();
    void theOpenDialogAsksForXmlFilesInTheProgramsFolder();
    void cancellingTheOpenDialogLeavesTheStartOpen();
    void openingTakesExistingFilesOnly();
    void aFailedOpenEndsTheStart_data();
    void aFailedOpenEndsTheStart();
    void aFileThatWentMissingEndsTheStart();
    void chosenKeysAreGraphedAndSaved();
    void anEditedAliasIsGraphedAndSaved();
    void everyDialogBelongsToTheStart();
    void theSaveDialogAsksForXmlFilesInTheProgramsFolder();
    void cancellingTheChoiceLeavesTheStartOpen();
    void cancellingTheSaveAcceptsAllTheSame();
    void choosingNothingSavesAnEmptyFile();
    void theWholeModelIsSaved();
    void aFailedSaveWarnsAndAcceptsAllTheSame();
    void theEndingOfASavedFileIsComparedWithCase_data();
    void theEndingOfASavedFileIsComparedWithCase();
    void everyKeyIsFollowedWithoutAFile();
    void anUnreachableRobotHasNoKeys();
    void closingRejects();
    void withoutAModuleNothingHappens();
    void theModuleIsNotKeptAlive();
    void theWindowMayBeDeletedMeanwhile_data();
    void theWindowMayBeDeletedMeanwhile();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestConfigDialog::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    GuardedTest::initTestCase();
}

void TestConfigDialog::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(fFolder->isValid());
}

void TestConfigDialog::itShowsThreeButtonsInAFixedSize()
{
    const ConfigDialog dialog(Start().module, "", nullptr);
    QCOMPARE(dialog.minimumSize(), QSize(225, 120));
    QCOMPARE(dialog.maximumSize(), QSize(225, 120));
    QCOMPARE(dialog.windowTitle(), QString("Glimmet configuration"));
    auto* layout = qobject_cast<QVBoxLayout*>(dialog.layout());
    QVERIFY(layout && layout->count() == 3);
    const QStringList texts = {newText, openText, allText};
    for (int i = 0; i < 3; ++i) {
        auto* button = qobject_cast<QPushButton*>(layout->itemAt(i)->widget());
        QVERIFY(button);
        QCOMPARE(button->text(), texts[i]);
        QCOMPARE(layout->stretch(i), 0);
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::Alignment());
    }
    QVERIFY(buttonOf(dialog, allText)->icon().isNull());
}

void TestConfigDialog::textsFitTheButtonsInAnyFont()
{
    const QFont usual = QApplication::font();
    for (const int size : {10, 13, 20, 30}) {
        QFont font = usual;
        font.setPixelSize(size);
        QApplication::setFont(font);
        ConfigDialog dialog(Start().module, "", nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QAbstractButton* longest = buttonOf(dialog, allText);
        QVERIFY(longest->fontMetrics().horizontalAdvance(allText) < longest->width());
        if (size == 10)
            QCOMPARE(longest->font().pixelSize(), 10);
    }
    QApplication::setFont(usual);
}

void TestConfigDialog::imagesAreFoundBehindThePrefix()
{
    const QString prefix = path(QString::fromUtf8("gr\xC3\xBC"
                                                  "n-"));
    QVERIFY(QDir().mkpath(prefix + "buttons"));
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(prefix + "buttons/new.png"));
    image.fill(Qt::blue);
    QVERIFY(image.save(prefix + "buttons/open.png"));
    const ConfigDialog dialog(Start().module, toLatin1(prefix), nullptr);
    const auto colorOf = [&dialog](const QString& text) {
        return buttonOf(dialog, text)->icon().pixmap(16).toImage().pixelColor(8, 8);
    };
    QCOMPARE(colorOf(newText), QColor(Qt::red));
    QCOMPARE(colorOf(openText), QColor(Qt::blue));
    QCOMPARE(ConfigDialog::fOpenImage, QString("buttons/open.png"));
    QCOMPARE(ConfigDialog::fNewImage, QString("buttons/new.png"));
}

void TestConfigDialog::theKeyboardReachesAndOperatesEveryButton()
{
    const Start start;
    ConfigDialog dialog(start.module, "", nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (const QString& text : {newText, openText, allText}) {
        QCOMPARE(QApplication::focusWidget(), buttonOf(dialog, text));
        if (text != allText)
            QTest::keyClick(&dialog, Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(start.values().size(), std::size_t(3));
}

void TestConfigDialog::aFileIsOpened()
{
    writeBytes(path("keys.xml"),
               "<stm_viewer><stm_value name='a' alias='b' watch='1'/></stm_viewer>");
    Start start;
    start.press(openText);
    start.answerFileDialog(path("keys.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(1));
    QCOMPARE(start.values()[0]->names.second, std::string("b"));
    QVERIFY(start.memory.calls.empty());
}

void TestConfigDialog::theOpenDialogAsksForXmlFilesInTheProgramsFolder()
{
    Start start;
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

void TestConfigDialog::cancellingTheOpenDialogLeavesTheStartOpen()
{
    Start start;
    start.press(openText);
    start.giveUp<QFileDialog>();
    start.press(allText);
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(3));
}

void TestConfigDialog::aFailedOpenEndsTheStart_data()
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

void TestConfigDialog::aFailedOpenEndsTheStart()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString name = path(QString::fromUtf8("gr\xC3\xBC"
                                                "n.xml"));
    writeBytes(name, bytes);
    Start start;
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

void TestConfigDialog::openingTakesExistingFilesOnly()
{
    Start start;
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

void TestConfigDialog::aFileThatWentMissingEndsTheStart()
{
    const QString name = path("keys.xml");
    writeBytes(name, "<stm_viewer><stm_value name='a' alias='b'/></stm_viewer>");
    Start start;
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

void TestConfigDialog::anEditedAliasIsGraphedAndSaved()
{
    Start start;
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

    Start next;
    next.press(openText);
    next.answerFileDialog(path("keys.xml"));
    QCOMPARE(next.run(), int(QDialog::Accepted));
    QCOMPARE(next.values().size(), std::size_t(1));
    QCOMPARE(next.values()[0]->names, start.values()[0]->names);
    QVERIFY(next.values()[0]->graph);
}

void TestConfigDialog::everyDialogBelongsToTheStart()
{
    Start start;
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

void TestConfigDialog::chosenKeysAreGraphedAndSaved()
{
    Start start;
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

void TestConfigDialog::theSaveDialogAsksForXmlFilesInTheProgramsFolder()
{
    Start start;
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

void TestConfigDialog::cancellingTheChoiceLeavesTheStartOpen()
{
    Start start;
    start.press(newText);
    start.giveUp<StmListDialog>();
    start.giveUp<ConfigDialog>();
    QCOMPARE(start.run(), int(QDialog::Rejected));
    QVERIFY(start.user.isDone());
    QVERIFY(start.values().empty());
}

void TestConfigDialog::cancellingTheSaveAcceptsAllTheSame()
{
    Start start;
    start.press(newText);
    start.choose({"Arm/Elbow"});
    start.giveUp<QFileDialog>();
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.user.isDone());
    QCOMPARE(start.values().size(), std::size_t(1));
}

void TestConfigDialog::choosingNothingSavesAnEmptyFile()
{
    Start start;
    start.press(newText);
    start.choose({});
    start.answerFileDialog(path("none.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(bytesOf(path("none.xml")), QByteArray("<stm_viewer />\n"));
}

void TestConfigDialog::theWholeModelIsSaved()
{
    Start start;
    start.module->addSTMVal("before", "earlier");
    start.press(newText);
    start.choose({"Arm/Elbow"});
    start.answerFileDialog(path("keys.xml"));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    const QByteArray saved = bytesOf(path("keys.xml"));
    QVERIFY(saved.contains("name=\"before\" alias=\"earlier\" watch=\"0\" graph=\"0\""));
    QVERIFY(saved.contains("name=\"Arm/Elbow\""));
}

void TestConfigDialog::aFailedSaveWarnsAndAcceptsAllTheSame()
{
    QVERIFY(QDir().mkpath(path(QString::fromUtf8("gr\xC3\xBC"
                                                 "n.xml"))));
    const QString name = path(QString::fromUtf8("none/gr\xC3\xBC"
                                                "n.xml"));
    Start start;
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

void TestConfigDialog::theEndingOfASavedFileIsComparedWithCase_data()
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

void TestConfigDialog::theEndingOfASavedFileIsComparedWithCase()
{
    QFETCH(QString, given);
    QFETCH(QString, saved);
    Start start;
    start.press(newText);
    start.choose({});
    start.answerFileDialog(path(given));
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(QDir(fFolder->path()).entryList(QDir::Files), QStringList({saved}));
}

void TestConfigDialog::everyKeyIsFollowedWithoutAFile()
{
    Start start;
    start.press(allText);
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QCOMPARE(start.values().size(), std::size_t(3));
    for (std::size_t i = 0; i < 3; ++i) {
        QCOMPARE(start.values()[i]->names, std::make_pair(start.keys[i], start.keys[i]));
        QVERIFY(!start.values()[i]->watch && !start.values()[i]->graph);
    }
}

void TestConfigDialog::anUnreachableRobotHasNoKeys()
{
    Start start;
    start.memory.answer = [](const ZoValue&) -> ZoValue { throw ZoError("no link"); };
    start.press(allText);
    CapturedStderr captured;
    QCOMPARE(start.run(), int(QDialog::Accepted));
    QVERIFY(start.values().empty());
}

void TestConfigDialog::closingRejects()
{
    Start start;
    start.user.then<ConfigDialog>([](ConfigDialog& dialog) { dialog.close(); });
    QCOMPARE(start.run(), int(QDialog::Rejected));
}

void TestConfigDialog::withoutAModuleNothingHappens()
{
    Start start;
    ConfigDialog dialog(start.module, "", nullptr);
    start.module.reset();
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    for (const QString& text : {newText, openText, allText}) {
        QTest::mouseClick(buttonOf(dialog, text), Qt::LeftButton);
        QVERIFY(dialog.isVisible());
        QVERIFY(!QApplication::activeModalWidget());
    }
    QVERIFY(start.memory.calls.empty());
}

void TestConfigDialog::theModuleIsNotKeptAlive()
{
    Start start;
    const ConfigDialog dialog(start.module, "", nullptr);
    QCOMPARE(start.module.use_count(), 1L);
}

void TestConfigDialog::theWindowMayBeDeletedMeanwhile_data()
{
    QTest::addColumn<QString>("open");
    for (const char* open : {"start", "file to open", "complaint on opening", "choice",
                             "file to save", "complaint on saving"})
        QTest::newRow(open) << open;
}

void TestConfigDialog::theWindowMayBeDeletedMeanwhile()
{
    QFETCH(QString, open);
    writeBytes(path("other.xml"), "<other/>");
    Start start;
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

REGISTER_TEST(TestConfigDialog, QApplication)
#include "tst_config_dialog.moc"
