// SPDX-License-Identifier: MIT
#include "language/languages.h"
#include "looks/faults.h"
#include "looks/palettes.h"
#include "recording/recording_dialog.h"
#include "session.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "windows/panel_dock.h"

#include <tarvek/tarvek_widget.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>
#include <QtTest>

#include <csignal>
#include <utility>

namespace {

QString wanted(const char* name, const QString& usual)
{
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? usual : value;
}

/// With the language, the colours and letters that the environment asks for; the direction is an
/// option of the toolkit's, or the language's.
class LookApplication : public HostApplication
{
public:
    LookApplication(int& argc, char** argv) : HostApplication(argc, argv)
    {
        speak(wanted("LOOK_LANGUAGE", "en"));
        const QString colors = wanted("LOOK_COLORS", "light");
        if (colors == "dark")
            setPalette(darkPalette());
        else if (colors == "contrast")
            setPalette(highContrastPalette());
        QFont letters = font();
        letters.setPointSizeF(letters.pointSizeF() * wanted("LOOK_LETTERS", "1").toDouble());
        setFont(letters);
    }
};

} // namespace

/// How the windows look on one display: the one that it is run on. Leaves their pictures in
/// LOOK_PICTURES.
class TestLook : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theScaleIsTheOneAskedFor();
    void theStartPage();
    void thePanelShowsItsWholeTableAndAUsefulGraph();
    void twoPanelsBesideEachOther();
    void twoPanelsBehindTabs();
    void findingInATable();
    void theConnectDialog();
    void aTestedRobot();
    void theShortcuts();
    void theMenus();
    void whatToRecord();
    void theFailedPlugIns();
    void anError();
    void theDialogsOfThePanel();
    void anInterruption();
    void aLoss();

private:
    TarvekWidget* openExample();
    void openTwoPanels();
    void waitForCurves(TarvekWidget* panel);
    QAction* action(const char* context, const char* text) const;
    QWidget* openedBy(const char* context, const char* text) const;
    void lookAtWindow(const QString& name) const;
    static void look(QWidget& window, const QString& name, const QList<QWidget*>& besides = {});

    QScopedPointer<RobotProgram> fRobot;
    QScopedPointer<Session> fSession;
    MainWindow* fWindow = nullptr;
};

void TestLook::init()
{
    QSettings().clear();
    fRobot.reset(new RobotProgram);
    QVERIFY(fRobot->startAndWait());
    fSession.reset(new Session);
    fWindow = fSession->connectTo(*fRobot, following());
    QVERIFY(fWindow);
}

void TestLook::cleanup()
{
    fSession.reset();
    fRobot.reset();
    GuardedTest::cleanup();
}

/// The panel with the configuration of the guide.
TarvekWidget* TestLook::openExample()
{
    TarvekWidget* panel =
        fSession->open(fWindow, Session::fOpenFile, "QFileDialog", [](QDialog& files) {
            files.findChild<QLineEdit*>("fileNameEdit")->setText(EXAMPLE_CONFIGURATION);
            const auto* buttons = files.findChild<QDialogButtonBox*>("buttonBox");
            QTest::mouseClick(static_cast<QWidget*>(buttons->button(QDialogButtonBox::Open)),
                              Qt::LeftButton);
        });
    const bool isThere =
        panel && QTest::qWaitFor([this] { return fWindow->frontDock()->isArranged(); }, patience);
    return isThere ? panel : nullptr;
}

void TestLook::openTwoPanels()
{
    QVERIFY(openExample());
    QVERIFY(fSession->open(fWindow, Session::fAllKeys));
    TRY_VERIFY(fWindow->frontDock()->isArranged());
}

void TestLook::waitForCurves(TarvekWidget* panel)
{
    QWidget* const graph = partOf(panel, "Graph");
    const QImage before = graph->grab().toImage();
    TRY_VERIFY(graph->grab().toImage() != before);
    TRY_VERIFY(!rowOf(panel, "Elbow")->text(4).isEmpty());
}

