// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <zo/error.h>
#include <zo/memory_proxy.h>

#include <QFileDialog>
#include <QLibrary>
#include <QPluginLoader>
#include <QProcess>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

/// The real plug-in file, as a host meets it.
class TestInterface : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void exportsItsEntryPointsAndNothingElse();
    void verificationTextIsTheRequiredOne();
    void hasANameForTheMenu();
    void hasItsTextsInOtherLanguages();
    void thereIsOneInstance();
    void aDeletedInstanceIsMadeAnew();
    void answersToItsNames();
    void needsAConnection();
    void acceptingTheDialogGivesThePanelAfterOneFullFetch();
    void aChosenFileFillsThePanel();
    void cancellingTheDialogGivesNothingAndFetchesNothing();
    void aRobotThatIsNotThereThrowsBeforeAnyWidgetIsMade();
    void wrongPasswordThrows();
    void eachPanelHasItsOwnConnection();
    void theParentIsKeptEvenWhenItThrows();
    void theDialogStandsBeforeARetitledWindowWithItsPanel();
    void theTableIsFilledOnceAndBeforeTheFetch();
    void aFileThatCannotBeReadGivesNoPanel();
    void dialogAndPanelFindImagesInTheSameFolder();
    void theParentMayBeDeletedMeanwhile_data();
    void theParentMayBeDeletedMeanwhile();
    void thePanelMayBeDeletedMeanwhile();

private:
    QObject* instance() const;
    WidgetInterface* panels() const { return qobject_cast<WidgetInterface*>(instance()); }
    TarvekWidget* open();
    int fetches() const;

    std::string fImageDir;
    QScopedPointer<RedisServer> fRobot;
    QScopedPointer<QWidget> fParent;
    QLibrary fLibrary{GLIMMET_PLUGIN};
};

namespace {

void press(const QDialog& dialog, const QString& text)
{
    for (auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == text) {
            QTest::mouseClick(button, Qt::LeftButton);
            return; // the dialog may be gone
        }
    }
}

/// Clicks the start-up dialog's button with this text as soon as the dialog is shown.
void choose(const QString& text)
{
    whenShown({}, [text](QDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QString("Glimmet configuration"));
        press(dialog, text);
    });
}

/// The colour in the middle of a button's icon; invalid when it has none.
QColor colorOf(const QPushButton& button)
{
    const QPixmap picture = button.icon().pixmap(16);
    return picture.isNull() ? QColor() : picture.toImage().pixelColor(8, 8);
}

