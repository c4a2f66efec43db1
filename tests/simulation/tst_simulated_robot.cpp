// SPDX-License-Identifier: MIT
#include "simulation/simulated_robot.h"
#include "support/guarded_test.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <kit/descriptor.h>

#include <wire/request.h>

#include <QtTest>

#include <algorithm>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

using namespace zo;

namespace {

using Command = std::vector<std::string_view>;

std::ptrdiff_t linesIn(const std::string& answer)
{
    return std::count(answer.begin(), answer.end(), '\n');
}

/// A connection to a real server on this machine.
class Client
{
public:
    explicit Client(int port) : fSocket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        fIsOpen =
            fSocket.get() >= 0 &&
            ::connect(fSocket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }

    /// What the server says to `bytes`: as many lines as `expected`, if it says so many in time.
    std::string ask(const std::string& bytes, const std::string& expected)
    {
        if (!fIsOpen || ::send(fSocket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
                            static_cast<ssize_t>(bytes.size()))
            return "cannot send";
        std::string answer;
        while (linesIn(answer) < linesIn(expected) && receive(answer)) {
        }
        return answer;
    }

    /// What else it says until it hangs up.
    std::string rest()
    {
        ::shutdown(fSocket.get(), SHUT_WR);
        std::string answer;
        while (receive(answer)) {
        }
        return answer;
    }

private:
    bool receive(std::string& answer) const
    {
        char block[4096];
        pollfd ready{fSocket.get(), POLLIN, 0};
        const ssize_t got =
            ::poll(&ready, 1, 10000) > 0 ? ::recv(fSocket.get(), block, sizeof block, 0) : 0;
        if (got > 0)
            answer.append(block, static_cast<std::size_t>(got));
        return got > 0;
    }

    kit::Descriptor fSocket;
    bool fIsOpen = false;
};

std::string encoded(const std::vector<Command>& commands)
{
    std::string bytes;
    for (const Command& command : commands)
        appendCommand(command, bytes);
    return bytes;
}

/// A connection to the simulated robot.
class SimulatedClient
{
public:
    explicit SimulatedClient(const SimulatedRobot::Rules& rules)
        : fRobot(fAgenda, fRandom, rules, 3)
    {
        fRobot.welcome(fSession);
    }

    std::string ask(std::string_view bytes)
    {
        fRobot.receive(fSession, bytes);
        return std::string(fSession.answers.arrive(fSession.answers.waiting()).bytes);
    }

private:
    const Agenda fAgenda;
    Random fRandom{1};
    SimulatedRobot fRobot;
    RobotSession fSession;
};

/// The releases of the server word a refusal for want of permission differently; its first word is
/// the same.
std::string withoutReasons(std::string answer)
{
    const std::string refusal = "-NOPERM";
    for (std::size_t at = 0; (at = answer.find(refusal, at)) != std::string::npos;) {
        at += refusal.size();
        answer.erase(at, answer.find('\r', at) - at);
    }
    return answer;
}

/// A server's answers to some commands that are sent together.
void compare(const RedisServer& server, const SimulatedRobot::Rules& rules,
             const std::vector<Command>& commands)
{
    const std::string bytes = encoded(commands);
    const std::string expected = SimulatedClient(rules).ask(bytes);
    QVERIFY(!expected.empty());
    SimulatedClient slow(rules);
    std::string slowly;
    for (const char byte : bytes)
        slowly += slow.ask({&byte, 1});
    QCOMPARE(slowly, expected);
    Client client(server.port());
    QCOMPARE(withoutReasons(client.ask(bytes, expected)), withoutReasons(expected));
    QCOMPARE(client.rest(), std::string());
}

/// And to each when the one before is answered: release 8.0 of the server says nothing to a wrong
/// password that comes behind another command.
void compareOneByOne(const RedisServer& server, const SimulatedRobot::Rules& rules,
                     const std::vector<Command>& commands)
{
    SimulatedClient simulated(rules);
    Client client(server.port());
    for (const Command& command : commands) {
        const std::string question = encoded({command});
        const std::string expected = simulated.ask(question);
        QVERIFY(!expected.empty());
        QCOMPARE(withoutReasons(client.ask(question, expected)), withoutReasons(expected));
    }
    QCOMPARE(client.rest(), std::string());
}

const std::string one = robotText(makeValueId(0, 1));
const std::string two = robotText(makeValueId(1, 2));
const std::string three = robotText(makeValueId(2, 3));
const std::string four = robotText(makeValueId(0, 4));

} // namespace

/// The simulated robot says to every command the very bytes that a real server says.
class TestSimulatedRobot : public GuardedTest
{
    Q_OBJECT

private slots:
    void valuesAreStoredAndRead();
    void commandsThatMakeNoSenseAreRefused();
    void namesAreListed();
    void keysMayBeBehindAPrefix();
    void nobodyNeedsToLogIn();
    void strangersAreTurnedAway();
    void friendsMayLogIn();
    void aCommandMayBeForbidden();
    void aKeyMayBeForbidden();
    void aFullServerTurnsAway();
};

void TestSimulatedRobot::valuesAreStoredAndRead()
{
    const RedisServer server;
    compare(server, {},
            {{"PING"},
             {"ping", "hello"},
             {"CLIENT", "SETNAME", "panel"},
             {"MGET", "Arm/Joint0", "Arm/Joint1"},
             {"SET", "Arm/Joint0", one},
             {"GET", "Arm/Joint0"},
             {"GET", "Arm/Joint2"},
             {"MSET", "Arm/Joint1", two, "Arm/Joint2", three, "Arm/Joint0", four},
             {"MGET", "Arm/Joint0", "Arm/Joint1", "Nowhere", "Arm/Joint0", "Arm/Joint2"}});
}

void TestSimulatedRobot::commandsThatMakeNoSenseAreRefused()
{
    const RedisServer server;
    compare(server, {},
            {{"FETCH"},
             {"Fetch", "Arm/Joint0", "twice"},
             {"MGET"},
             {"GET"},
             {"GET", "Arm/Joint0", "Arm/Joint1"},
             {"SET", "Arm/Joint0"},
             {"MSET", "Arm/Joint0"},
             {"MSET", "Arm/Joint0", one, "Arm/Joint1"},
             {"PING", "one", "two"},
             {"CLIENT", "SETNAME"},
             {"SCAN"},
             {"AUTH"},
             {"AUTH", "a", "b", "c"},
             {"PING"}});
}

void TestSimulatedRobot::namesAreListed()
{
    const RedisServer server;
    compare(server, {}, {{"SCAN", "0", "COUNT", "1000", "TYPE", "string"}});
    compare(server, {},
            {{"SET", "Arm/Joint1", two},
             {"SCAN", "0", "COUNT", "1000", "TYPE", "string"},
             {"SCAN", "0", "MATCH", "Arm/\\J?int*"},
             {"SCAN", "0", "MATCH", "Arm/\\?*"},
             {"SCAN", "0", "MATCH", "*oint"}});
}

void TestSimulatedRobot::keysMayBeBehindAPrefix()
{
    RedisServer::Options options;
    options.users = {"default on nopass ~*1 ~*2 &* +@all"};
    const RedisServer server(options);
    SimulatedRobot::Rules rules;
    rules.prefix = "r*7?/";
    rules.forbiddenKey = 0;
    compare(server, rules,
            {{"MSET", "r*7?/Arm/Joint1", two},
             {"MGET", "r*7?/Arm/Joint1", "r*7?/Arm/Joint2"},
             {"MGET", "r*7?/Arm/Joint0"},
             {"SCAN", "0", "COUNT", "1000", "MATCH", "r\\*7\\?/*", "TYPE", "string"}});
}

void TestSimulatedRobot::nobodyNeedsToLogIn()
{
    const RedisServer server;
    compareOneByOne(server, {},
                    {{"AUTH", "sesame"},
                     {"AUTH", "alice", "sesame"},
                     {"AUTH", "default", "anything"},
                     {"PING"}});
}

void TestSimulatedRobot::strangersAreTurnedAway()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    const RedisServer server(options);
    SimulatedRobot::Rules rules;
    rules.password = "sesame";
    compareOneByOne(server, rules,
                    {{"PING"},
                     {"CLIENT", "SETNAME", "panel"},
                     {"MGET", "Arm/Joint0"},
                     {"FETCH", "it"},
                     {"MGET"},
                     {"AUTH", "wrong"},
                     {"AUTH", "bob", "sesame"},
                     {"SCAN", "0"}});
}

