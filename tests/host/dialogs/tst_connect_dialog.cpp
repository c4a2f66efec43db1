// SPDX-License-Identifier: MIT
#include "support/connect_dialog_bench.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "support/register_test.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QSpinBox>
#include <QtTest>

/// The dialog that asks which robot to connect to.
class TestConnectDialog : public GuardedTest, private ConnectDialogBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void asksForWhatWasTyped();
    void keepsWhatOnlyTheCommandLineSays();
    void keepsAGivenPasswordUntilOneIsTyped();
    void enterConnects();
    void takesAPortTypedBehindTheHost();
    void anAddressIsNotCompletedToARememberedOne();
    void anAddressSpelledLikeARememberedOneLeavesTheRest();
    void thePortBoxShowsAPortBehindTheHost();
    void aRememberedRobotLeavesATypedPassword();
    void aPasswordGivenForOneRobotIsNotForTheNext();
    void aPasswordGivenForOneAddressIsNotForAnother();
    void offersRecentRobots();
    void namesWhatIsWrongWithAnAddress();
    void namesWhatIsWrongWithAPrefix();
    void anAddressIsTakenInOneForm();
    void cannotConnectToNothing();
    void authoritiesCountWithEncryptionOnly();
    void aFileOfAuthoritiesIsBrowsedFor();
    void pathsOfFilesBecomeAbsolute();
    void aCertificateNeedsItsKey();
    void aTimeOutIsForEveryWait();
    void staysOpenUntilSomebodyAccepts();
    void escapeCancels();
    void hidesThePassword();

private:
    void chooseRecent();
};

/// The next robot in the list of the address box.
void TestConnectDialog::chooseRecent()
{
    field<QComboBox>("host")->setFocus();
    QTest::keyClick(field<QComboBox>("host"), Qt::Key_Down);
}

void TestConnectDialog::asksForWhatWasTyped()
{
    type("host", "robot.local");
    type("port", "7000");
    type("prefix", " robot7/");
    type("user", "me");
    type("password", "secret");
    QTest::mouseClick(field<QCheckBox>("tls"), Qt::LeftButton, {}, QPoint(5, 8));
    type("ca", "/etc/ca.pem");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(fRequests->size(), 1);
    QCOMPARE(asked().addressText(), QString("robot.local:7000"));
    QCOMPARE(asked().prefix, QString("robot7/"));
    QCOMPARE(asked().user, QString("me"));
    QCOMPARE(asked().password, std::string("secret"));
    QVERIFY(asked().tls);
    QCOMPARE(asked().caFile, QString("/etc/ca.pem"));
}

void TestConnectDialog::keepsWhatOnlyTheCommandLineSays()
{
    ConnectionSettings settings;
    settings.other.pingInterval = std::chrono::milliseconds(300);
    open({}, settings);
    type("host", "robot");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().brokerOptions().pingInterval.count(), 300);
}

void TestConnectDialog::keepsAGivenPasswordUntilOneIsTyped()
{
    ConnectionSettings settings;
    settings.password = "\xe9t\xe9"; // no UTF-8
    open({}, settings);
    type("host", "robot");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().password, std::string("\xe9t\xe9"));
    type("password", "secret");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().password, std::string("secret"));
}

void TestConnectDialog::enterConnects()
{
    type("host", "robot");
    QTest::keyClick(field<QLineEdit>("user"), Qt::Key_Return);
    QCOMPARE(asked().addressText(), QString("robot:6379"));
}

void TestConnectDialog::takesAPortTypedBehindTheHost()
{
    type("port", "7000");
    type("host", "robot:8000");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("robot:8000"));
    type("host", "[::1]");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("[::1]:7000"));
}

void TestConnectDialog::anAddressIsNotCompletedToARememberedOne()
{
    open({robotAt("10.0.0.12", 6379)});
    type("host", "10.0.0.1");
    QTest::keyClick(field<QComboBox>("host")->lineEdit(), Qt::Key_Return);
    QCOMPARE(asked().addressText(), QString("10.0.0.1:6379"));
}