void cancel()
{
    whenShown({}, [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
}

QStringList exportedSymbols()
{
    QProcess lister;
    lister.start("nm", {"-D", "--defined-only", "--format=posix", GLIMMET_PLUGIN});
    if (!lister.waitForFinished(patience))
        return {};
    QStringList names;
    for (const QString& line : QString(lister.readAllStandardOutput()).split('\n'))
        if (!line.isEmpty())
            names += line.section(' ', 0, 0);
    names.sort();
    return names;
}

} // namespace

void TestInterface::init()
{
    panels()->fBrokerOptions = patientOptions();
    fImageDir = "/images/";
    fRobot.reset(new RedisServer);
    fRobot->command({"SET", "Arm/Angle", "0.5"});
    fRobot->command({"SET", "Name", "\"Robin\""});
    fParent.reset(new QWidget);
    fParent->setWindowTitle("before");
    fParent->show();
}

void TestInterface::cleanup()
{
    panels()->fBroker.reset();
    fParent.reset();
    fRobot.reset();
    GuardedTest::cleanup();
}

QObject* TestInterface::instance() const
{
    QPluginLoader loader(GLIMMET_PLUGIN);
    return loader.instance();
}

TarvekWidget* TestInterface::open()
{
    return panels()->getWidget(fParent.data(), "127.0.0.1", fRobot->port(), fImageDir);
}

/// How often values were fetched from the robot.
int TestInterface::fetches() const
{
    const QString stats = QString::fromStdString(fRobot->command({"INFO", "commandstats"}));
    const QRegularExpressionMatch match =
        QRegularExpression("cmdstat_mget:calls=(\\d+)").match(stats);
    return match.hasMatch() ? match.captured(1).toInt() : 0;
}

void TestInterface::exportsItsEntryPointsAndNothingElse()
{
#if QT_VERSION_MAJOR == 5
    const QString description = "qt_plugin_query_metadata";
#else
    const QString description = "qt_plugin_query_metadata_v2";
#endif
    QCOMPARE(exportedSymbols(),
             QStringList({"qt_plugin_instance", description, "qt_plugin_query_verification_data"}));
}

void TestInterface::verificationTextIsTheRequiredOne()
{
    using Query = const char* (*)();
    const auto query =
        reinterpret_cast<Query>(fLibrary.resolve("qt_plugin_query_verification_data"));
    QVERIFY(query);
    QCOMPARE(QByteArray(query()),
             QByteArray("pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.8.1\ndebug=false\n"
                        "buildkey=x86_64 linux g++-4 full-config"));
}

void TestInterface::hasANameForTheMenu()
{
    const QJsonObject description = QPluginLoader(GLIMMET_PLUGIN).metaData();
    QCOMPARE(description["IID"].toString(), QString("org.tarvek.desktop.WidgetInterface/0.1"));
    QCOMPARE(description["MetaData"].toObject()["name"].toString(), QString("Glimmet"));
}

void TestInterface::hasItsTextsInOtherLanguages()
{
    const QJsonObject description = QPluginLoader(GLIMMET_PLUGIN).metaData()["MetaData"].toObject();
    QVERIFY(QPluginLoader(GLIMMET_PLUGIN).load());
    for (const char* language : {"de", "es", "fr", "ja"}) {
        const QString file =
            QString(":/translations/%1_%2.qm").arg(description["catalogue"].toString(), language);
        QVERIFY2(QFileInfo(file).size() > 0, qPrintable(file));
    }
}

void TestInterface::thereIsOneInstance()
{
    using Instance = QObject* (*)();
    const auto make = reinterpret_cast<Instance>(fLibrary.resolve("qt_plugin_instance"));
    QVERIFY(make);
    QVERIFY(make());
    QCOMPARE(make(), make());
    QCOMPARE(make(), instance());
}

void TestInterface::aDeletedInstanceIsMadeAnew()
{
    QObject* const first = instance();
    const QSignalSpy gone(first, &QObject::destroyed);
    delete first;
    QCOMPARE(gone.count(), 1);
    QVERIFY(panels());
    QCOMPARE(panels()->fPanel, nullptr);
}

void TestInterface::answersToItsNames()
{
    QObject* object = instance();
    QCOMPARE(object->metaObject()->className(), "Interface");
    QCOMPARE(object->qt_metacast("Interface"), static_cast<void*>(object));
    QVERIFY(panels());
    QCOMPARE(object->qt_metacast("WidgetInterface"), static_cast<void*>(panels()));
    QCOMPARE(object->qt_metacast("org.tarvek.desktop.WidgetInterface/0.1"),
             static_cast<void*>(panels()));
    QCOMPARE(object->qt_metacast("QObject"), static_cast<void*>(object));
    QCOMPARE(object->qt_metacast("SomethingElse"), static_cast<void*>(nullptr));
    QCOMPARE(object->qt_metacast(nullptr), static_cast<void*>(nullptr));
}

void TestInterface::needsAConnection()
{
    QVERIFY(panels()->requiresConnection());
}

void TestInterface::acceptingTheDialogGivesThePanelAfterOneFullFetch()
{
    choose("Do not use a config file (slow)");
    TarvekWidget* panel = open();
    QVERIFY(panel);
    QCOMPARE(fetches(), 1);
    QCOMPARE(panels()->fPanel, panel);
    QCOMPARE(panels()->fParent, fParent.data());
    QCOMPARE(panels()->fBroker->getName(), std::string("GlimmetBroker"));
    QCOMPARE(panel->parentWidget(), fParent.data());
    QCOMPARE(fParent->windowTitle(), QString("Tarvek Desktop (connected to 127.0.0.1)"));

    // The table holds the keys already; their values follow with the table's next tick.
    auto* table = panel->findChild<QTreeWidget*>();
    QCOMPARE(table->topLevelItemCount(), 2);
    const auto found = table->findItems("Name", Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    TRY_COMPARE(found[0]->text(4), QString("Robin"));
    QCOMPARE(fetches(), 1);
}

void TestInterface::aChosenFileFillsThePanel()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("keys.xml");
    QFile output(file);
    QVERIFY(output.open(QIODevice::WriteOnly));
    output.write("<stm_viewer><stm_value name=\"Arm/Angle\" alias=\"angle\" watch=\"1\" "
                 "graph=\"0\"><color red=\"1\" green=\"2\" blue=\"3\"/></stm_value>"
                 "</stm_viewer>");
    output.close();
    whenShown({}, [file](QDialog& dialog) {
        whenShown("QFileDialog", [file](QDialog& files) { chooseFile(files, file); });
        press(dialog, "Open configuration file");
    });
    TarvekWidget* panel = open();
    QVERIFY(panel);
    auto* table = panel->findChild<QTreeWidget*>();
    QCOMPARE(table->topLevelItemCount(), 1);
    QCOMPARE(table->topLevelItem(0)->text(0), QString("angle"));
    fRobot->command({"SET", "Arm/Angle", "1.5"});
    TRY_COMPARE(table->topLevelItem(0)->text(4), QString("1.5"));
}

void TestInterface::cancellingTheDialogGivesNothingAndFetchesNothing()
{
    cancel();
    QCOMPARE(open(), nullptr);
    QCOMPARE(panels()->fPanel, nullptr);
    QVERIFY(fParent->findChildren<QWidget*>().isEmpty());
    QCOMPARE(fParent->windowTitle(), QString("Tarvek Desktop (connected to 127.0.0.1)"));
    QVERIFY(panels()->fBroker && panels()->fBroker->isConnected());
    QCOMPARE(fetches(), 0);
}

void TestInterface::aRobotThatIsNotThereThrowsBeforeAnyWidgetIsMade()
{
    fRobot->kill();
    const std::string error = errorOf([this] { open(); });
    QVERIFY2(contains(error, "127.0.0.1:" + std::to_string(fRobot->port())), error.c_str());
    QVERIFY(fParent->findChildren<QWidget*>().isEmpty());
    QCOMPARE(fParent->windowTitle(), QString("before"));
}

void TestInterface::wrongPasswordThrows()
{
    panels()->fBrokerOptions.password = "wrong";
    const std::string error = errorOf([this] { open(); });
    QVERIFY2(contains(error, "user or password refused"), error.c_str());
}

void TestInterface::eachPanelHasItsOwnConnection()
{
    choose("Do not use a config file (slow)");
    TarvekWidget* first = open();
    const boost::shared_ptr<ZoBroker> firstBroker = panels()->fBroker;
    choose("Do not use a config file (slow)");
    TarvekWidget* second = open();
    QVERIFY(first && second && first != second);
    QVERIFY(firstBroker != panels()->fBroker);
    QCOMPARE(panels()->fPanel, second);
    delete second;
    panels()->fBroker.reset();
    QCOMPARE(first->findChild<QTreeWidget*>()->topLevelItemCount(), 2);
    QVERIFY(firstBroker->isConnected());
}

void TestInterface::theParentIsKeptEvenWhenItThrows()
{
    fRobot->kill();
    panels()->fParent = nullptr;
    QVERIFY_EXCEPTION_THROWN(open(), ZoError);
    QCOMPARE(panels()->fParent, fParent.data());
}

void TestInterface::theDialogStandsBeforeARetitledWindowWithItsPanel()
{
    bool wasShown = false;
    whenShown({}, [&](QDialog& dialog) {
        wasShown = true;
        QCOMPARE(dialog.parentWidget(), fParent.data());
        QCOMPARE(fParent->windowTitle(), QString("Tarvek Desktop (connected to 127.0.0.1)"));
        QVERIFY(panels()->fPanel && panels()->fPanel->parentWidget() == fParent.data());
        const auto* table = panels()->fPanel->findChild<QTreeWidget*>();
        QCOMPARE(table->topLevelItemCount(), 0);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QCOMPARE(open(), nullptr);
    QVERIFY(wasShown);
}

void TestInterface::theTableIsFilledOnceAndBeforeTheFetch()
{
    QList<int> fetchesAtFilling;
    whenShown({}, [&](QDialog& dialog) {
        const auto* table = panels()->fPanel->findChild<QTreeWidget*>();
        connect(table->model(), &QAbstractItemModel::rowsInserted, &dialog,
                [&] { fetchesAtFilling += fetches(); });
        press(dialog, "Do not use a config file (slow)");
    });
    QVERIFY(open());
    QCOMPARE(fetchesAtFilling, QList<int>{0});
    QCOMPARE(fetches(), 1);
}

void TestInterface::aFileThatCannotBeReadGivesNoPanel()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("keys.xml");
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    whenShown({}, [file](QDialog& dialog) {
        whenShown("QFileDialog", [file](QDialog& files) {
            whenShown("QMessageBox", [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Return); });
            chooseFile(files, file);
        });
        press(dialog, "Open configuration file");
    });
    QCOMPARE(open(), nullptr);
    QCOMPARE(panels()->fPanel, nullptr);
    QVERIFY(fParent->findChildren<QWidget*>().isEmpty());
    QCOMPARE(fetches(), 0);
}

void TestInterface::dialogAndPanelFindImagesInTheSameFolder()
{
    const QTemporaryDir folder;
    const QString prefix = folder.filePath(QString("gr") + QChar(0xfc) + "n-");
    QVERIFY(QDir().mkpath(prefix + "buttons"));
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(prefix + "buttons/open.png"));
    fImageDir = prefix.toLatin1().toStdString();
    QColor inDialog;
    whenShown({}, [&inDialog](QDialog& dialog) {
        for (const auto* button : dialog.findChildren<QPushButton*>())
            if (button->text() == "Open configuration file")
                inDialog = colorOf(*button);
        press(dialog, "Do not use a config file (slow)");
    });
    const TarvekWidget* panel = open();
    QVERIFY(panel);
    QCOMPARE(inDialog, QColor(Qt::red));
    QColor inPanel;
    for (const auto* button : panel->findChildren<QPushButton*>())
        if (button->toolTip() == "Open")
            inPanel = colorOf(*button);
    QCOMPARE(inPanel, QColor(Qt::red));
}