void TestSimulatedRobot::friendsMayLogIn()
{
    RedisServer::Options options;
    options.defaultPassword = "sesame";
    options.users = {"alice on >sesame ~* &* +@all"};
    const RedisServer server(options);
    SimulatedRobot::Rules rules;
    rules.password = "sesame";
    rules.user = "alice";
    for (const Command& login : {Command{"AUTH", "sesame"}, Command{"AUTH", "alice", "sesame"},
                                 Command{"AUTH", "default", "sesame"}})
        compareOneByOne(
            server, rules,
            {login, {"PING"}, {"CLIENT", "SETNAME", "panel"}, {"AUTH", "wrong"}, {"PING"}});
}

void TestSimulatedRobot::aCommandMayBeForbidden()
{
    for (const std::string command : {"ping", "client|setname", "mget", "mset", "scan"}) {
        RedisServer::Options options;
        options.users = {"default on nopass ~* &* +@all -" + command};
        const RedisServer server(options);
        SimulatedRobot::Rules rules;
        rules.forbiddenCommand = command;
        compare(server, rules,
                {{"PING"},
                 {"CLIENT", "SETNAME", "panel"},
                 {"MGET", "Arm/Joint0"},
                 {"MSET", "Arm/Joint0", one},
                 {"SCAN", "0"}});
    }
}

void TestSimulatedRobot::aKeyMayBeForbidden()
{
    RedisServer::Options options;
    options.users = {"default on nopass ~Arm/Joint0 ~Arm/Joint2 &* +@all"};
    const RedisServer server(options);
    SimulatedRobot::Rules rules;
    rules.forbiddenKey = 1;
    compare(server, rules,
            {{"SET", "Arm/Joint0", one},
             {"SET", "Arm/Joint1", two},
             {"MSET", "Arm/Joint0", one, "Arm/Joint1", two},
             {"GET", "Arm/Joint1"},
             {"MGET", "Arm/Joint0", "Arm/Joint1"},
             {"MGET", "Arm/Joint0", "Arm/Joint2"}});
}

void TestSimulatedRobot::aFullServerTurnsAway()
{
    const RedisServer server;
    server.command({"CONFIG", "SET", "maxclients", "1"});
    Client first(server.port());
    SimulatedRobot::Rules rules;
    rules.isFull = true;
    QCOMPARE(Client(server.port()).rest(), SimulatedClient(rules).ask(""));
}

REGISTER_TEST(TestSimulatedRobot, NoApplication)
#include "tst_simulated_robot.moc"
