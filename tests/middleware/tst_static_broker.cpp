// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/program.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <QtTest>

namespace {

int pingsOf(const RedisServer& server)
{
    const QString statistics = QString::fromStdString(server.command({"INFO", "commandstats"}));
    return statistics.section("cmdstat_ping:calls=", 1).section(',', 0, 0).toInt();
}

/// Whether the links of `server` go on being watched.
bool seesPings(const RedisServer& server)
{
    const int before = pingsOf(server);
    return QTest::qWaitFor([&] { return pingsOf(server) >= before + 10; }, patience);
}

} // namespace

/// A broker outside all functions: its I/O thread is at work before main and after it, when what
/// functions keep for themselves is gone.
class TestStaticBroker : public GuardedTest
{
    Q_OBJECT

private slots:
    void worksBeforeMainAndAfterIt_data();
    void worksBeforeMainAndAfterIt();
};

void TestStaticBroker::worksBeforeMainAndAfterIt_data()
{
    QTest::addColumn<bool>("tls");
    QTest::newRow("plain") << false;
    QTest::newRow("encrypted") << true;
}

void TestStaticBroker::worksBeforeMainAndAfterIt()
{
    QFETCH(bool, tls);
    RedisServer::Options options;
    options.tls = tls;
    const RedisServer server(options);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ZO_PORT", QString::number(server.port()));
    if (tls)
        environment.insert("ZO_CA", QString::fromStdString(server.caFile()));
    // What was freed does not look as it did: who still reads it does not get by with luck.
    environment.insert("GLIBC_TUNABLES", "glibc.malloc.perturb=165:glibc.malloc.tcache_count=0");
    Program program(STATIC_BROKER, {});
    program.setProcessEnvironment(environment);
    program.start();

    for (const QByteArray place : {"in main", "after main"}) {
        QVERIFY2(program.waitUntil([&] { return program.output().endsWith(place + '\n'); }),
                 qPrintable(program.errors()));
        QVERIFY2(seesPings(server), place.constData());
        program.write("\n");
    }
    QCOMPARE(program.waitForExit(), 0);
    QCOMPARE(program.output(), QByteArray("in main\nafter main\n[0.5,1]\nwithout the broker\n"));
    QCOMPARE(program.errors(), QString());
}

REGISTER_TEST(TestStaticBroker, QCoreApplication)
#include "tst_static_broker.moc"
