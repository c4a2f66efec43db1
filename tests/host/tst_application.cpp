// SPDX-License-Identifier: MIT
#include "application.h"
#include "dialogs/error_reporter.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <zo/error.h>

#include <QAction>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <clocale>
#include <cstdlib>

/// What keeps the program alive and its numbers right.
class TestApplication : public GuardedTest
{
    Q_OBJECT

private slots:
    void cleanup();
    void readsNumbersRightInALocaleWithADecimalComma();
    void anExceptionOutOfASlotEndsInABox_data();
    void anExceptionOutOfASlotEndsInABox();
    void showsTheTextAsItIs();
    void goesOnWhileTheBoxIsOpen();
    void aTaskThatFailsEachTickGetsOneBox();
    void anErrorOfATaskGetsABoxAgainAfterItWasAbsent();
    void anotherErrorOfATaskGetsABoxAtOnce();
    void errorsThatTakeTurnsGetOneBoxEach();
    void aUserWhoFailsTwiceGetsTwoBoxes_data();
    void aUserWhoFailsTwiceGetsTwoBoxes();
    void staysWhenItsLastWindowCloses();
    void furtherErrorsOfAWindowJoinItsBox();
    void eachWindowHasABoxOfItsOwn();
    void aBoxThatIsGoingTakesNoErrors();
    void errorsCanBeSelectedAndCopied();
    void aBoxOverAModalDialogCanBeClosed();
    void survivesAnExceptionOfADeletedReceiver();
    void doesNotRoundTheScaleOfAScreen();

private:
    static Application& application() { return *static_cast<Application*>(qApp); }
};

namespace {

/// A shown button that throws when it is clicked, and on its key F5.
struct BadButton
{
    explicit BadButton(const std::function<void()>& act)
    {
        QObject::connect(&button, &QPushButton::clicked, act);
        QObject::connect(&action, &QAction::triggered, act);
        action.setShortcut(Qt::Key_F5);
        button.addAction(&action);
        button.show();
    }
    void click() { QTest::mouseClick(&button, Qt::LeftButton); }

    QPushButton button;
    QAction action;
};

} // namespace

void TestApplication::cleanup()
{
    for (QMessageBox* box : shownBoxes())
        clickOk(box);
    GuardedTest::cleanup();
}

void TestApplication::readsNumbersRightInALocaleWithADecimalComma()
{
    QCOMPARE(QByteArray(std::setlocale(LC_MESSAGES, nullptr)), QByteArray("de_DE.UTF-8"));
    QCOMPARE(std::strtod("0.5", nullptr), 0.5);
}

void TestApplication::anExceptionOutOfASlotEndsInABox_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("of the robot") << 0 << "the robot said no";
    QTest::newRow("of a file") << 1 << "the file said no";
    QTest::newRow("of no known kind") << 2 << "does not describe itself";
}

void TestApplication::anExceptionOutOfASlotEndsInABox()
{
    QFETCH(int, kind);
    QFETCH(QString, text);
    BadButton bad([kind] {
        if (kind == 0)
            throw ZoError("the robot said no");
        if (kind == 1)
            throw std::runtime_error("the file said no");
        throw kind;
    });
    bad.click();
    QCOMPARE(shownBoxes().size(), 1);
    QVERIFY(shownBoxes()[0]->text().contains(text));
    clickOk(shownBoxes()[0]);
    QVERIFY(shownBoxes().isEmpty());
}

void TestApplication::showsTheTextAsItIs()
{
    BadButton bad([] { throw std::runtime_error("<b>gr\xc3\xbc\xc3\x9f</b>"); });
    bad.click();
    QCOMPARE(shownBoxes()[0]->text(), QString::fromUtf8("<b>gr\u00fc\u00df</b>"));
    QCOMPARE(shownBoxes()[0]->textFormat(), Qt::PlainText);
}

void TestApplication::goesOnWhileTheBoxIsOpen()
{
    BadButton bad([] { throw std::runtime_error("no"); });
    bad.click();
    QCOMPARE(shownBoxes().size(), 1);
    QTimer ticker;
    QSignalSpy ticks(&ticker, &QTimer::timeout);
    ticker.start(1);
    QVERIFY(ticks.wait(patience));
}