void TestInterface::theParentMayBeDeletedMeanwhile_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("dialog");
    QTest::newRow("start") << QString() << "ConfigDialog";
    QTest::newRow("file") << "Open configuration file"
                          << "QFileDialog";
    QTest::newRow("choice") << "New configuration file"
                            << "StmListDialog";
}

void TestInterface::theParentMayBeDeletedMeanwhile()
{
    QFETCH(QString, button);
    QFETCH(QString, dialog);
    whenShown("ConfigDialog", [&](QDialog& start) {
        whenShown(dialog, [this](QDialog&) { fParent.reset(); });
        press(start, button);
    });
    QCOMPARE(open(), nullptr);
    QVERIFY(!fParent);
    QCOMPARE(panels()->fParent, nullptr);
    QCOMPARE(panels()->fPanel, nullptr);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(fetches(), 0);
}

void TestInterface::thePanelMayBeDeletedMeanwhile()
{
    whenShown({}, [this](QDialog& dialog) {
        delete panels()->fPanel;
        press(dialog, "Do not use a config file (slow)");
    });
    QCOMPARE(open(), nullptr);
    QCOMPARE(panels()->fPanel, nullptr);
    QCOMPARE(fetches(), 0);
}

REGISTER_TEST(TestInterface, HostApplication)
#include "tst_interface.moc"
