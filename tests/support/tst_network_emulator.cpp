// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/network_emulator.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/watched_thread.h"

#include <QtTest>

#include <arpa/inet.h>
#include <future>
#include <poll.h>
#include <string>
#include <sys/socket.h>

using std::chrono::milliseconds;

/// The network that tests and benchmarks put between a client and a server.
class TestNetworkEmulator : public GuardedTest
{
    Q_OBJECT

private slots:
    void bytesArriveAsTheyWereSent();
    void bytesTakeTheirTime();
    void theRateIsNotExceeded();
    void nothingPassesWhileItIsStopped();
    void aFullQueueHoldsTheSender();
    void aCutClosesBothEnds();
    void theEndComesBehindAllBytes();
    void aMissingServerHangsUp();
    void carriesManyConnections();
};

namespace {

using Clock = std::chrono::steady_clock;

/// A client of the emulated network.
class Client
{
public:
    explicit Client(const NetworkEmulator& network)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(network.port()));
        if (::connect(fSocket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("cannot connect to the emulated network");
    }

    void end() const { ::shutdown(fSocket.get(), SHUT_WR); }

    /// Sends until nobody takes more for a while; returns how many bytes that were.
    std::size_t sendWhileTaken(std::string_view all) const
    {
        std::size_t sent = 0;
        pollfd socket{fSocket.get(), POLLOUT, 0};
        while (sent < all.size() && ::poll(&socket, 1, 200) > 0) {
            const ssize_t some = ::send(fSocket.get(), all.data() + sent, all.size() - sent,
                                        MSG_NOSIGNAL | MSG_DONTWAIT);
            sent += some > 0 ? static_cast<std::size_t>(some) : 0;
        }
        return sent;
    }

    bool isAtEnd()
    {
        try {
            bytes.readBytes(1);
        } catch (const FakeConnection::Closed&) {
            return true;
        }
        return false;
    }

private:
    const kit::Descriptor fSocket{::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};

public:
    FakeConnection bytes{fSocket.get(), 0};
};

std::string manyBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 31 + i / 256);
    return bytes;
}

/// Sends everything back, in pieces.
void echo(FakeConnection& connection)
{
    while (true)
        connection.send(connection.readBytes(1000));
}

} // namespace

void TestNetworkEmulator::bytesArriveAsTheyWereSent()
{
    const FakeRobot server(echo);
    NetworkWay way;
    way.jitter = milliseconds(2);
    way.rate = 400000000;
    const NetworkEmulator network(server.port(), way);
    const std::string sent = manyBytes(1000000);
    Client client(network);
    WatchedThread sender([&] { client.bytes.send(sent); });
    QVERIFY(client.bytes.readBytes(sent.size()) == sent);
    sender.join();
    QCOMPARE(network.bytesUp(), std::uint64_t(1000000));
    QCOMPARE(network.bytesDown(), std::uint64_t(1000000));
}

void TestNetworkEmulator::bytesTakeTheirTime()
{
    const FakeRobot server(echo);
    NetworkWay up;
    up.delay = milliseconds(20);
    NetworkWay down;
    down.delay = milliseconds(30);
    const NetworkEmulator network(server.port(), up, down);
    Client client(network);
    for (int i = 0; i < 3; ++i) {
        const auto before = Clock::now();
        client.bytes.send(manyBytes(1000));
        client.bytes.readBytes(1000);
        QVERIFY(Clock::now() - before >= milliseconds(50));
    }
}

void TestNetworkEmulator::theRateIsNotExceeded()
{
    const FakeRobot server(echo);
    NetworkWay up;
    up.rate = 8000000;
    const NetworkEmulator network(server.port(), up, NetworkWay());
    Client client(network);
    const auto before = Clock::now();
    client.bytes.send(manyBytes(100000));
    client.bytes.readBytes(100000);
    QVERIFY(Clock::now() - before >= milliseconds(100));
}

