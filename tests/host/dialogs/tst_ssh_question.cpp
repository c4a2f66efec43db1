// SPDX-License-Identifier: MIT
#include "dialogs/ssh_question.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

/// The questions of ssh.
class TestSshQuestion : public GuardedTest
{
    Q_OBJECT

private slots:
    void aSecretIsHidden();
    void aWordIsShown();
    void aConfirmationNeedsNoLine();
    void news();
};

void TestSshQuestion::aSecretIsHidden()
{
    SshQuestion question("<b>me@gate</b>'s password:", "");
    question.show();
    QCOMPARE(question.findChild<QLabel*>()->textFormat(), Qt::PlainText);
    auto* edit = question.findChild<QLineEdit*>();
    QCOMPARE(edit->echoMode(), QLineEdit::Password);
    QTest::keyClicks(edit, "open sesame");
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(question.result(), int(QDialog::Accepted));
    QCOMPARE(question.answer(), QString("open sesame"));
}

void TestSshQuestion::aWordIsShown()
{
    const SshQuestion question("Are you sure you want to continue (yes/no/[fingerprint])?", "");
    QCOMPARE(question.findChild<QLineEdit*>()->echoMode(), QLineEdit::Normal);
}

void TestSshQuestion::aConfirmationNeedsNoLine()
{
    SshQuestion question("Allow use of key?", "confirm");
    QVERIFY(!question.findChild<QLineEdit*>());
    QTest::keyClick(&question, Qt::Key_Escape);
    QCOMPARE(question.result(), int(QDialog::Rejected));
    QVERIFY(question.answer().isEmpty());
}

void TestSshQuestion::news()
{
    const SshQuestion question("Confirm user presence for key", "none");
    QVERIFY(!question.findChild<QLineEdit*>());
    QCOMPARE(question.findChild<QDialogButtonBox*>()->standardButtons(), QDialogButtonBox::Close);
}

REGISTER_TEST(TestSshQuestion, QApplication)
#include "tst_ssh_question.moc"
