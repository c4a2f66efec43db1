// SPDX-License-Identifier: MIT
#include "session.h"
#include "support/files.h"
#include "support/following.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/patience.h"
#include "support/redis_cluster.h"
#include "support/register_test.h"
#include "support/zo_program.h"

#include <tarvek/tarvek_widget.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <memory>
#include <thread>

namespace {

/// A robot that counts: at each of its ticks it writes the same number under both of its keys, in
/// one command. A number that fails to arrive is never written again.
class CountingRobot
{
public:
    static constexpr std::chrono::milliseconds fTick{10};

    CountingRobot(const ZoAddress& address, const ZoBrokerOptions& options)
        : fMemory(
              memoryOf(ZoBroker::create("counting robot", address.host, address.port, options))),
          fThread([this] { run(); })
    {
    }
    ~CountingRobot()
    {
        fShallEnd = true;
        fThread.join();
    }
    CountingRobot(const CountingRobot&) = delete;
    CountingRobot& operator=(const CountingRobot&) = delete;

    int tried() const { return fTried; }
    int written() const { return fWritten; }

private:
    void run()
    {
        while (!fShallEnd) {
            const int number = ++fTried;
            try {
                fMemory.setListData(ZoValue::fromElements(
                    {ZoValue::fromElements({"A", number}), ZoValue::fromElements({"B", number})}));
                fWritten = number;
            } catch (const ZoError&) {
                // As its panel, it goes on when its node has another one in its place.
            }
            // The pace of a robot, which writes whether or not anybody reads.
            std::this_thread::sleep_for(fTick);
        }
    }

    ZoMemoryProxy fMemory;
    std::atomic<bool> fShallEnd{false};
    std::atomic<int> fTried{0};
    std::atomic<int> fWritten{0};
    std::thread fThread;
};

} // namespace

/// A panel and a recorder of a robot whose keys are on a cluster, whatever happens to that.
class TestClusterPanel : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void panelsAndRecordersGoOnWhereTheKeysAre();

private:
    struct Robot
    {
        QString prefix;
        int slot;
    };
    Robot robotAt(int node) const;
    ZoBrokerOptions optionsFor(const QString& prefix) const;
    QString addresses() const;
    void openPanel(const QString& prefix);
    int shown(const char* key) const { return rowOf(fPanel, key)->text(4).toInt(); }
    void look();
    bool isNewerThan(int number) const { return shown("A") > number; }
    qint64 timeUntilNewValues();
    void letTicksPass() const;
    void move(const Robot& robot, int to) const;
    void checkRows(const QByteArray& table, int before) const;

    std::unique_ptr<RedisCluster> fCluster;
    std::unique_ptr<Session> fSession;
    QTemporaryDir fFolder;
    QPointer<TarvekWidget> fPanel;
    std::unique_ptr<CountingRobot> fRobot;
    QStringList fInvented; ///< what the panel has shown and the robot never wrote
};

void TestClusterPanel::init()
{
    fCluster = std::make_unique<RedisCluster>();
    fSession = std::make_unique<Session>();
}

void TestClusterPanel::cleanup()
{
    fRobot.reset();
    fSession.reset();
    fCluster.reset();
    GuardedTest::cleanup();
}

/// One whose keys are on that node.
TestClusterPanel::Robot TestClusterPanel::robotAt(int node) const
{
    for (int number = 1;; ++number) {
        const QString prefix = QString("{robot%1}/").arg(number);
        const int slot =
            std::stoi(fCluster->node(0).command({"CLUSTER", "KEYSLOT", prefix.toStdString()}));
        if (fCluster->ownerOf(slot) == node)
            return {prefix, slot};
    }
}

/// They know all nodes but the first master's replica.
ZoBrokerOptions TestClusterPanel::optionsFor(const QString& prefix) const
{
    ZoBrokerOptions options = following();
    options.prefix = prefix.toStdString();
    options.furtherAddresses = {fCluster->address(1), fCluster->address(2)};
    return options;
}

QString TestClusterPanel::addresses() const
{
    QStringList texts;
    for (int node = 0; node < RedisCluster::fMasters; ++node)
        texts += QString::fromStdString(fCluster->address(node).toText());
    return texts.join(',');
}

void TestClusterPanel::openPanel(const QString& prefix)
{
    MainWindow* window = fSession->connectTo(QString::fromStdString(fCluster->address(0).toText()),
                                             {}, optionsFor(prefix));
    QVERIFY(window);
    fPanel = fSession->open(window, Session::fAllKeys);
    QVERIFY(fPanel);
    clickBox(fPanel, "A", 1); // watch
    clickBox(fPanel, "B", 1);
}

