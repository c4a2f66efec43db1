// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/register_test.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QProcess>
#include <QtTest>

#include <memory>

namespace {

constexpr int shortPatience = 400; ///< ms
constexpr char casesWord[] = "modal_driver_cases";

int answerOf(QDialog& dialog)
{
    return dialog.exec();
}

} // namespace

/// What tests do with the drivers of dialogs, most of them wrong. Each is run by the other class,
/// in a process of its own.
class Cases : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyStepIsTaken();
    void nobodyAnswers();
    void theAnswerLeavesTheDialogOpen();
    void anotherDialogComes();
    void aBoxThatCannotBeCancelledStaysOpen();
    void aDialogUponADialogStaysOpen();
    void aStepIsLeftOver();
    void aDriverOfOneDialogIsNotNeeded();
    void aDriverOfOneDialogDoesNotCloseIt();
    void aDriverKeptUntilTheEndIsNotNeeded();
};

void Cases::everyStepIsTaken()
{
    QDialog named;
    named.setObjectName("named");
    ModalDriver user;
    user.then<QInputDialog>([](QInputDialog& dialog) { dialog.accept(); });
    user.then("named", [](QDialog& dialog) { dialog.accept(); });
    QInputDialog input;
    QCOMPARE(answerOf(input), int(QDialog::Accepted));
    QVERIFY(!user.isDone());
    QCOMPARE(answerOf(named), int(QDialog::Accepted));
    QVERIFY(user.isDone());
}

void Cases::nobodyAnswers()
{
    const ModalDriver user(shortPatience);
    QDialog dialog;
    QCOMPARE(answerOf(dialog), int(QDialog::Rejected));
}

void Cases::theAnswerLeavesTheDialogOpen()
{
    ModalDriver user(shortPatience);
    user.then<QDialog>([](QDialog&) {});
    QDialog dialog;
    QCOMPARE(answerOf(dialog), int(QDialog::Rejected));
    QVERIFY(user.isDone());
}

void Cases::anotherDialogComes()
{
    ModalDriver user(shortPatience);
    user.then<QMessageBox>([](QMessageBox& box) { box.accept(); });
    QInputDialog dialog;
    QCOMPARE(answerOf(dialog), int(QDialog::Rejected));
}

void Cases::aBoxThatCannotBeCancelledStaysOpen()
{
    const ModalDriver user(shortPatience);
    QMessageBox box(QMessageBox::NoIcon, "Box", "?", QMessageBox::Yes | QMessageBox::Save);
    box.exec();
}

void Cases::aDialogUponADialogStaysOpen()
{
    ModalDriver user(shortPatience);
    QDialog upper;
    user.then("lower", [&upper](QDialog&) { upper.exec(); });
    QDialog lower;
    lower.setObjectName("lower");
    QCOMPARE(answerOf(lower), int(QDialog::Rejected));
}

void Cases::aStepIsLeftOver()
{
    ModalDriver user;
    user.then<QInputDialog>([](QInputDialog& dialog) { dialog.accept(); });
    user.then<QMessageBox>([](QMessageBox& box) { box.accept(); });
    QInputDialog dialog;
    QCOMPARE(answerOf(dialog), int(QDialog::Accepted));
}

void Cases::aDriverOfOneDialogIsNotNeeded()
{
    const ModalDriver driver(acceptDialog);
    QVERIFY(!driver.isDone());
}

void Cases::aDriverOfOneDialogDoesNotCloseIt()
{
    const ModalDriver driver([](QWidget&) {}, shortPatience);
    QDialog dialog;
    QCOMPARE(answerOf(dialog), int(QDialog::Rejected));
    QVERIFY(driver.isDone());
}

void Cases::aDriverKeptUntilTheEndIsNotNeeded()
{
    auto user = std::make_unique<ModalDriver>();
    user->then("nowhere", [](QDialog& dialog) { dialog.accept(); });
    GuardedTest::keepUntilEnd(std::move(user));
}

/// The drivers of dialogs: what they had to do by themselves is a failure.
class TestModalDriver : public GuardedTest
{
    Q_OBJECT

private slots:
    void aTestWhoseStepsAreAllTakenPasses();
    void whatTheDriverHadToDoByItselfIsAFailure_data();
    void whatTheDriverHadToDoByItselfIsAFailure();
};

namespace {

struct Ended
{
    int status; ///< -1: ended by a signal, or not at all
    QString output;
};

Ended runCase(const QString& name)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {casesWord, name});
    const bool ended =
        process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput())};
}

} // namespace

void TestModalDriver::aTestWhoseStepsAreAllTakenPasses()
{
    const Ended ended = runCase("everyStepIsTaken");
    QVERIFY2(ended.status == 0, qPrintable(ended.output));
    QVERIFY2(ended.output.contains("PASS   : Cases::everyStepIsTaken()"), qPrintable(ended.output));
}

void TestModalDriver::whatTheDriverHadToDoByItselfIsAFailure_data()
{
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const QString& message) {
        QTest::newRow(name) << message;
    };
    const QString open = "A dialog was still open after 400 ms: ";
    row("nobodyAnswers", open + "QDialog \"\". Next step: none");
    row("theAnswerLeavesTheDialogOpen", open + "QDialog \"\". Next step: none");
    row("anotherDialogComes", open + "QInputDialog \"\". Next step: QMessageBox");
    row("aBoxThatCannotBeCancelledStaysOpen", open + "QMessageBox \"Box\". Next step: none");
    row("aDialogUponADialogStaysOpen", open + "QDialog \"\". Next step: none");
    row("aStepIsLeftOver", "These dialogs never came: QMessageBox");
    row("aDriverOfOneDialogIsNotNeeded", "These dialogs never came: QWidget");
    row("aDriverOfOneDialogDoesNotCloseIt", open + "QDialog \"\". Next step: none");
    row("aDriverKeptUntilTheEndIsNotNeeded", "These dialogs never came: nowhere");
}

void TestModalDriver::whatTheDriverHadToDoByItselfIsAFailure()
{
    QFETCH(QString, message);
    const QString name = QTest::currentDataTag();
    const Ended ended = runCase(name);
    QVERIFY2(ended.status == 1, qPrintable(ended.output));
    QVERIFY2(ended.output.contains("FAIL!  : Cases::" + name + "() " + message),
             qPrintable(ended.output));
}

REGISTER_TEST(TestModalDriver, QApplication)
static const TestSubject cases(casesWord, runTest<Cases, QApplication>);
#include "tst_modal_driver.moc"