/// The one with this text in the language of the display.
QAction* TestLook::action(const char* context, const char* text) const
{
    const QString shown = QCoreApplication::translate(context, text);
    for (QAction* action : fWindow->menuBar()->findChildren<QAction*>())
        if (action->text() == shown)
            return action;
    return nullptr;
}

/// The dialog that comes up when the user chooses so in a menu.
QWidget* TestLook::openedBy(const char* context, const char* text) const
{
    const QList<QDialog*> before = fWindow->findChildren<QDialog*>();
    action(context, text)->trigger();
    for (QDialog* dialog : fWindow->findChildren<QDialog*>())
        if (!before.contains(dialog))
            return dialog;
    return nullptr;
}

/// Looks at a window as it came up, once all in it has its place.
void TestLook::look(QWidget& window, const QString& name, const QList<QWidget*>& besides)
{
    constexpr int settled = 2000; // ms
    QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
    QImage image;
    QStringList faults;
    const bool isFine = QTest::qWaitFor(
        [&] {
            image = window.grab().toImage();
            faults = faultsOf(window, image, besides);
            return faults.isEmpty();
        },
        settled);
    const QString file = QString("%1/%2-%3.png")
                             .arg(wanted("LOOK_PICTURES", QDir::tempPath()),
                                  wanted("LOOK_NAME", QGuiApplication::platformName()), name);
    QVERIFY2(image.save(file), qPrintable(file));
    QVERIFY2(isFine, qPrintable(file + '\n' + faults.join('\n')));
}

/// On a screen without room for the window as it would like to be, the table has what there is, and
/// the labels beside the controls of the graph give.
void TestLook::lookAtWindow(const QString& name) const
{
    const bool isCramped = fWindow->width() < 75 * fWindow->fontMetrics().height();
    QList<QWidget*> strips;
    for (auto* panel : fWindow->findChildren<TarvekWidget*>())
        strips += partOf(panel, "GraphConfig");
    look(*fWindow, name, isCramped ? strips : QList<QWidget*>());
}

void TestLook::theScaleIsTheOneAskedFor()
{
    const double scale = wanted("LOOK_SCALE", "1").toDouble();
    QCOMPARE(fWindow->devicePixelRatioF(), scale);
    QCOMPARE(fWindow->grab().width(), qRound(fWindow->width() * scale));
}

void TestLook::theStartPage()
{
    look(*fWindow, "start");
}

void TestLook::thePanelShowsItsWholeTableAndAUsefulGraph()
{
    TarvekWidget* const panel = openExample();
    QVERIFY(panel);
    waitForCurves(panel);
    const QTreeWidget& table = *tableOf(panel);
    TRY_COMPARE(table.horizontalScrollBar()->maximum(), 0);
    QVERIFY(table.header()->length() <= table.viewport()->width());
    const int letter = table.fontMetrics().averageCharWidth();
    QVERIFY(table.columnWidth(0) >= 14 * letter); // keys can be told from each other
    const QSize graph = partOf(panel, "Graph")->size();
    QVERIFY2(graph.width() >= fWindow->width() / 3 && graph.height() >= fWindow->height() / 3,
             qPrintable(QString("%1x%2").arg(graph.width()).arg(graph.height())));
    lookAtWindow("panel");
}

void TestLook::twoPanelsBesideEachOther()
{
    openTwoPanels();
    fWindow->addDockWidget(Qt::RightDockWidgetArea, fWindow->frontDock());
    for (const auto* dock : fWindow->findChildren<PanelDock*>())
        TRY_VERIFY(dock->isInSight());
    QList<QWidget*> panels; // whose controls would like more room
    for (auto* panel : fWindow->findChildren<TarvekWidget*>()) {
        TRY_COMPARE(tableOf(panel)->horizontalScrollBar()->maximum(), 0);
        panels += panel;
    }
    look(*fWindow, "beside", panels);
}