void TestApplication::aTaskThatFailsEachTickGetsOneBox()
{
    QTimer ticker;
    connect(&ticker, &QTimer::timeout, [] { throw std::runtime_error("no value today"); });
    QSignalSpy noted(&application().errors(), &ErrorReporter::noted);
    ticker.start(1);
    TRY_VERIFY(noted.size() > 5);
    QCOMPARE(shownBoxes().size(), 1);
    clickOk(shownBoxes()[0]);
    const auto before = noted.size();
    TRY_VERIFY(noted.size() > before + 5);
    QVERIFY(shownBoxes().isEmpty());
    QCOMPARE(noted.last().at(0).toString(), QString("no value today"));
}

void TestApplication::anErrorOfATaskGetsABoxAgainAfterItWasAbsent()
{
    qint64 now = 1000000;
    ErrorReporter errors([&now] { return now; });
    const QSignalSpy noted(&errors, &ErrorReporter::noted);
    const auto failAndLook = [&errors] {
        errors.report(nullptr, "no value today", ErrorReporter::Origin::RunningWork);
        const bool hasBox = !shownBoxes().isEmpty();
        for (QMessageBox* box : shownBoxes())
            clickOk(box);
        return hasBox;
    };
    QVERIFY(failAndLook());
    for (int repeated = 1; repeated <= 3; ++repeated) {
        now += ErrorReporter::fQuietTime; // each one begins the quiet time anew
        QVERIFY(!failAndLook());
        QCOMPARE(noted.size(), repeated);
    }
    now += ErrorReporter::fQuietTime + 1;
    QVERIFY(failAndLook());
    QCOMPARE(noted.size(), 3);
    QVERIFY(!failAndLook());
}

void TestApplication::anotherErrorOfATaskGetsABoxAtOnce()
{
    ErrorReporter errors([] { return 0; });
    for (const char* text : {"no value", "no robot", "no file"}) {
        errors.report(nullptr, text, ErrorReporter::Origin::RunningWork);
        QCOMPARE(shownBoxes().size(), 1);
        QCOMPARE(shownBoxes()[0]->text(), QString(text));
        clickOk(shownBoxes()[0]);
    }
}

void TestApplication::errorsThatTakeTurnsGetOneBoxEach()
{
    qint64 now = 0;
    ErrorReporter errors([&now] { return now; });
    const QSignalSpy noted(&errors, &ErrorReporter::noted);
    int boxes = 0;
    for (int turn = 0; turn < 20; ++turn) {
        now += ErrorReporter::fQuietTime / 2;
        errors.report(nullptr, turn % 2 == 0 ? "no value" : "no robot",
                      ErrorReporter::Origin::RunningWork);
        for (QMessageBox* box : shownBoxes()) {
            ++boxes;
            clickOk(box);
        }
    }
    QCOMPARE(boxes, 2);
    QCOMPARE(noted.size(), 18);
}

void TestApplication::aUserWhoFailsTwiceGetsTwoBoxes_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("mouse") << Qt::Key_unknown;
    QTest::newRow("key pressed") << Qt::Key_Return;
    QTest::newRow("key released") << Qt::Key_Space;
    QTest::newRow("shortcut") << Qt::Key_F5;
}

void TestApplication::aUserWhoFailsTwiceGetsTwoBoxes()
{
    QFETCH(Qt::Key, key);
    BadButton bad([] { throw std::runtime_error("not this one"); });
    bad.button.setAutoDefault(true);
    for (int time = 0; time < 2; ++time) {
        bad.button.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&bad.button, patience));
        if (key == Qt::Key_unknown)
            bad.click();
        else
            QTest::keyClick(&bad.button, key);
        QCOMPARE(shownBoxes().size(), 1);
        clickOk(shownBoxes()[0]);
    }
}

void TestApplication::staysWhenItsLastWindowCloses()
{
    QSignalSpy quits(&application(), &QGuiApplication::lastWindowClosed);
    const QSignalSpy ends(&application(), &QCoreApplication::aboutToQuit);
    QTimer::singleShot(0, [] {
        QWidget window;
        window.show();
        window.close();
        // Too late for a loop that the closed window has ended.
        QTimer::singleShot(20, qApp, [] { QCoreApplication::exit(7); });
    });
    QCOMPARE(Application::exec(), 7);
    QCOMPARE(quits.size(), 1);
    QCOMPARE(ends.size(), 1);
}