void TestConnectDialog::anAddressSpelledLikeARememberedOneLeavesTheRest()
{
    open({robotAt("robot", 7000)});
    type("user", "me");
    type("host", "robot:7000");
    QTest::keyClick(field<QComboBox>("host")->lineEdit(), Qt::Key_Return);
    QCOMPARE(asked().addressText(), QString("robot:7000"));
    QCOMPARE(asked().user, QString("me"));
    QCOMPARE(field<QComboBox>("host")->count(), 1);
}

void TestConnectDialog::thePortBoxShowsAPortBehindTheHost()
{
    auto* port = field<QSpinBox>("port");
    type("port", "7000");
    for (const char* text : {"robot:8000", "[::1]:8000", "robot:08000"}) {
        type("host", text);
        QVERIFY(!port->isEnabled());
        QCOMPARE(port->value(), 8000);
        QTest::mouseClick(connectButton(), Qt::LeftButton);
        QCOMPARE(asked().address.port, 8000);
    }
    for (const char* text : {"robot", "[::1]", "robot:", "robot:x"}) {
        type("host", text);
        QVERIFY(port->isEnabled());
        QCOMPARE(port->value(), 7000);
    }
}

void TestConnectDialog::aRememberedRobotLeavesATypedPassword()
{
    open({robotAt("first", 1)});
    type("password", "secret");
    chooseRecent();
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("first:1"));
    QCOMPARE(asked().password, std::string("secret"));
}

void TestConnectDialog::aPasswordGivenForOneAddressIsNotForAnother()
{
    ConnectionSettings given = robotAt("second", 2);
    given.password = "secret";
    open({}, given);
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().password, std::string("secret"));
    type("host", "third");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("third:2"));
    QCOMPARE(asked().password, std::string());
}

void TestConnectDialog::aPasswordGivenForOneRobotIsNotForTheNext()
{
    ConnectionSettings given = robotAt("second", 2);
    given.password = "secret";
    open({robotAt("first", 1)}, given);
    chooseRecent();
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("first:1"));
    QVERIFY(asked().password.empty());
}

void TestConnectDialog::offersRecentRobots()
{
    ConnectionSettings first;
    first.address = {"first", 1};
    ConnectionSettings second;
    second.address = {"::1", 2};
    second.user = "me";
    second.tls = true;
    second.caFile = "/etc/ca.pem";
    open({first, second});
    auto* box = field<QComboBox>("host");
    QCOMPARE(box->itemText(0), QString("first:1"));
    QCOMPARE(box->itemText(1), QString("[::1]:2 as me"));
    chooseRecent();
    chooseRecent();
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(box->currentIndex(), 1);
    QCOMPARE(asked().addressText(), QString("[::1]:2"));
    QCOMPARE(asked().user, QString("me"));
    QVERIFY(asked().tls);
    QCOMPARE(asked().caFile, QString("/etc/ca.pem"));
}

void TestConnectDialog::namesWhatIsWrongWithAnAddress()
{
    QSignalSpy refused(fDialog.data(), &ConnectDialog::refused);
    type("host", "robot:seven");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(fRequests->size(), 0);
    QCOMPARE(refused.size(), 1);
    QVERIFY(refused.at(0).at(0).toString().contains("robot:seven"));
}

void TestConnectDialog::namesWhatIsWrongWithAPrefix()
{
    QSignalSpy refused(fDialog.data(), &ConnectDialog::refused);
    type("host", "robot");
    type("prefix", "robot 7/");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(fRequests->size(), 0);
    QCOMPARE(refused.at(0).at(0).toString(),
             QString("prefix \"robot 7/\": there is a blank in it"));
}

void TestConnectDialog::anAddressIsTakenInOneForm()
{
    type("host", "[0:0::0:1]");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("[::1]:6379"));
    type("host", "Robot");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("robot:6379"));
}