void TestNetworkEmulator::nothingPassesWhileItIsStopped()
{
    const FakeRobot server([](FakeConnection& connection) {
        connection.send("a");
        connection.send(connection.readBytes(1));
        connection.waitForEnd();
    });
    NetworkWay stopped;
    stopped.isStopped = true;
    NetworkWay slow;
    slow.delay = milliseconds(50);
    NetworkEmulator network(server.port(), stopped, slow);
    Client client(network);
    client.bytes.send("b");
    QCOMPARE(client.bytes.readBytes(1), std::string("a")); // time enough for the other way
    QCOMPARE(network.bytesUp(), std::uint64_t(0));
    network.change(NetworkWay(), NetworkWay());
    QCOMPARE(client.bytes.readBytes(1), std::string("b"));
}

void TestNetworkEmulator::aFullQueueHoldsTheSender()
{
    const FakeRobot server(echo);
    NetworkWay stopped;
    stopped.isStopped = true;
    NetworkEmulator network(server.port(), stopped);
    Client client(network);
    const std::string sent = manyBytes(16000000);
    const std::size_t taken = client.sendWhileTaken(sent);
    QVERIFY(taken < sent.size());
    network.change(NetworkWay(), NetworkWay());
    WatchedThread sender([&] { client.bytes.send(std::string_view(sent).substr(taken)); });
    QVERIFY(client.bytes.readBytes(sent.size()) == sent);
    sender.join();
}

void TestNetworkEmulator::aCutClosesBothEnds()
{
    std::promise<void> isCut;
    const FakeRobot server([&](FakeConnection& connection) {
        try {
            connection.send("a");
            connection.waitForEnd();
        } catch (const FakeConnection::Closed&) {
            isCut.set_value();
            throw;
        }
    });
    NetworkEmulator network(server.port(), NetworkWay());
    Client client(network);
    client.bytes.readBytes(1);
    network.cut();
    QVERIFY(client.isAtEnd());
    auto cut = isCut.get_future();
    QVERIFY(isReady(cut));
}

void TestNetworkEmulator::theEndComesBehindAllBytes()
{
    const FakeRobot server([](FakeConnection& connection) {
        connection.send(connection.readBytes(100000)); // and hangs up
    });
    NetworkWay way;
    way.delay = milliseconds(5);
    way.rate = 80000000;
    const NetworkEmulator network(server.port(), way);
    Client client(network);
    const std::string sent = manyBytes(100000);
    WatchedThread sender([&] {
        client.bytes.send(sent);
        client.end();
    });
    QVERIFY(client.bytes.readBytes(sent.size()) == sent);
    QVERIFY(client.isAtEnd());
    sender.join();
}

void TestNetworkEmulator::aMissingServerHangsUp()
{
    const DeafPort nobody;
    const NetworkEmulator network(nobody.port(), NetworkWay());
    QVERIFY(Client(network).isAtEnd());
    QVERIFY(Client(network).isAtEnd());
}

void TestNetworkEmulator::carriesManyConnections()
{
    const RedisServer server;
    server.command({"SET", "Arm/Angle", "1"});
    NetworkWay way;
    way.delay = milliseconds(1);
    const NetworkEmulator network(server.port(), way);
    for (int i = 0; i < 3; ++i) {
        std::vector<boost::shared_ptr<ZoBroker>> brokers;
        ZoBrokerOptions options = patientOptions();
        for (int j = 0; j < 3; ++j) {
            options.connectTimeout += milliseconds(1); // with the same ones they would share a link
            brokers.push_back(linkTo(network.port(), options));
        }
        for (const auto& broker : brokers)
            QVERIFY(memoryOf(broker).getListData(requestFor({"Arm/Angle"}))[0] == ZoValue(1));
        QCOMPARE(server.clients(), 3);
        brokers.clear();
        TRY_COMPARE(server.clients(), 0);
    }
}

REGISTER_TEST(TestNetworkEmulator, NoApplication)
#include "tst_network_emulator.moc"
