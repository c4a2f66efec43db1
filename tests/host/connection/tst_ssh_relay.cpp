// SPDX-License-Identifier: MIT
#include "connection/connection_attempt.h"
#include "connection/ssh_relay.h"
#include "support/fake_ssh.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/program.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <zo/error.h>

#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

/// Robots behind another host, with a program in place of ssh.
class TestSshRelay : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void sshCarriesTheConnection();
    void theCertificateIsThatOfTheRobot();
    void whatSshSaysIsTold();
    void aMissingSshIsTold();
    void sshEndsWithItsConnection();
    void anSshThatDoesNotNoticeThatIsEnded();
    void aLinkComesBackBySshWithoutQuestions();
    void aFailureEndsTheQuestions();
    void aLostConnectionEndsTheQuestions();
    void whatSshHasStartedEndsWithIt();
    void theEndOfALongTextIsTold();
    void nobodyElseReachesTheSocket();
    void manyTalkAtOnce();
    void refusesWhatIsNoHost_data();
    void refusesWhatIsNoHost();

private:
    ConnectionSettings settings(int port) const;
    static QString failureOf(const ConnectionSettings& settings);

    QScopedPointer<FakeSsh> fSsh;
};

void TestSshRelay::init()
{
    qunsetenv("SSH_ASKPASS");
    fSsh.reset(new FakeSsh);
}

void TestSshRelay::cleanup()
{
    fSsh.reset();
    GuardedTest::cleanup();
}

ConnectionSettings TestSshRelay::settings(int port) const
{
    ConnectionSettings settings;
    settings.address = {"arm-7.invalid", port};
    settings.jumpHost = "pilot@gate";
    settings.openWay();
    return settings;
}

/// Why an attempt fails.
QString TestSshRelay::failureOf(const ConnectionSettings& settings)
{
    ConnectionAttempt attempt(settings);
    const QSignalSpy failed(&attempt, &ConnectionAttempt::failed);
    attempt.start();
    for (int i = 0; i < 100 && failed.isEmpty(); ++i)
        const_cast<QSignalSpy&>(failed).wait(patience / 100);
    return failed.isEmpty() ? QString() : failed[0][0].toString();
}

void TestSshRelay::sshCarriesTheConnection()
{
    const RedisServer robot;
    const ConnectionSettings way = settings(robot.port());
    const auto broker =
        ZoBroker::create("test", way.address.host, way.address.port, way.brokerOptions());
    ZoMemoryProxy memory = memoryOf(broker);
    memory.setText("Arm", "1");
    QVERIFY(memory.getListData(requestFor({"Arm"}))[0] == ZoValue(1));
    QCOMPARE(fSsh->starts().size(), 1);
    const QString words = fSsh->starts()[0];
    QVERIFY2(words.endsWith(QString("-W arm-7.invalid:%1 -- pilot@gate").arg(robot.port())),
             qPrintable(words));
    QVERIFY2(words.contains("asks=" + QCoreApplication::applicationFilePath()), qPrintable(words));
    QVERIFY2(!words.contains("BatchMode"), qPrintable(words));
}

void TestSshRelay::theCertificateIsThatOfTheRobot()
{
    RedisServer::Options options;
    options.tls = true;
    const RedisServer robot(options);
    ConnectionSettings way = settings(robot.port());
    way.tls = true;
    way.caFile = QString::fromStdString(robot.caFile());
    QVERIFY2(failureOf(way).contains("certificate"), qPrintable(failureOf(way)));
    way.address.host = "127.0.0.1"; // for whom it is
    way.openWay();
    QVERIFY(ZoBroker::create("test", way.address.host, way.address.port, way.brokerOptions())
                ->isConnected());
}

void TestSshRelay::whatSshSaysIsTold()
{
    fSsh->act("printf 'pilot@gate: Permission denied\\r\\n\\033[2J' >&2; exit 255");
    const QString problem = failureOf(settings(1));
    QVERIFY2(problem.contains("ssh says:\npilot@gate: Permission denied"), qPrintable(problem));
    QVERIFY2(!problem.contains('\x1b'), qPrintable(problem));
}

void TestSshRelay::aMissingSshIsTold()
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/usr/bin/../nowhere");
    const QString problem = failureOf(settings(1));
    qputenv("PATH", path);
    QVERIFY2(problem.contains("ssh"), qPrintable(problem));
}

void TestSshRelay::sshEndsWithItsConnection()
{
    const RedisServer robot;
    ConnectionSettings way = settings(robot.port());
    auto broker = ZoBroker::create("test", way.address.host, way.address.port, way.brokerOptions());
    const qint64 first = fSsh->lastProcess();
    QVERIFY(!hasEnded(first));
    broker.reset();
    TRY_VERIFY(hasEnded(first));
    broker = ZoBroker::create("test", way.address.host, way.address.port, way.brokerOptions());
    const qint64 second = fSsh->lastProcess();
    way.relay.reset();
    TRY_VERIFY(hasEnded(second));
    TRY_VERIFY(!broker->isConnected());
}

void TestSshRelay::anSshThatDoesNotNoticeThatIsEnded()
{
    fSsh->act("exec sleep 1000");
    const ConnectionSettings way = settings(1);
    auto broker = ZoBroker::begin("test", way.address.host, way.address.port, way.brokerOptions());
    TRY_COMPARE(fSsh->starts().size(), 1);
    broker.reset();
    TRY_VERIFY(hasEnded(fSsh->lastProcess()));
}

