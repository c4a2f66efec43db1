// SPDX-License-Identifier: MIT
#include "support/fake_robot.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/watched_thread.h"

#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>
#include <new>
#include <string>
#include <utility>

namespace {

/// A name service that can be made to hang, in place of the system's.
class NameService
{
public:
    void hang()
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsHanging = true;
    }
    void answer()
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsHanging = false;
        fChanged.notify_all();
    }
    /// The next look-up meets a shortage of memory.
    void runShort()
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        fIsShort = true;
    }
    void waitWhileHanging()
    {
        std::unique_lock<std::mutex> lock(fMutex);
        ++fWaiting;
        ++fAsked;
        fChanged.wait(lock, [this] { return !fIsHanging; });
        --fWaiting;
        if (std::exchange(fIsShort, false))
            throw std::bad_alloc();
    }
    int waiting()
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fWaiting;
    }
    int asked()
    {
        const std::lock_guard<std::mutex> lock(fMutex);
        return fAsked;
    }

private:
    std::mutex fMutex;
    std::condition_variable fChanged;
    bool fIsHanging = false;
    bool fIsShort = false;
    int fWaiting = 0;
    int fAsked = 0;
};

NameService& nameService()
{
    static NameService service;
    return service;
}

} // namespace

// Stands before the system's function of this name, also for the libraries of this program.
extern "C" __attribute__((visibility("default"))) int
getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** found)
{
    static const auto system =
        reinterpret_cast<decltype(&::getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    nameService().waitWhileHanging();
    return system(host, service, hints, found);
}

/// The system's look-up of host names may hang; nobody else may.
class TestLookUp : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void anAddressNeedsNoLookUp();
    void aLinkIsGivenUpInTimeWhileTheLookUpHangs();
    void aLinkEndsWhileTheLookUpHangs();
    void oneHangingLookUpIsEnough();
    void aLookUpWithoutMemoryEndsNothingButItself();
};

void TestLookUp::init()
{
    nameService().hang();
}

void TestLookUp::cleanup()
{
    nameService().answer();
    TRY_COMPARE(nameService().waiting(), 0);
    GuardedTest::cleanup();
}

void TestLookUp::anAddressNeedsNoLookUp()
{
    const RedisServer server;
    QVERIFY(ZoBroker::create("TestBroker", "127.0.0.1", server.port(), patientOptions())
                ->isConnected());
    QCOMPARE(nameService().asked(), 0);
}

void TestLookUp::aLinkIsGivenUpInTimeWhileTheLookUpHangs()
{
    ZoBrokerOptions options;
    options.connectTimeout = std::chrono::milliseconds(200);
    const std::string error =
        errorOf([&] { ZoBroker::create("TestBroker", "localhost", 6379, options); });
    QVERIFY2(contains(error, "robot at localhost:6379: no connection within 200 ms, "
                             "while looking up the host"),
             error.c_str());
    QCOMPARE(nameService().waiting(), 1);
}

void TestLookUp::aLinkEndsWhileTheLookUpHangs()
{
    RedisServer server;
    nameService().answer();
    ZoBrokerOptions options = patientOptions();
    options.connectTimeout = std::chrono::minutes(10);
    auto broker = ZoBroker::create("TestBroker", "localhost", server.port(), options);
    nameService().hang();
    server.kill();
    TRY_COMPARE(nameService().waiting(), 1);
    QVERIFY(!broker->isConnected());
    WatchedThread closing([&broker] { broker.reset(); });
    const bool ends = closing.ends();
    const int waiting = nameService().waiting();
    nameService().answer();
    QVERIFY(ends);
    QCOMPARE(waiting, 1);
}

void TestLookUp::oneHangingLookUpIsEnough()
{
    std::atomic<int> vainAttempts{0};
    const FakeRobot silent([&](FakeConnection& connection) {
        if (connection.number() == 0)
            connection.greet();
        else
            ++vainAttempts;
        connection.waitForEnd();
    });
    const RedisServer server;
    nameService().answer();
    const auto broker =
        ZoBroker::create("TestBroker", "localhost", server.port(), patientOptions());
    const auto other = linkTo(silent.port(), patientOptions());
    const int before = nameService().asked();
    nameService().hang();
    ZoBrokerOptions options = patientOptions();
    options.connectTimeout = std::chrono::milliseconds(100);
    options.reconnectWaitMax = std::chrono::milliseconds(10);
    broker->reconnect(options);
    other->reconnect(options);
    // Several attempts end without an answer; they share one look-up, whose answer serves all. That
    // no second one comes has no signal to wait for: another link's attempts tell the time.
    TRY_VERIFY(contains(broker->linkStatus().cause, "looking up the host"));
    TRY_VERIFY(vainAttempts >= 5);
    // A second one is due after ten seconds, which a busy machine may have taken.
    QVERIFY(nameService().asked() <= before + 2);
    nameService().answer();
    TRY_VERIFY(broker->isConnected());
}

void TestLookUp::aLookUpWithoutMemoryEndsNothingButItself()
{
    RedisServer server;
    nameService().answer();
    nameService().runShort();
    const std::string error = errorOf(
        [&] { ZoBroker::create("TestBroker", "localhost", server.port(), patientOptions()); });
    QVERIFY2(contains(error, "out of memory"), error.c_str());
    QVERIFY(ZoBroker::create("TestBroker", "localhost", server.port(), patientOptions())
                ->isConnected());
}

REGISTER_TEST(TestLookUp, QCoreApplication)
#include "tst_look_up.moc"
