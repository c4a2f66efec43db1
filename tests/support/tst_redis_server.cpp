// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <QtTest>

#include <csignal>

/// The private server that the other tests stand on.
class TestRedisServer : public GuardedTest
{
    Q_OBJECT

private slots:
    void answersAsSoonAsItIsMade();
    void isGoneWithItsObject();
    void comesBackEmptyOnTheSamePort();
    void knowsItsUsers();
    void makesCertificatesForTls();
};

void TestRedisServer::answersAsSoonAsItIsMade()
{
    const RedisServer server;
    QCOMPARE(server.command({"SET", "Arm/Angle", "0.5"}), std::string("OK"));
    QCOMPARE(server.command({"GET", "Arm/Angle"}), std::string("0.5"));
}

void TestRedisServer::isGoneWithItsObject()
{
    pid_t pid = 0;
    {
        const RedisServer server;
        pid = server.pid();
        QCOMPARE(::kill(pid, 0), 0);
    }
    QCOMPARE(::kill(pid, 0), -1);
}

void TestRedisServer::comesBackEmptyOnTheSamePort()
{
    RedisServer server;
    const int port = server.port();
    server.command({"SET", "a", "1"});
    server.restart();
    QCOMPARE(server.port(), port);
    QCOMPARE(server.command({"DBSIZE"}), std::string("0"));
}

void TestRedisServer::knowsItsUsers()
{
    RedisServer::Options options;
    options.users = {"reader on >look ~Arm/* +@read"};
    const RedisServer server(options);
    QVERIFY(server.command({"ACL", "DRYRUN", "reader", "GET", "Arm/Angle"}) == "OK");
    QVERIFY(server.command({"ACL", "DRYRUN", "reader", "GET", "Leg/Angle"}) != "OK");
}

void TestRedisServer::makesCertificatesForTls()
{
    RedisServer::Options options;
    options.tls = true;
    const RedisServer server(options);
    QVERIFY(QFile::exists(QString::fromStdString(server.caFile())));
    QVERIFY(QFile::exists(QString::fromStdString(server.clientKeyFile())));
    QCOMPARE(server.command({"PING"}), std::string("PONG"));
}

REGISTER_TEST(TestRedisServer, NoApplication)
#include "tst_redis_server.moc"
