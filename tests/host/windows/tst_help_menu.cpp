// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/window_bench.h"
#include "windows/guide_window.h"
#include "windows/start_page.h"

#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTableWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QtTest>

/// What the menu "Help" offers.
class TestHelpMenu : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void showsTheGuideWithoutANetwork();
    void theKeyForHelpOpensTheGuide();
    void saysWhenTheGuideIsMissing();
    void listsTheShortcutsOfAllMenus();
    void noShortcutIsGivenTwice();
    void copiesTheListOfFailures();
    void diagnosticsSayWhatHelps();
    void diagnosticsSayOfEachLinkHowItIs();
    void diagnosticsKeepSecrets();
    void startPageOffersOnlyWhatIsPossible();

private:
    QString diagnostics();
    static QString clipboard() { return QApplication::clipboard()->text(); }
};

void TestHelpMenu::showsTheGuideWithoutANetwork()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("guide.md"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# The guide\n\n![a picture](wide.png)\n\n[next](next.md)\n");
    file.close();
    QImage wide(3000, 300, QImage::Format_RGB32);
    wide.fill(Qt::red);
    QVERIFY(wide.save(folder.filePath("wide.png")));
    QCOMPARE(showGuide(file.fileName(), fWindow.data()), QString());
    auto* guide = fWindow->findChild<QTextBrowser*>("guide");
    QVERIFY(guide);
    QVERIFY(guide->isVisible() && guide->isWindow());
    QVERIFY(guide->toPlainText().startsWith("The guide"));
    QVERIFY(guide->document()->idealWidth() < 800); // the picture fits
    QCOMPARE(showGuide(file.fileName(), fWindow.data()), QString());
    QCOMPARE(fWindow->findChildren<QTextBrowser*>("guide").size(), 1);
    guide->close();
}

void TestHelpMenu::theKeyForHelpOpensTheGuide()
{
    QTest::keyClick(fWindow.data(), Qt::Key_F1);
    auto* guide = fWindow->findChild<QTextBrowser*>("guide");
    QVERIFY(guide);
    QVERIFY(guide->isVisible());
    QVERIFY(guide->toPlainText().startsWith("User guide"));
}

void TestHelpMenu::saysWhenTheGuideIsMissing()
{
    const QString problem = showGuide("/no/such/guide.md", fWindow.data());
    QVERIFY2(problem.contains("/no/such/guide.md"), qPrintable(problem));
    QVERIFY(!fWindow->findChild<QTextBrowser*>("guide"));
}

void TestHelpMenu::listsTheShortcutsOfAllMenus()
{
    action("Shortcuts")->trigger();
    auto* list = fWindow->findChild<QTreeWidget*>();
    QVERIFY(list);
    QVERIFY(list->isVisible());
    const auto keysOf = [list](const QString& command) {
        const auto found = list->findItems(command, Qt::MatchExactly, 1);
        return found.isEmpty() ? QString() : found.first()->text(0);
    };
    QCOMPARE(keysOf("Close panel"), QString("Ctrl+W"));
    QCOMPARE(keysOf("Find"), QString("Ctrl+F"));
    QCOMPARE(keysOf("Guide"), QString("F1"));
}

void TestHelpMenu::noShortcutIsGivenTwice()
{
    QStringList keys;
    for (const QAction* action : fWindow->menuBar()->findChildren<QAction*>())
        for (const QKeySequence& sequence : action->shortcuts())
            keys += sequence.toString();
    QVERIFY(keys.size() > 10);
    QCOMPARE(keys.removeDuplicates(), 0);
}

void TestHelpMenu::copiesTheListOfFailures()
{
    action("Plug-ins that failed")->trigger();
    auto* table = fWindow->findChild<QTableWidget*>();
    QVERIFY(table && table->isVisible());
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualRect(table->model()->index(0, 0)).center());
    QCOMPARE(table->selectedItems().size(), 2);
    for (auto* button : table->window()->findChildren<QPushButton*>())
        if (button->text() == "&Copy")
            QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(clipboard().count('\n'), static_cast<int>(fPlugins->failures().size()));
    QVERIFY(clipboard().contains("other_interface.so: "));
}

QString TestHelpMenu::diagnostics()
{
    action("Copy diagnostics")->trigger();
    return clipboard();
}

void TestHelpMenu::diagnosticsSayWhatHelps()
{
    openProbe();
    QString text = diagnostics();
    for (const QString& part :
         {QApplication::applicationName() + ' ', QString("Qt ") + qVersion(), QString("system: "),
          "robot: " + fWindow->settings().addressText(), QString("connection: Connected since "),
          QString("panel: Probe: Probe"), QString("plug-in: Probe, " TEST_PLUGIN_DIR),
          QString("failed: " TEST_PLUGIN_DIR "/other_interface.so: ")})
        QVERIFY2(text.contains(part), qPrintable(part + " is not in\n" + text));
    fRobot->kill();
    TRY_VERIFY(!fWindow->monitor().state().connected);
    text = diagnostics();
    QVERIFY2(text.contains("connection: Interrupted since "), qPrintable(text));
    QVERIFY2(text.contains("Trying again: "), qPrintable(text));
}

void TestHelpMenu::diagnosticsSayOfEachLinkHowItIs()
{
    for (const char* cause : {"the cable is cut", "the mast is down"}) {
        ZoLinkStatus away;
        away.cause = cause;
        fWindow->monitor().watch({[away] { return away; }, nullptr, nullptr},
                                 ConnectionMonitor::User::Panel);
    }
    const QString text = diagnostics();
    for (const char* part :
         {"connection: Connected since ", "the cable is cut", "the mast is down"})
        QVERIFY2(text.contains(part), qPrintable(text));
}

void TestHelpMenu::diagnosticsKeepSecrets()
{
    {
        QSettings store;
        store.setValue("robots/password", "swordfish");
        store.setValue("some/Token", "swordfish");
        store.setValue("some/list", QStringList{"a", "b\nc"});
        store.setValue("some/bytes", QByteArray("\0\1", 2));
    }
    const QString text = diagnostics();
    QVERIFY(!text.contains("swordfish"));
    QVERIFY(text.contains("robots/password = (left out)"));
    QVERIFY(text.contains("some/list = a, b c\n"));
    QVERIFY(text.contains("some/bytes = (2 bytes)"));
}

void TestHelpMenu::startPageOffersOnlyWhatIsPossible()
{
    const auto isEnabled = [this](const QString& text) {
        for (const auto* button : fWindow->findChild<StartPage*>()->findChildren<QPushButton*>())
            if (button->text() == text)
                return button->isEnabled();
        return false;
    };
    QVERIFY(isEnabled("Probe") && isEnabled("Table"));
    fRobot->kill();
    TRY_VERIFY(!isEnabled("Probe"));
    QVERIFY(isEnabled("Table")); // needs no robot
    fRobot->restart();
    TRY_VERIFY(isEnabled("Probe"));
}

REGISTER_TEST(TestHelpMenu, HostApplication)
#include "tst_help_menu.moc"
