// SPDX-License-Identifier: MIT
#include "dialogs/connect_dialog.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(ConnectionSettings)

/// The dialog that asks which robot to connect to.
class TestConnectDialog : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void asksForWhatWasTyped();
    void keepsWhatOnlyTheCommandLineSays();
    void keepsAGivenPasswordUntilOneIsTyped();
    void enterConnects();
    void takesAPortTypedBehindTheHost();
    void offersRecentRobots();
    void namesWhatIsWrongWithAnAddress();
    void cannotConnectToNothing();
    void authoritiesCountWithEncryptionOnly();
    void aFileOfAuthoritiesIsBrowsedFor();
    void staysOpenUntilSomebodyAccepts();
    void escapeCancels();
    void hidesThePassword();

private:
    void open(const QList<ConnectionSettings>& recent = {},
              const ConnectionSettings& settings = {});
    QPushButton* connectButton() const;
    ConnectionSettings asked() const;
    template <typename Widget>
    Widget* field(const char* name) const
    {
        return fDialog->findChild<Widget*>(name);
    }
    void type(const char* name, const QString& text);

    QScopedPointer<ConnectDialog> fDialog;
    QScopedPointer<QSignalSpy> fRequests;
};

void TestConnectDialog::init()
{
    qRegisterMetaType<ConnectionSettings>();
    open();
}

void TestConnectDialog::cleanup()
{
    fDialog.reset();
    GuardedTest::cleanup();
}

void TestConnectDialog::open(const QList<ConnectionSettings>& recent,
                             const ConnectionSettings& settings)
{
    fDialog.reset(new ConnectDialog(recent, settings));
    fDialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(fDialog.data(), patience));
    fRequests.reset(new QSignalSpy(fDialog.data(), &ConnectDialog::connectRequested));
}

QPushButton* TestConnectDialog::connectButton() const
{
    for (QPushButton* button : fDialog->findChildren<QPushButton*>())
        if (button->isDefault())
            return button;
    return nullptr;
}

ConnectionSettings TestConnectDialog::asked() const
{
    return fRequests->isEmpty() ? ConnectionSettings()
                                : fRequests->last().at(0).value<ConnectionSettings>();
}

void TestConnectDialog::type(const char* name, const QString& text)
{
    auto* widget = field<QWidget>(name);
    if (auto* box = qobject_cast<QComboBox*>(widget))
        widget = box->lineEdit();
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(widget, text);
}

void TestConnectDialog::asksForWhatWasTyped()
{
    type("host", "robot.local");
    type("port", "7000");
    type("user", "me");
    type("password", "secret");
    QTest::mouseClick(field<QCheckBox>("tls"), Qt::LeftButton, {}, QPoint(5, 8));
    type("ca", "/etc/ca.pem");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(fRequests->size(), 1);
    QCOMPARE(asked().addressText(), QString("robot.local:7000"));
    QCOMPARE(asked().user, QString("me"));
    QCOMPARE(asked().password, std::string("secret"));
    QVERIFY(asked().tls);
    QCOMPARE(asked().caFile, QString("/etc/ca.pem"));
}

void TestConnectDialog::keepsWhatOnlyTheCommandLineSays()
{
    ConnectionSettings settings;
    settings.other.tlsCertFile = "/etc/me.pem";
    settings.other.connectTimeout = std::chrono::milliseconds(300);
    open({}, settings);
    type("host", "robot");
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().brokerOptions().tlsCertFile, std::string("/etc/me.pem"));
    QCOMPARE(asked().brokerOptions().connectTimeout.count(), 300);
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
    QCOMPARE(box->itemText(1), QString("[::1]:2"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QTest::keyClick(box, Qt::Key_Down);
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), box->itemText(box->currentIndex()));
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
    QAbstractButton* browse = buttonOf(*fDialog, "&Browse...");
    if (!browse)
        QFAIL("there is no such button");
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

REGISTER_TEST(TestConnectDialog, QApplication)
#include "tst_connect_dialog.moc"