void TestClusterPanel::look()
{
    const int a = shown("A");
    const int b = shown("B");
    if (a != b || a < 1 || a > fRobot->tried())
        fInvented += QString("%1 and %2").arg(a).arg(b);
}

/// Until what was written from now on is shown; in ms.
qint64 TestClusterPanel::timeUntilNewValues()
{
    QElapsedTimer clock;
    clock.start();
    const int before = fRobot->tried();
    return QTest::qWaitFor([&] { return isNewerThan(before); }, patience) ? clock.elapsed() : -1;
}

/// Time for panel and recorder to look.
void TestClusterPanel::letTicksPass() const
{
    const int enough = fRobot->tried() + 10;
    QVERIFY(QTest::qWaitFor([&] { return fRobot->tried() > enough; }, patience));
}

void TestClusterPanel::move(const Robot& robot, int to) const
{
    fCluster->beginToMove(robot.slot, to);
    for (const QString key : {"A", "B"}) {
        fCluster->moveKey(robot.slot, (robot.prefix + key).toStdString(), to);
        letTicksPass(); // a part of the keys is here, and a part there
    }
    fCluster->endMove(robot.slot, to);
}

/// Of each row both cells are the same number, which the robot has written, or empty; and there
/// are rows from before and from after.
void TestClusterPanel::checkRows(const QByteArray& table, int before) const
{
    QList<QByteArray> rows = table.trimmed().split('\n');
    QCOMPARE(rows.takeFirst().trimmed(), QByteArray("time,A,B"));
    int first = 0;
    int last = 0;
    for (const QByteArray& row : rows) {
        const QList<QByteArray> cells = row.trimmed().split(',');
        QCOMPARE(cells.size(), 3);
        QCOMPARE(cells[1], cells[2]);
        last = cells[1].isEmpty() ? last : cells[1].toInt();
        QVERIFY2(cells[1].isEmpty() || (last >= 1 && last <= fRobot->tried()), row);
        first = first == 0 ? last : first;
    }
    QVERIFY(first > 0 && first < before);
    QVERIFY(last > before);
}

void TestClusterPanel::panelsAndRecordersGoOnWhereTheKeysAre()
{
    const int owner = 1;
    const int replica = owner + RedisCluster::fMasters;
    const Robot robot = robotAt(owner);
    fRobot = std::make_unique<CountingRobot>(fCluster->address(0), optionsFor(robot.prefix));
    TRY_VERIFY(fRobot->written() > 0);
    openPanel(robot.prefix);
    QVERIFY(timeUntilNewValues() >= 0); // of both keys together
    QTimer looks;
    connect(&looks, &QTimer::timeout, this, &TestClusterPanel::look);
    looks.start(10);
    const QSignalSpy disconnections(fPanel, &TarvekWidget::disconnected);
    const QString file = fFolder.filePath("cluster.csv");
    ZoProgram recorder({"--connect", addresses(), "--prefix", robot.prefix, "record", "--period",
                        "20", "--output", file, "A", "B"});
    QVERIFY(recorder.waitUntil([&] { return bytesOf(file).count('\n') > 3; }));

    fCluster->node(owner).kill();
    const qint64 afterDeath = timeUntilNewValues();
    TRY_COMPARE(fCluster->ownerOf(robot.slot), replica);
    const int written = fRobot->tried();
    move(robot, 2);
    const qint64 afterMove = timeUntilNewValues();
    const int moved = fRobot->tried();
    QCOMPARE(fCluster->ownerOf(robot.slot), 2);
    QVERIFY(recorder.waitUntil([&] {
        const QList<QByteArray> cells = bytesOf(file).trimmed().split(',');
        return cells.last().toInt() > moved;
    }));
    recorder.signal(SIGINT);
    QCOMPARE(recorder.waitForExit(), 0);
    looks.stop();

    QVERIFY(afterDeath >= 0 && afterMove >= 0);
    qInfo("new values %lld ms after the death of the node, %lld ms after the move", afterDeath,
          afterMove);
    QCOMPARE(fInvented, QStringList());
    QCOMPARE(disconnections.size(), 0);
    QVERIFY(fPanel);
    checkRows(bytesOf(file), written);
}

REGISTER_TEST(TestClusterPanel, QApplication)
#include "tst_cluster_panel.moc"