void TestLook::twoPanelsBehindTabs()
{
    openTwoPanels();
    lookAtWindow("tabs");
}

void TestLook::findingInATable()
{
    QVERIFY(openExample());
    action("PanelCommands", "&Find...")->trigger();
    QTest::keyClicks(fWindow->findChild<QWidget*>("findBar")->findChild<QLineEdit*>(), "hip");
    lookAtWindow("find");
}

void TestLook::theConnectDialog()
{
    fSession->desktop().showConnectDialog();
    look(*fSession->desktop().connectDialog(), "connect");
}

void TestLook::aTestedRobot()
{
    fSession->desktop().showConnectDialog();
    ConnectDialog* const dialog = fSession->desktop().connectDialog();
    clickButton(*dialog, QCoreApplication::translate("ConnectDialog", "&Test..."));
    auto* const test = dialog->findChild<QDialog*>();
    QVERIFY(test);
    look(*test, "test");
}

void TestLook::theShortcuts()
{
    QWidget* const dialog = openedBy("HelpMenu", "&Shortcuts...");
    QVERIFY(dialog);
    look(*dialog, "shortcuts");
}

void TestLook::theMenus()
{
    const std::pair<const char*, const char*> menus[] = {
        {"FileMenu", "&File"}, {"MainWindow", "&Edit"}, {"PanelMenu", "&Panels"}};
    for (const auto& [context, name] : menus) {
        QMenu* const menu = action(context, name)->menu();
        menu->popup(fWindow->mapToGlobal(QPoint()));
        look(*menu, QString("menu-") + QString(name).remove('&').toLower());
        menu->close();
    }
}

void TestLook::whatToRecord()
{
    ErrorReporter errors;
    RecordingDialog dialog(fWindow->settings().robotText(), {}, errors, fWindow);
    dialog.open();
    look(dialog, "record");
}

void TestLook::theFailedPlugIns()
{
    const QString text = QCoreApplication::translate("HelpMenu", "&Plug-ins that failed (%1)...");
    for (QAction* action : fWindow->menuBar()->findChildren<QAction*>())
        if (action->text() == text.arg(fSession->desktop().plugins().failures().size()))
            action->trigger();
    auto* const dialog = fWindow->findChild<QDialog*>();
    QVERIFY(dialog);
    look(*dialog, "plugins");
}

void TestLook::anError()
{
    fSession->desktop().connectTo([] {
        ConnectionSettings settings;
        settings.address.port = 1;
        return settings;
    }());
    TRY_VERIFY(shownBox());
    look(*shownBox(), "error");
}

void TestLook::theDialogsOfThePanel()
{
    whenShown("ConfigDialog", [](QDialog& dialog) {
        look(dialog, "configuration");
        whenShown("StmListDialog", [](QDialog& keys) {
            look(keys, "keys");
            keys.reject();
        });
        clickButton(dialog, Session::fNewFile);
        dialog.reject();
    });
    fWindow->openPanel(fSession->desktop().plugins().find("Glimmet"));
}

void TestLook::anInterruption()
{
    TarvekWidget* const panel = openExample();
    QVERIFY(panel);
    waitForCurves(panel);
    fRobot->signal(SIGTERM);
    TRY_VERIFY(!fWindow->monitor().state().connected);
    TRY_VERIFY(fWindow->findChild<QWidget*>("outageBar")->isVisible());
    lookAtWindow("interrupted");
}

void TestLook::aLoss()
{
    TarvekWidget* const panel = openExample();
    QVERIFY(panel);
    waitForCurves(panel);
    action("FileMenu", "&Disconnect")->trigger();
    TRY_VERIFY(fWindow->findChild<QWidget*>("outageBar")->isVisible());
    lookAtWindow("lost");
}

REGISTER_TEST(TestLook, LookApplication)
#include "tst_look.moc"
