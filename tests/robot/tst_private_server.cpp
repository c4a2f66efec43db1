// SPDX-License-Identifier: MIT
#include "private_server.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <deque>
#include <stdexcept>
#include <unistd.h>

namespace {

/// Finds the ports that it was given, one after the other.
class Ports
{
public:
    explicit Ports(const std::deque<int>& ports) : fPorts(ports) {}

    std::function<int()> finder()
    {
        return [this] {
            const int port = fPorts.front();
            fPorts.pop_front();
            return port;
        };
    }
    std::size_t left() const { return fPorts.size(); }

private:
    std::deque<int> fPorts;
};

std::string problemWith(int port, const std::function<int()>& findPort,
                        const std::string& readersPassword = {})
{
    try {
        const PrivateServer server(port, readersPassword, findPort);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

ZoMemoryProxy memoryOf(const PrivateServer& server, const std::string& user = {},
                       const std::string& password = {})
{
    ZoBrokerOptions options = patientOptions();
    options.user = user;
    options.password = password;
    const auto broker = ZoBroker::create("test", "127.0.0.1", server.address().port, options);
    return ZoMemoryProxy(broker->getProxy("ZoMemory", 0));
}

} // namespace

Q_DECLARE_METATYPE(std::string)

/// The server that the simulated robot brings along.
class TestPrivateServer : public GuardedTest
{
    Q_OBJECT

private slots:
    void aPortThatWasTakenMeanwhileIsNoMatter();
    void whoeverListensOnATakenPortIsNotTakenForIt();
    void itGivesUpWhenEveryPortIsTaken();
    void aGivenPortIsNotReplaced();
    void itEndsWithItsObject();
    void otherAddressesOfTheMachineDoNotReachIt();
    void itsOwnerMayWriteAndOthersMayRead();
    void othersMayNotRuleIt_data();
    void othersMayNotRuleIt();
    void aReadersPasswordKeepsStrangersOut_data();
    void aReadersPasswordKeepsStrangersOut();
    void readersMayWriteTheirKeyAlone();
    void noPasswordStandsInTheListOfProcesses();
    void noPasswordStandsInWhatARefusingServerSays();
    void itIsFoundHoweverDeepItsFolderIs();
};

void TestPrivateServer::aPortThatWasTakenMeanwhileIsNoMatter()
{
    const DeafPort taken;
    const int free = kit::freeLoopbackPort();
    Ports ports({taken.port(), taken.port(), taken.port(), taken.port(), free});
    PrivateServer server(0, {}, ports.finder());
    QCOMPARE(server.address().toText(), "127.0.0.1:" + std::to_string(free));
    QVERIFY(server.isRunning());
}

void TestPrivateServer::whoeverListensOnATakenPortIsNotTakenForIt()
{
    const RedisServer other;
    const FakeRobot closing([](FakeConnection&) {});
    const FakeRobot talking([](FakeConnection& connection) {
        while (true)
            connection.send(std::string(10000, 'x'));
    });
    const FakeRobot lying([](FakeConnection& connection) {
        std::string ids;
        for (int pid = ::getpid(); pid < ::getpid() + 2000; ++pid)
            ids += "process_id:" + std::to_string(pid) + "\r\n";
        connection.send(ids);
        while (true)
            connection.send("+OK\r\n");
    });
    const int free = kit::freeLoopbackPort();
    Ports ports({other.port(), closing.port(), talking.port(), lying.port(), free});
    PrivateServer server(0, {}, ports.finder());
    QCOMPARE(server.address().port, free);
    QVERIFY(server.isRunning());
}

void TestPrivateServer::itGivesUpWhenEveryPortIsTaken()
{
    const DeafPort taken;
    Ports ports(std::deque<int>(100, taken.port()));
    const std::string problem = problemWith(0, ports.finder());
    const std::string address = "127.0.0.1:" + std::to_string(taken.port());
    QVERIFY2(problem.find("cannot listen on " + address) != std::string::npos, problem.c_str());
    QCOMPARE(ports.left(), std::size_t{100 - PrivateServer::fFreePortAttempts});
}

void TestPrivateServer::aGivenPortIsNotReplaced()
{
    const DeafPort taken;
    Ports ports({kit::freeLoopbackPort()});
    const std::string problem = problemWith(taken.port(), ports.finder());
    const std::string address = "127.0.0.1:" + std::to_string(taken.port());
    QVERIFY2(problem.find("cannot listen on " + address) != std::string::npos, problem.c_str());
    QCOMPARE(ports.left(), std::size_t{1});
}

void TestPrivateServer::itEndsWithItsObject()
{
    int port = 0;
    {
        const PrivateServer server(0, {});
        port = server.address().port;
        QVERIFY(port > 0);
        QVERIFY(!problemWith(port, kit::freeLoopbackPort).empty());
    }
    QCOMPARE(problemWith(port, kit::freeLoopbackPort), std::string());
}

void TestPrivateServer::otherAddressesOfTheMachineDoNotReachIt()
{
    const PrivateServer server(0, {});
    const auto problemAt = [&server](const std::string& host) {
        return errorOf(
            [&] { ZoBroker::create("test", host, server.address().port, patientOptions()); });
    };
    QCOMPARE(problemAt("127.0.0.1"), std::string());
    const std::string problem = problemAt("127.0.0.2");
    QVERIFY2(contains(problem, "refused"), problem.c_str());
}

void TestPrivateServer::itsOwnerMayWriteAndOthersMayRead()
{
    const PrivateServer server(0, {});
    memoryOf(server, PrivateServer::fOwner, server.ownersPassword()).setData("Arm/Angle", 0.5);
    ZoMemoryProxy stranger = memoryOf(server);
    QCOMPARE(stranger.getDataListName(), std::vector<std::string>{"Arm/Angle"});
    QVERIFY(stranger.getListData(requestFor({"Arm/Angle"}))[0] == ZoValue(0.5));
    const std::string problem = errorOf([&] { stranger.setData("Arm/Angle", 1); });
    QVERIFY2(contains(problem, "NOPERM"), problem.c_str());
    QVERIFY(stranger.getListData(requestFor({"Arm/Angle"}))[0] == ZoValue(0.5));
    const std::string refused = errorOf([&] { memoryOf(server, PrivateServer::fOwner, "guess"); });
    QVERIFY2(contains(refused, "WRONGPASS"), refused.c_str());
}

void TestPrivateServer::othersMayNotRuleIt_data()
{
    QTest::addColumn<QStringList>("command");
    for (const char* command :
         {"SET a 1", "FLUSHALL", "SHUTDOWN NOSAVE", "CONFIG SET dir /", "CONFIG GET *", "SAVE",
          "ACL LIST", "CLIENT LIST", "CLIENT KILL TYPE normal", "EVAL return 0",
          "REPLICAOF 127.0.0.1 1", "MODULE LIST", "PUBLISH a b"})
        QTest::newRow(command) << QString(command).split(' ');
}

void TestPrivateServer::othersMayNotRuleIt()
{
    QFETCH(QStringList, command);
    const PrivateServer server(0, {});
    QProcess client;
    client.start("redis-cli", QStringList{"-p", QString::number(server.address().port)} + command);
    QVERIFY(client.waitForFinished());
    const QByteArray answer = client.readAllStandardOutput();
    QVERIFY2(answer.startsWith("NOPERM "), answer.constData());
}

void TestPrivateServer::aReadersPasswordKeepsStrangersOut_data()
{
    QTest::addColumn<std::string>("password");
    QTest::newRow("word") << std::string("look-only");
    QTest::newRow("blanks and quotes") << std::string(" a \"b\" 'c' ");
    QTest::newRow("marks of the access list") << std::string(">x #y \\x00 nopass");
    QTest::newRow("UTF-8") << std::string("gr\u00fc\u00df");
    QTest::newRow("longest") << std::string(4096, 'x');
}

void TestPrivateServer::aReadersPasswordKeepsStrangersOut()
{
    QFETCH(std::string, password);
    const PrivateServer server(0, password);
    memoryOf(server, PrivateServer::fOwner, server.ownersPassword()).setData("a", 1);
    QCOMPARE(memoryOf(server, "", password).getDataListName(), std::vector<std::string>{"a"});
    const std::string without = errorOf([&] { memoryOf(server); });
    QVERIFY2(contains(without, "NOAUTH"), without.c_str());
    const std::string wrong = errorOf([&] { memoryOf(server, "", password + "x"); });
    QVERIFY2(contains(wrong, "WRONGPASS"), wrong.c_str());
}

void TestPrivateServer::readersMayWriteTheirKeyAlone()
{
    const PrivateServer server(0, "look-only", kit::freeLoopbackPort, "Replay/Control");
    ZoMemoryProxy memory = memoryOf(server, "", "look-only");
    memory.setData("Replay/Control", "pause");
    const ZoValue read = memory.getListData(requestFor({"Replay/Control"}));
    QVERIFY(read == ZoValue::fromElements({"pause"}));
    for (const char* other : {"Replay/State", "Replay/Control2", "a"}) {
        const std::string refusal = errorOf([&] { memory.setData(other, 1); });
        QVERIFY2(contains(refusal, "NOPERM"), refusal.c_str());
    }
    const PrivateServer odd(0, "look-only", kit::freeLoopbackPort, "r\"*'[7]#\\/Replay/Control");
    ZoMemoryProxy behind = memoryOf(odd, "", "look-only");
    behind.setData("r\"*'[7]#\\/Replay/Control", "pause");
    for (const char* other : {"r\"*'7#\\/Replay/Control", "r\"**'[7]#\\/Replay/Control"}) {
        const std::string refusal = errorOf([&] { behind.setData(other, 1); });
        QVERIFY2(contains(refusal, "NOPERM"), refusal.c_str());
    }
    const PrivateServer none(0, "look-only");
    const std::string refusal =
        errorOf([&] { memoryOf(none, "", "look-only").setData("Replay/Control", "pause"); });
    QVERIFY2(contains(refusal, "NOPERM"), refusal.c_str());
}

void TestPrivateServer::noPasswordStandsInTheListOfProcesses()
{
    const PrivateServer server(0, "look-only");
    for (const QString name : {"cmdline", "environ"}) {
        QFile file(QString("/proc/%1/%2").arg(server.pid()).arg(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray words = file.readAll();
        QVERIFY(!words.contains("look-only"));
        QVERIFY(!words.contains(server.ownersPassword().c_str()));
    }
    const PrivateServer other(0, {});
    QVERIFY(server.ownersPassword().size() >= 32);
    QVERIFY(server.ownersPassword() != other.ownersPassword());
}

/// As by a server that does not know these rights: it quotes the line.
void TestPrivateServer::noPasswordStandsInWhatARefusingServerSays()
{
    const QTemporaryDir folder;
    QFile program(folder.filePath("redis-server"));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\n"
                  "echo 'Reading the configuration file, at line 1'\n"
                  "sed \"s/.*/>>> '&'/\" \"$1\"\n"
                  "sed \"s/.*\\(>[^ ]*\\).*/Error in user declaration '\\1'/\" \"$1\"\n"
                  "echo 'Bad directive'\n"
                  "exit 1\n");
    program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    program.close();
    const QByteArray before = qgetenv("PATH");
    qputenv("PATH", folder.path().toUtf8() + ':' + before);
    const std::string problem = problemWith(0, kit::freeLoopbackPort, "look-only");
    qputenv("PATH", before);
    QCOMPARE(problem, std::string("redis-server does not start: Reading the configuration file, "
                                  "at line 1\nBad directive\n"));
}

void TestPrivateServer::itIsFoundHoweverDeepItsFolderIs()
{
    const QTemporaryDir folder;
    const QString deep = folder.filePath(QString(200, 'x') + "/a \"b\" c");
    QVERIFY(QDir().mkpath(deep));
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", deep.toUtf8());
    PrivateServer server(0, {});
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    QVERIFY(server.isRunning());
    QVERIFY(QDir(deep).isEmpty());
}

REGISTER_TEST(TestPrivateServer, QCoreApplication)
#include "tst_private_server.moc"
