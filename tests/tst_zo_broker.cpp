#include "support/guarded_test.h"

#include <zo/zo.h>

#include <QtTest>

/// A broker without a robot.
class TestZoBroker : public GuardedTest
{
    Q_OBJECT

private slots:
    void itHasItsNameAndItself();
    void itsMemoryIsTheModuleZoMemory();
    void aRegisteredModuleTakesTheNamesPlace();
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

QTEST_APPLESS_MAIN(TestZoBroker)
#include "tst_zo_broker.moc"
