// SPDX-License-Identifier: MIT
#include "dialogs/connect_dialog.h"
#include "language/languages.h"
#include "recording/recording_dialog.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/language.h"
#include "support/register_test.h"
#include "support/window_bench.h"
#include "windows/shortcuts_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

/// The languages that the windows speak.
class TestLanguages : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        forgetLanguage();
        GuardedTest::cleanup();
    }
    void thereAreFive();
    void theSystemsChoiceIsTheFirstThatThereIs_data();
    void theSystemsChoiceIsTheFirstThatThereIs();
    void aGermanWindowHasAGermanMenu();
    void theToolkitsOwnTextsComeInIt();
    void numbersHaveTheirForms_data();
    void numbersHaveTheirForms();
    void aPlugInWithoutTheLanguageStaysAsItIs();
    void oneKeyOfTheKeyboardLeadsToOnePlace_data();
    void oneKeyOfTheKeyboardLeadsToOnePlace();
    void shortcutsStayWhatTheyAre_data() { eachLanguage(); }
    void shortcutsStayWhatTheyAre();
    void shortcutsAreListedWithoutTheMarksOfKeys();

private:
    static void eachLanguage();
    QStringList shortcuts() const;
    static QString keyIn(const QString& text);
    static QStringList keysOf(const QMenu& menu);
    static QStringList keysOf(const QWidget& window);
};

void TestLanguages::eachLanguage()
{
    QTest::addColumn<QString>("language");
    for (const QString& language : languages())
        QTest::newRow(qPrintable(language)) << language;
}

void TestLanguages::thereAreFive()
{
    QCOMPARE(languages(), QStringList({"de", "en", "es", "fr", "ja"}));
}

void TestLanguages::theSystemsChoiceIsTheFirstThatThereIs_data()
{
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QString>("language");
    QTest::newRow("the language itself") << QStringList{"ja"} << "ja";
    QTest::newRow("of a country") << QStringList{"de-AT", "fr-CH"} << "de";
    QTest::newRow("in letters, of a country") << QStringList{"es_Latn_MX"} << "es";
    QTest::newRow("one that is missing first") << QStringList{"it-IT", "fr-FR"} << "fr";
    QTest::newRow("English before others") << QStringList{"en-GB", "de-DE"} << "en";
    QTest::newRow("none that there is") << QStringList{"it", "C", ""} << "en";
    QTest::newRow("none") << QStringList() << "en";
    QTest::newRow("no language at all") << QStringList{"../de", "d", "*"} << "en";
}

void TestLanguages::theSystemsChoiceIsTheFirstThatThereIs()
{
    QFETCH(QStringList, wanted);
    QFETCH(QString, language);
    QCOMPARE(languageFor(wanted), language);
}

void TestLanguages::aGermanWindowHasAGermanMenu()
{
    QVERIFY(action("Close panel") && !action("Panel schließen"));
    speak("de");
    openWindow();
    QVERIFY(action("Panel schließen") && !action("Close panel"));
    QStringList menus;
    for (const QAction* menu : fWindow->menuBar()->actions())
        menus += menu->text();
    QCOMPARE(menus, QStringList({"&Datei", "&Bearbeiten", "&Panels", "&Hilfe"}));
}

void TestLanguages::theToolkitsOwnTextsComeInIt()
{
    speak("de");
    const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    QCOMPARE(buttons.button(QDialogButtonBox::Cancel)->text().remove('&'), QString("Abbrechen"));
}

void TestLanguages::numbersHaveTheirForms_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("texts"); // of 0, 1 and 2
    QTest::newRow("en") << "en" << QStringList{"0 matches", "1 match", "2 matches"};
    QTest::newRow("es") << "es"
                        << QStringList{"0 coincidencias", "1 coincidencia", "2 coincidencias"};
    QTest::newRow("fr") << "fr" << QStringList{"0 résultat", "1 résultat", "2 résultats"};
    QTest::newRow("ja") << "ja" << QStringList{"0 件一致", "1 件一致", "2 件一致"};
}

void TestLanguages::numbersHaveTheirForms()
{
    QFETCH(QString, language);
    QFETCH(QStringList, texts);
    speak(language);
    for (int number = 0; number < texts.size(); ++number)
        QCOMPARE(QCoreApplication::translate("FindBar", "%n match(es)", nullptr, number),
                 texts[number]);
}

void TestLanguages::aPlugInWithoutTheLanguageStaysAsItIs()
{
    speak("de");
    const int before = qApp->findChildren<QTranslator*>().size();
    speakAlso("hologram");
    QCOMPARE(qApp->findChildren<QTranslator*>().size(), before);
    QCOMPARE(QCoreApplication::translate("FileMenu", "&File"), QString("&Datei"));
}

/// The letter that a text marks; empty: it has none.
QString TestLanguages::keyIn(const QString& text)
{
    const QString marked = QString(text).remove("&&");
    return marked.contains('&') ? marked.section('&', 1).left(1).toLower() : QString();
}

QStringList TestLanguages::keysOf(const QMenu& menu)
{
    QStringList keys;
    for (const QAction* action : menu.actions())
        keys += keyIn(action->text());
    keys.removeAll(QString());
    return keys;
}

QStringList TestLanguages::keysOf(const QWidget& window)
{
    QStringList keys;
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy())
            keys += keyIn(label->text());
    for (const auto* button : window.findChildren<QAbstractButton*>())
        keys += keyIn(button->text());
    keys.removeAll(QString());
    return keys;
}

void TestLanguages::oneKeyOfTheKeyboardLeadsToOnePlace_data()
{
    eachLanguage();
}

void TestLanguages::oneKeyOfTheKeyboardLeadsToOnePlace()
{
    QFETCH(QString, language);
    speak(language);
    openWindow();
    QList<QStringList> places;
    for (const QAction* menu : fWindow->menuBar()->actions())
        places += keysOf(*menu->menu());
    const ConnectDialog connecting({}, {});
    const RecordingDialog recording("robot", {}, *fErrors, nullptr);
    places += keysOf(connecting);
    places += keysOf(recording);
    for (QStringList keys : places) {
        QVERIFY(keys.size() >= 3);
        keys.sort();
        QVERIFY2(keys.removeDuplicates() == 0, qPrintable(keys.join(' ')));
    }
}

QStringList TestLanguages::shortcuts() const
{
    QStringList keys;
    for (const QAction* action : fWindow->menuBar()->findChildren<QAction*>())
        keys += action->shortcut().toString(QKeySequence::PortableText);
    keys.removeAll(QString());
    return keys;
}

void TestLanguages::shortcutsStayWhatTheyAre()
{
    QFETCH(QString, language);
    const QStringList english = shortcuts();
    QVERIFY(english.contains("Ctrl+W") && english.contains("Ctrl+Shift+Tab"));
    speak(language);
    openWindow();
    QCOMPARE(shortcuts(), english);
}

void TestLanguages::shortcutsAreListedWithoutTheMarksOfKeys()
{
    speak("ja");
    openWindow();
    const ShortcutsDialog dialog(*fWindow->menuBar(), nullptr);
    const auto* list = dialog.findChild<QTreeWidget*>();
    QVERIFY(!list->findItems("パネルを閉じる", Qt::MatchExactly, 1).isEmpty());
    QVERIFY(list->findItems("&", Qt::MatchContains, 1).isEmpty());
}

REGISTER_TEST(TestLanguages, HostApplication)
#include "tst_languages.moc"
