// SPDX-License-Identifier: MIT
#include "support/connect_dialog_bench.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <QPlainTextEdit>
#include <QThreadPool>
#include <QtTest>

/// Trying a robot step by step from the connect dialog.
class TestCheckDialog : public GuardedTest, private ConnectDialogBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void testingARobotTellsEachStep();
    void aTestTellsWhatToDoAndCanBeClosedAtAnyMoment();
};

void TestCheckDialog::testingARobotTellsEachStep()
{
    const RedisServer robot;
    type("host", "127.0.0.1");
    type("port", QString::number(robot.port()));
    QTest::mouseClick(field<QPushButton>("test"), Qt::LeftButton);
    auto* text = field<QPlainTextEdit>("steps");
    TRY_VERIFY(text->toPlainText().contains("All that a panel needs works."));
    for (const char* step : {"ok - connection: 127.0.0.1", "skipped - encryption", "ok - login",
                             "ok - keys: 0 keys", "ok - round trip"})
        QVERIFY2(text->toPlainText().contains(step), qPrintable(text->toPlainText()));
    QCOMPARE(fRequests->size(), 0);
}

void TestCheckDialog::aTestTellsWhatToDoAndCanBeClosedAtAnyMoment()
{
    const FakeRobot robot([](FakeConnection& connection) { connection.waitForEnd(); });
    type("host", "127.0.0.1");
    type("port", QString::number(robot.port()));
    type("timeout", "300");
    QTest::mouseClick(field<QPushButton>("test"), Qt::LeftButton);
    TRY_VERIFY(field<QPlainTextEdit>("steps")->toPlainText().contains("does it want encryption?"));
    TRY_VERIFY(field<QPlainTextEdit>("steps")->toPlainText().contains("would not work"));
    QPointer<QDialog> test = fDialog->findChild<QDialog*>();
    test->close();
    TRY_VERIFY(!test);
    type("timeout", "3600000");
    QTest::mouseClick(field<QPushButton>("test"), Qt::LeftButton);
    TRY_VERIFY(field<QPlainTextEdit>("steps")->toPlainText().contains("skipped - encryption"));
    test = fDialog->findChild<QDialog*>();
    QTest::keyClick(test.data(), Qt::Key_Escape);
    TRY_VERIFY(!test);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(patience));
}

REGISTER_TEST(TestCheckDialog, HostApplication)
#include "tst_check_dialog.moc"
