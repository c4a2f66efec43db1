// SPDX-License-Identifier: MIT
#include "private_server.h"
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"

#include <QFile>
#include <QtTest>

#include <csignal>
#include <deque>
#include <fcntl.h>
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

std::string problemWith(int port, const std::function<int()>& findPort)
{
    try {
        const PrivateServer server(port, findPort);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

} // namespace

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
    void aCtrlCIsNotForIt();
    void itDoesNotReadTheTerminal();
    void signalsThatItsMakerBlocksReachIt();
};

void TestPrivateServer::aPortThatWasTakenMeanwhileIsNoMatter()
{
    const DeafPort taken;
    const int free = PrivateServer::freePort();
    Ports ports({taken.port(), taken.port(), taken.port(), taken.port(), free});
    PrivateServer server(0, ports.finder());
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
    const int free = PrivateServer::freePort();
    Ports ports({other.port(), closing.port(), talking.port(), free});
    PrivateServer server(0, ports.finder());
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
    Ports ports({PrivateServer::freePort()});
    const std::string problem = problemWith(taken.port(), ports.finder());
    const std::string address = "127.0.0.1:" + std::to_string(taken.port());
    QVERIFY2(problem.find("cannot listen on " + address) != std::string::npos, problem.c_str());
    QCOMPARE(ports.left(), std::size_t{1});
}

void TestPrivateServer::itEndsWithItsObject()
{
    int port = 0;
    {
        const PrivateServer server(0);
        port = server.address().port;
        QVERIFY(port > 0);
        QVERIFY(!problemWith(port, PrivateServer::freePort).empty());
    }
    QCOMPARE(problemWith(port, PrivateServer::freePort), std::string());
}

void TestPrivateServer::otherAddressesOfTheMachineDoNotReachIt()
{
    const PrivateServer server(0);
    const auto problemAt = [&server](const std::string& host) {
        return errorOf(
            [&] { ZoBroker::create("test", host, server.address().port, patientOptions()); });
    };
    QCOMPARE(problemAt("127.0.0.1"), std::string());
    const std::string problem = problemAt("127.0.0.2");
    QVERIFY2(contains(problem, "refused"), problem.c_str());
}

void TestPrivateServer::aCtrlCIsNotForIt()
{
    const PrivateServer server(0);
    QCOMPARE(::getpgid(server.pid()), server.pid());
    QVERIFY(::getpgid(0) != server.pid());
}

void TestPrivateServer::itDoesNotReadTheTerminal()
{
    const int before = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
    const int another = ::open("/dev/zero", O_RDONLY | O_CLOEXEC);
    ::dup2(another, STDIN_FILENO);
    ::close(another);
    const PrivateServer server(0);
    ::dup2(before, STDIN_FILENO);
    ::close(before);
    const QString input = QString("/proc/%1/fd/0").arg(server.pid());
    QCOMPARE(QFile::symLinkTarget(input), QString("/dev/null"));
}

void TestPrivateServer::signalsThatItsMakerBlocksReachIt()
{
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    PrivateServer server(0);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::kill(server.pid(), SIGTERM);
    QTRY_VERIFY_WITH_TIMEOUT(!server.isRunning(), patience);
}

REGISTER_TEST(TestPrivateServer, QCoreApplication)
#include "tst_private_server.moc"