void TestSshRelay::aLinkComesBackBySshWithoutQuestions()
{
    RedisServer robot;
    ConnectionSettings way = settings(robot.port());
    way.relay = std::make_shared<SshRelay>("gate", way.address); // nobody is there to answer
    const auto broker =
        ZoBroker::create("test", way.address.host, way.address.port, way.brokerOptions());
    robot.kill();
    TRY_VERIFY(!broker->isConnected());
    robot.restart();
    TRY_VERIFY(broker->isConnected());
    QVERIFY(fSsh->starts().size() >= 2);
    for (const QString& words : fSsh->starts())
        QVERIFY2(words.contains("asks= ") && words.contains("BatchMode=yes"), qPrintable(words));
}

void TestSshRelay::aFailureEndsTheQuestions()
{
    fSsh->act("exit 255");
    const ConnectionSettings way = settings(1);
    const auto broker =
        ZoBroker::begin("test", way.address.host, way.address.port, way.brokerOptions());
    TRY_VERIFY(fSsh->starts().size() >= 3);
    QVERIFY(!fSsh->starts()[0].contains("BatchMode"));
    for (const QString& words : fSsh->starts().mid(1))
        QVERIFY2(words.contains("asks= ") && words.contains("BatchMode=yes"), qPrintable(words));
    way.relay->allowQuestions();
    const auto asking = [this] {
        const QStringList starts = fSsh->starts();
        return std::count_if(starts.begin(), starts.end(),
                             [](const QString& words) { return !words.contains("BatchMode"); });
    };
    TRY_COMPARE(asking(), 2);
}

void TestSshRelay::aLostConnectionEndsTheQuestions()
{
    RedisServer robot;
    const ConnectionSettings way = settings(robot.port());
    const auto broker =
        ZoBroker::create("test", way.address.host, way.address.port, way.brokerOptions());
    robot.kill();
    TRY_VERIFY(fSsh->starts().size() >= 2);
    QVERIFY(!fSsh->starts()[0].contains("BatchMode"));
    QVERIFY2(fSsh->starts()[1].contains("BatchMode=yes"), qPrintable(fSsh->starts()[1]));
}

void TestSshRelay::whatSshHasStartedEndsWithIt()
{
    fSsh->act("sleep 1000 & echo \"$! is its question\" >>\"$folder/log\"; wait");
    const ConnectionSettings way = settings(1);
    auto broker = ZoBroker::begin("test", way.address.host, way.address.port, way.brokerOptions());
    TRY_COMPARE(fSsh->starts().size(), 2);
    QVERIFY(!hasEnded(fSsh->lastProcess()));
    broker.reset();
    TRY_VERIFY(hasEnded(fSsh->lastProcess()));
}

void TestSshRelay::theEndOfALongTextIsTold()
{
    fSsh->act("i=0; while [ $i -lt 1000 ]; do echo \"Welcome $i\" >&2; i=$((i+1)); done; "
              "echo 'Permission denied' >&2; exit 255");
    QString problem = failureOf(settings(1));
    QVERIFY2(problem.endsWith("\nWelcome 999\nPermission denied"), qPrintable(problem));
    QVERIFY2(problem.contains("ssh says:\nWelcome "), qPrintable(problem)); // a whole line
    QVERIFY(problem.size() < 3000);
    fSsh->act("head -c 5000 /dev/zero | tr '\\0' x >&2; echo 'y' >&2; exit 255"); // no line at all
    problem = failureOf(settings(1));
    QVERIFY2(problem.endsWith("xxy") && problem.size() < 3000, qPrintable(problem));
}

void TestSshRelay::nobodyElseReachesTheSocket()
{
    const ConnectionSettings way = settings(1);
    const QFileInfo folder(QFileInfo(QString::fromStdString(way.relay->path())).path());
    QCOMPARE(folder.permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                     QFile::ReadOther | QFile::WriteOther | QFile::ExeOther),
             QFile::Permissions());
}

void TestSshRelay::manyTalkAtOnce()
{
    const RedisServer robot;
    const ConnectionSettings way = settings(robot.port());
    std::vector<boost::shared_ptr<ZoBroker>> brokers;
    for (int i = 0; i < 8; ++i) {
        ZoBrokerOptions options = way.brokerOptions();
        options.pingInterval += std::chrono::milliseconds(i); // a link of its own for each
        brokers.push_back(ZoBroker::create("test", way.address.host, way.address.port, options));
    }
    QCOMPARE(robot.clients(), 8);
    QCOMPARE(fSsh->starts().size(), 8);
    brokers.resize(3);
    TRY_COMPARE(robot.clients(), 3);
}

void TestSshRelay::refusesWhatIsNoHost_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text :
         {"", "-oProxyCommand=touch x", "me@-x", "ssh://-x", "ssh://me@-x", "[-x]", "ssh://[-x]:22",
          "a b", "`id`", "$(id)", "a;b", "a\nb", "\xc3\xa9"})
        QTest::newRow(text) << QString(text);
    QTest::newRow("long") << QString(256, 'x');
}

void TestSshRelay::refusesWhatIsNoHost()
{
    QFETCH(QString, text);
    const std::string problem = errorOf([&] { checkJumpHost(text.toStdString()); });
    QVERIFY2(contains(problem, "USER@HOST"), problem.c_str());
    for (const char* good : {"gate", "pilot@gate-3.lab", "ssh://me@[fe80::1%eth0]:22"})
        checkJumpHost(good);
}

REGISTER_TEST(TestSshRelay, QCoreApplication)
#include "tst_ssh_relay.moc"