void TestApplication::furtherErrorsOfAWindowJoinItsBox()
{
    ErrorReporter& errors = application().errors();
    QSignalSpy noted(&errors, &ErrorReporter::noted);
    errors.report(nullptr, "first");
    errors.report(nullptr, "second\nline");
    errors.report(shownBoxes()[0], "over the box");
    errors.report(nullptr, "first");
    QCOMPARE(shownBoxes().size(), 1);
    QCOMPARE(shownBoxes()[0]->text(), QString("first\n\nsecond\nline\n\nover the box"));
    QCOMPARE(noted.size(), 0);
    for (int i = 0; i < ErrorReporter::fMostInABox; ++i)
        errors.report(nullptr, QString("more %1").arg(i), ErrorReporter::Origin::RunningWork);
    QCOMPARE(shownBoxes()[0]->text().count("\n\n"), ErrorReporter::fMostInABox - 1);
    QCOMPARE(noted.size(), 3);
    QCOMPARE(noted.last()[0].toString(), QString("more 9"));
    QCOMPARE(shownBoxes()[0]->detailedText(), QString("more 7\n\nmore 8\n\nmore 9"));
    QCOMPARE(shownBoxes()[0]->informativeText(), QString("3 more in the details."));
    errors.report(nullptr, "more 8");
    QCOMPARE(shownBoxes()[0]->detailedText().count("more 8"), 1);
    for (int i = 0; i < ErrorReporter::fMostKept; ++i)
        errors.report(nullptr, QString("even more %1").arg(i));
    QCOMPARE(shownBoxes()[0]->detailedText().count("more"),
             ErrorReporter::fMostKept - ErrorReporter::fMostInABox);
}

void TestApplication::eachWindowHasABoxOfItsOwn()
{
    QWidget one;
    QWidget other;
    application().errors().report(&one, "of one");
    application().errors().report(&other, "of the other");
    QCOMPARE(shownBoxes().size(), 2);
    for (const QMessageBox* box : shownBoxes())
        QCOMPARE(box->text(), box->parentWidget() == &one ? "of one" : "of the other");
}

void TestApplication::aBoxThatIsGoingTakesNoErrors()
{
    application().errors().report(nullptr, "first");
    shownBoxes()[0]->close(); // it is deleted later
    application().errors().report(nullptr, "second");
    QCOMPARE(shownBoxes().size(), 1);
    QCOMPARE(shownBoxes()[0]->text(), QString("second"));
}

void TestApplication::errorsCanBeSelectedAndCopied()
{
    application().errors().report(nullptr, "to be copied");
    auto* label = shownBoxes()[0]->findChild<QLabel*>("qt_msgbox_label");
    QTest::mouseDClick(label, Qt::LeftButton, {}, QPoint(8, label->height() / 2));
    QTest::keyClick(label, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString("to be copied"));
}

void TestApplication::aBoxOverAModalDialogCanBeClosed()
{
    QDialog dialog;
    auto* button = new QPushButton(&dialog);
    connect(button, &QPushButton::clicked, [] { throw std::runtime_error("no"); });
    ModalDriver user;
    user.then<QDialog>([&dialog, button](QDialog&) {
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(shownBoxes().size(), 1);
        QCOMPARE(shownBoxes()[0]->parentWidget(), &dialog);
        clickOk(shownBoxes()[0]);
        dialog.accept();
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY(shownBoxes().isEmpty());
}

void TestApplication::survivesAnExceptionOfADeletedReceiver()
{
    auto* object = new QTimer;
    QTimer::singleShot(0, object, [object] {
        delete object;
        throw std::runtime_error("gone with a bang");
    });
    TRY_COMPARE(shownBoxes().size(), 1);
    QCOMPARE(shownBoxes()[0]->text(), QString("gone with a bang"));
}

void TestApplication::doesNotRoundTheScaleOfAScreen()
{
    QCOMPARE(QGuiApplication::highDpiScaleFactorRoundingPolicy(),
             Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

REGISTER_TEST(TestApplication, HostApplication)
#include "tst_application.moc"