void TestConnectDialog::cannotConnectToNothing()
{
    type("host", " ");
    QVERIFY(!connectButton()->isEnabled());
    type("host", "r");
    QVERIFY(connectButton()->isEnabled());
}

void TestConnectDialog::authoritiesCountWithEncryptionOnly()
{
    QVERIFY(!field<QLineEdit>("ca")->isEnabled());
    auto* box = field<QCheckBox>("tls");
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(5, 8));
    QVERIFY(field<QLineEdit>("ca")->isEnabled());
    type("ca", "/etc/ca.pem");
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(5, 8));
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QVERIFY(!asked().tls);
    QVERIFY(asked().caFile.isEmpty());
}

void TestConnectDialog::aFileOfAuthoritiesIsBrowsedFor()
{
    const QTemporaryDir folder;
    const QString chosen = folder.filePath("authorities.pem");
    writeBytes(chosen, "-----BEGIN CERTIFICATE-----");
    auto* browse = field<QLineEdit>("ca")->parentWidget()->findChild<QPushButton*>();
    QVERIFY(!browse->isEnabled());
    QTest::mouseClick(field<QCheckBox>("tls"), Qt::LeftButton, {}, QPoint(5, 8));
    QVERIFY(browse->isEnabled());
    type("ca", "/etc/ca.pem");
    ModalDriver user;
    user.then<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    QTest::mouseClick(browse, Qt::LeftButton);
    QCOMPARE(field<QLineEdit>("ca")->text(), QString("/etc/ca.pem"));
    user.then<QFileDialog>([&chosen](QFileDialog& dialog) { chooseFile(dialog, chosen); });
    QTest::mouseClick(browse, Qt::LeftButton);
    QCOMPARE(field<QLineEdit>("ca")->text(), chosen);
}

void TestConnectDialog::pathsOfFilesBecomeAbsolute()
{
    QTest::mouseClick(field<QCheckBox>("tls"), Qt::LeftButton, {}, QPoint(5, 8));
    type("ca", "ca.pem");
    type("cert", "./me.pem");
    type("key", "/etc/me.key");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().caFile, QDir::current().absoluteFilePath("ca.pem"));
    QCOMPARE(asked().certFile, QDir::current().absoluteFilePath("me.pem"));
    QCOMPARE(asked().keyFile, QString("/etc/me.key"));
}

void TestConnectDialog::aCertificateNeedsItsKey()
{
    const QSignalSpy refused(fDialog.data(), &ConnectDialog::refused);
    QTest::mouseClick(field<QCheckBox>("tls"), Qt::LeftButton, {}, QPoint(5, 8));
    type("cert", "/etc/me.pem");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(fRequests->size(), 0);
    QCOMPARE(refused.size(), 1);
    QVERIFY(refused.at(0).at(0).toString().contains("need each other"));
}

void TestConnectDialog::aTimeOutIsForEveryWait()
{
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().brokerOptions().exchangeTimeout, ZoBrokerOptions().exchangeTimeout);
    type("timeout", "1500");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().brokerOptions().connectTimeout.count(), 1500);
    QCOMPARE(asked().brokerOptions().exchangeTimeout.count(), 1500);
}

void TestConnectDialog::staysOpenUntilSomebodyAccepts()
{
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(fRequests->size(), 1);
    QVERIFY(fDialog->isVisible());
    fDialog->accept();
    QVERIFY(!fDialog->isVisible());
}

void TestConnectDialog::escapeCancels()
{
    QTest::keyClick(fDialog.data(), Qt::Key_Escape);
    QVERIFY(!fDialog->isVisible());
    QCOMPARE(fRequests->size(), 0);
}

void TestConnectDialog::hidesThePassword()
{
    QCOMPARE(field<QLineEdit>("password")->echoMode(), QLineEdit::Password);
}

REGISTER_TEST(TestConnectDialog, HostApplication)
#include "tst_connect_dialog.moc"
