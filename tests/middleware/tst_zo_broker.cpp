// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <zo/zo.h>

#include <boost/make_shared.hpp>

#include <QtTest>

#include <chrono>
#include <future>

namespace {

/// A module that uses its broker once more when it goes, from another thread.
class Farewell : public ZoProxy
{
public:
    Farewell(boost::shared_ptr<ZoBroker> broker, bool& isDone)
        : fBroker(std::move(broker)), fIsDone(isDone)
    {
    }
    ~Farewell() override
    {
        auto use = std::async(std::launch::async, [this] { fBroker->getProxy("ZoMemory", 0); });
        fIsDone = use.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
    }
    Farewell(const Farewell&) = delete;
    Farewell& operator=(const Farewell&) = delete;
    ZoValue call(const std::string&, const ZoValue&) override { return {}; }

private:
    const boost::shared_ptr<ZoBroker> fBroker;
    bool& fIsDone;
};

} // namespace

/// A broker without a robot.
class TestZoBroker : public GuardedTest
{
    Q_OBJECT

private slots:
    void itHasItsNameAndItself();
    void itsMemoryIsTheModuleZoMemory();
    void aRegisteredModuleTakesTheNamesPlace();
    void aReplacedModuleMayUseTheBrokerToTheEnd();
    void itCannotReconnect();
    void unknownAndEmptyModulesThrow();
    void aProxyOutlivesItsBroker();
    void itIsNotConnectedAndSaysWhy();
};

void TestZoBroker::itHasItsNameAndItself()
{
    const auto broker = ZoBroker::create("hub");
    QCOMPARE(broker->getName(), std::string("hub"));
    QCOMPARE(broker->getThis().get(), broker.get());
}

void TestZoBroker::itsMemoryIsTheModuleZoMemory()
{
    const auto broker = ZoBroker::create("hub");
    QCOMPARE(broker->getProxy("ZoMemory", 0).get(), broker->getLocalMemory().get());
}

void TestZoBroker::aRegisteredModuleTakesTheNamesPlace()
{
    const auto broker = ZoBroker::create("hub");
    const auto module = ZoBroker::create("other")->getLocalMemory();
    broker->registerModule("Arm", module);
    QCOMPARE(broker->getProxy("Arm", 0).get(), module.get());
    broker->registerModule("ZoMemory", module);
    QCOMPARE(broker->getProxy("ZoMemory", 0).get(), module.get());
    QCOMPARE(broker->getLocalMemory().get(), module.get());
    ZoMemoryProxy(broker).setData("a", 1);
    QCOMPARE(ZoMemoryProxy(module).getDataListName(), std::vector<std::string>{"a"});
}

void TestZoBroker::aReplacedModuleMayUseTheBrokerToTheEnd()
{
    const auto broker = ZoBroker::create("hub");
    bool isDone = false;
    broker->registerModule("Arm", boost::make_shared<Farewell>(broker, isDone));
    broker->registerModule("Arm", broker->getLocalMemory());
    QVERIFY(isDone);
}

void TestZoBroker::itCannotReconnect()
{
    QVERIFY_EXCEPTION_THROWN(ZoBroker::create("hub")->reconnect({}), ZoError);
}

void TestZoBroker::unknownAndEmptyModulesThrow()
{
    const auto broker = ZoBroker::create("hub");
    QVERIFY_EXCEPTION_THROWN(broker->getProxy("Leg", 0), ZoError);
    QVERIFY_EXCEPTION_THROWN(broker->getProxy("", 0), ZoError);
    QVERIFY_EXCEPTION_THROWN(broker->registerModule("", broker->getLocalMemory()), ZoError);
    QVERIFY_EXCEPTION_THROWN(broker->registerModule("Leg", nullptr), ZoError);
    try {
        broker->getProxy("Leg", 0);
    } catch (const ZoError& error) {
        QVERIFY2(error.toString().find("Leg") != std::string::npos, error.what());
    }
}

void TestZoBroker::aProxyOutlivesItsBroker()
{
    ZoMemoryProxy memory(ZoBroker::create("hub")->getProxy("ZoMemory", 0));
    memory.setData("a", 1);
    QCOMPARE(memory.getDataListName(), std::vector<std::string>{"a"});
}

void TestZoBroker::itIsNotConnectedAndSaysWhy()
{
    const auto broker = ZoBroker::create("hub");
    QVERIFY(!broker->isConnected());
    QVERIFY(!broker->linkStatus().cause.empty());
}

REGISTER_TEST(TestZoBroker, NoApplication)
#include "tst_zo_broker.moc"
