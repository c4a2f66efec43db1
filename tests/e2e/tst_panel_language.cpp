// SPDX-License-Identifier: MIT
#include "language/languages.h"
#include "session.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/language.h"
#include "support/register_test.h"

#include <tarvek/tarvek_widget.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QtTest>

/// What of the real plug-in comes in another language, and what stays.
class TestPanelLanguage : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theTextsOfThePanelStay();
    void theTextsOfTheStartUpDialogStay();
    void theKeySelectionComesInIt();

private:
    void open(const QString& language);
    QStringList panelTexts();
    QStringList dialogTexts(const QString& way, const QString& dialog);

    QScopedPointer<RobotProgram> fRobot;
    QScopedPointer<Session> fSession;
    MainWindow* fWindow = nullptr;
};

namespace {

/// All that stands in labels, buttons, boxes and heads.
QStringList textsOf(const QWidget& window)
{
    QStringList texts{window.windowTitle()};
    for (const auto* label : window.findChildren<QLabel*>())
        texts += label->text();
    for (const auto* button : window.findChildren<QAbstractButton*>())
        texts += {button->text(), button->toolTip()};
    for (const auto* box : window.findChildren<QComboBox*>())
        for (int i = 0; i < box->count(); ++i)
            texts += box->itemText(i);
    for (const auto* table : window.findChildren<QTreeWidget*>())
        for (int i = 0; i < table->columnCount(); ++i)
            texts += table->headerItem()->text(i);
    texts.removeAll(QString());
    return texts;
}

} // namespace

void TestPanelLanguage::init()
{
    fRobot.reset(new RobotProgram);
    QVERIFY(fRobot->startAndWait());
}

void TestPanelLanguage::cleanup()
{
    fSession.reset();
    fRobot.reset();
    forgetLanguage();
    GuardedTest::cleanup();
}

/// A window that speaks this from its beginning.
void TestPanelLanguage::open(const QString& language)
{
    fSession.reset();
    speak(language);
    fSession.reset(new Session);
    fWindow = fSession->connectTo(*fRobot);
    QVERIFY(fWindow);
}

QStringList TestPanelLanguage::panelTexts()
{
    const TarvekWidget* const panel = fSession->open(fWindow, Session::fAllKeys);
    return panel ? textsOf(*panel) : QStringList();
}

QStringList TestPanelLanguage::dialogTexts(const QString& way, const QString& dialog)
{
    QStringList texts;
    whenShown("ConfigDialog", [&](QDialog& first) {
        if (dialog.isEmpty()) {
            texts = textsOf(first);
        } else {
            whenShown(dialog, [&texts](QDialog& next) {
                texts = textsOf(next);
                next.reject();
            });
            clickButton(first, way);
        }
        first.reject();
    });
    fWindow->openPanel(fSession->desktop().plugins().find("Glimmet"));
    return texts;
}

void TestPanelLanguage::theTextsOfThePanelStay()
{
    open("en");
    const QStringList english = panelTexts();
    QVERIFY(english.contains("Watch All") && english.contains("Autoscale"));
    open("de");
    QCOMPARE(panelTexts(), english);
}

void TestPanelLanguage::theTextsOfTheStartUpDialogStay()
{
    open("ja");
    const QStringList texts = dialogTexts({}, {});
    for (const char* text :
         {"Glimmet configuration", Session::fNewFile, Session::fOpenFile, Session::fAllKeys})
        QVERIFY2(texts.contains(text), qPrintable(texts.join('\n')));
}

void TestPanelLanguage::theKeySelectionComesInIt()
{
    open("en");
    QVERIFY(dialogTexts(Session::fNewFile, "StmListDialog").contains("View devices"));
    open("de");
    const QStringList texts = dialogTexts(Session::fNewFile, "StmListDialog");
    for (const char* text : {"Geräte anzeigen", "Filter: ", "OK", "Abbrechen"})
        QVERIFY2(texts.contains(text), qPrintable(texts.join('\n')));
}

REGISTER_TEST(TestPanelLanguage, HostApplication)
#include "tst_panel_language.moc"
