// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/watched_thread.h"

#include <zo/zo.h>

#include <boost/make_shared.hpp>

#include <QtTest>

#include <string>
#include <utility>

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
        const WatchedThread use([this] { fBroker->getProxy("ZoMemory", 0); });
        fIsDone = use.ends();
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
    QCOMPARE(errorOf([] { ZoBroker::create("hub")->reconnect({}); }),
             std::string("broker 'hub' has no robot"));
}

void TestZoBroker::unknownAndEmptyModulesThrow()
{
    const auto broker = ZoBroker::create("hub");
    const auto memory = broker->getLocalMemory();
    QCOMPARE(errorOf([&] { broker->getProxy("Leg", 0); }),
             std::string("broker 'hub' has no module 'Leg'"));
    QCOMPARE(errorOf([&] { broker->getProxy("", 0); }),
             std::string("broker 'hub' has no module ''"));
    const std::string incomplete = "broker 'hub': a module needs a name and an object";
    QCOMPARE(errorOf([&] { broker->registerModule("", memory); }), incomplete);
    QCOMPARE(errorOf([&] { broker->registerModule("Leg", nullptr); }), incomplete);
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
    QCOMPARE(broker->linkStatus().cause, std::string("broker 'hub' has no robot"));
}

REGISTER_TEST(TestZoBroker, NoApplication)
#include "tst_zo_broker.moc"
