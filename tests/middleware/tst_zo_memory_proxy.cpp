// SPDX-License-Identifier: MIT
#include "support/fake_memory.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/robot.h"
#include "support/together.h"

#include <zo/zo.h>

#include <boost/make_shared.hpp>

#include <QtTest>

#include <cmath>

/// The operations of a memory module, tried on the memory of this process.
class TestZoMemoryProxy : public GuardedTest
{
    Q_OBJECT

private slots:
    void valuesReadBackWithTheirTypes();
    void textReadsBackAsWhatItSpells();
    void anExchangeReturnsWhatWasThere();
    void keysRepeatAsAskedAndAMissingOneIsInvalid();
    void manyValuesAreStoredAtOnce();
    void ofManyValuesAllOrNoneAreStored();
    void everyKeyIsListedOnce();
    void aRobotCouldNotHoldItSoItIsRefused();
    void wrongRequestsThrow();
    void aProxyWithoutAModuleThrows();
    void aKeyListThatIsNoneThrows();
    void threadsMayShareIt();
    void anAnswerTellsWhatHasChangedSinceTheLastOne();
    void eachRequestHasALastAnswerOfItsOwn();
    void aCopyGoesOnWithTheSameLastAnswers();
    void aCallThatFailedIsNoAnswer();
    void anAnswerTellsWhenItCame();
    void anAnswerThatIsNoneThrows();
};

namespace {

ZoValue pairsOf(const std::vector<std::pair<std::string, ZoValue>>& values)
{
    ZoValue pairs;
    pairs.arraySetSize(static_cast<int>(values.size()));
    for (int i = 0; i < pairs.getSize(); ++i) {
        pairs[i].arraySetSize(2);
        pairs[i][0] = values[static_cast<std::size_t>(i)].first;
        pairs[i][1] = values[static_cast<std::size_t>(i)].second;
    }
    return pairs;
}

ZoValue valueOf(ZoMemoryProxy& memory, const std::string& key)
{
    return memory.getListData(requestFor({key}))[0];
}

/// A module that answers every call alike.
class FixedAnswer : public ZoProxy
{
public:
    explicit FixedAnswer(ZoValue answer) : fAnswer(std::move(answer)) {}
    ZoValue call(const std::string& method, const ZoValue& arguments) override
    {
        Q_UNUSED(method);
        Q_UNUSED(arguments);
        return fAnswer;
    }

private:
    ZoValue fAnswer;
};

} // namespace

void TestZoMemoryProxy::valuesReadBackWithTheirTypes()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    ZoValue array(std::vector<std::string>{"a", "b"});
    array[1] = 3.0;
    for (const ZoValue& value :
         {ZoValue(), ZoValue(3), ZoValue(3.0), ZoValue(std::nan("")), ZoValue(-HUGE_VAL),
          ZoValue(true), ZoValue("3"), ZoValue(" padded "), ZoValue("{\"a\":1}"), ZoValue("\xff"),
          ZoValue(std::string("a\0b", 3)), array}) {
        memory.setData("key", value);
        QCOMPARE(valueOf(memory, "key"), value);
    }
}

void TestZoMemoryProxy::textReadsBackAsWhatItSpells()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    memory.setText("key", "3");
    QCOMPARE(valueOf(memory, "key"), ZoValue(3));
    memory.setText("key", "plain text");
    QCOMPARE(valueOf(memory, "key"), ZoValue("plain text"));
}

void TestZoMemoryProxy::anExchangeReturnsWhatWasThere()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    QVERIFY(memory.exchangeData("key", 3) == ZoValue());
    QVERIFY(memory.exchangeData("key", "text") == ZoValue(3));
    QCOMPARE(valueOf(memory, "key"), ZoValue("text"));
}

void TestZoMemoryProxy::keysRepeatAsAskedAndAMissingOneIsInvalid()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    memory.setData("a", 1);
    memory.setData("b", 2);
    const ZoValue reply = memory.getListData(requestFor({"b", "missing", "a", "b"}));
    QCOMPARE(reply.toString(ZoWhole), std::string("[2,null,1,2]"));
    QCOMPARE(memory.getListData(requestFor({})), requestFor({}));
}

void TestZoMemoryProxy::manyValuesAreStoredAtOnce()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    memory.setListData(pairsOf({{"a", 1}, {"b", "text"}, {"c", ZoValue()}, {"a", 2.0}}));
    QCOMPARE(valueOf(memory, "a"), ZoValue(2.0));
    QCOMPARE(valueOf(memory, "b"), ZoValue("text"));
    QCOMPARE(memory.getDataListName().size(), std::size_t{3});
    memory.setListData(pairsOf({}));
    QCOMPARE(memory.getDataListName().size(), std::size_t{3});
}

void TestZoMemoryProxy::ofManyValuesAllOrNoneAreStored()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    const ZoValue noText = std::vector<std::string>{"\xff"};
    const auto refusalOf = [&](const ZoValue& pairs) {
        return QString::fromStdString(errorOf([&] { memory.setListData(pairs); }));
    };
    QVERIFY(refusalOf(pairsOf({{"a", 1}, {"b", noText}})).startsWith("value for \"b\": "));
    const QString noPair("setListData: element 1 of the argument is not [key, value]");
    ZoValue pairs = pairsOf({{"a", 1}, {"b", 2}});
    pairs[1].arraySetSize(1);
    QCOMPARE(refusalOf(pairs), noPair);
    pairs[1].arraySetSize(2);
    pairs[1][0] = 3;
    QCOMPARE(refusalOf(pairs), noPair);
    QVERIFY(memory.getDataListName().empty());
}

void TestZoMemoryProxy::everyKeyIsListedOnce()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    QVERIFY(memory.getDataListName().empty());
    memory.setData("a", 1);
    memory.setData("b", 2);
    memory.setData("a", 3);
    std::vector<std::string> names = memory.getDataListName();
    std::sort(names.begin(), names.end());
    QCOMPARE(names, (std::vector<std::string>{"a", "b"}));
    memory.setData("Arm/b", 4);
    QCOMPARE(memory.getDataListName("rm/b"), std::vector<std::string>{"Arm/b"});
    QCOMPARE(memory.getDataListName("b").size(), std::size_t{2});
    QVERIFY(memory.getDataListName("longer than Arm/b").empty());
}

void TestZoMemoryProxy::aRobotCouldNotHoldItSoItIsRefused()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    const ZoValue noText(std::vector<std::string>{"\xff"});
    const std::string problem = errorOf([&] { memory.setData("Arm/Name", noText); });
    QVERIFY2(problem.find("value for \"Arm/Name\"") == 0, problem.c_str());
    QVERIFY(memory.getDataListName().empty());
}

void TestZoMemoryProxy::wrongRequestsThrow()
{
    const auto module = ZoBroker::create("test")->getLocalMemory();
    const auto refusalOf = [&](const std::string& method, const ZoValue& arguments) {
        return errorOf([&] { module->call(method, arguments); });
    };
    QCOMPARE(refusalOf("getListData", ZoValue()),
             std::string("getListData: the request is no array"));
    const std::string noKey = "getListData: element 0 of the request is not [key, 0]";
    QCOMPARE(refusalOf("getListData", std::vector<std::string>{"a"}), noKey);
    ZoValue request = requestFor({"a"});
    request[0][0] = 3;
    QCOMPARE(refusalOf("getListData", request), noKey);
    request = requestFor({"a"});
    request[0].arraySetSize(1);
    QCOMPARE(refusalOf("getListData", request), noKey);
    const std::string noPair = ": the arguments are not [key, value]";
    QCOMPARE(refusalOf("setData", "a"), "setData" + noPair);
    QCOMPARE(refusalOf("setListData", "a"), std::string("setListData: the argument is no array"));
    QVERIFY(contains(refusalOf("noMethod", "a"), "noMethod"));
    ZoValue pair(std::vector<std::string>{"a", "b"});
    pair[0] = 3;
    QCOMPARE(refusalOf("setText", pair), "setText" + noPair);
    QCOMPARE(refusalOf("exchangeData", pair), "exchangeData" + noPair);
    pair[0] = "a";
    pair[1] = 3;
    QCOMPARE(refusalOf("setText", pair), std::string("setText: the second argument is no text"));
}

void TestZoMemoryProxy::aProxyWithoutAModuleThrows()
{
    ZoMemoryProxy noProxy{boost::shared_ptr<ZoProxy>()};
    ZoMemoryProxy noBroker{boost::shared_ptr<ZoBroker>()};
    const std::string why = ": there is no memory module behind the proxy";
    QCOMPARE(errorOf([&] { noProxy.getDataListName(); }), "getDataListName" + why);
    QCOMPARE(errorOf([&] { noBroker.getListData(requestFor({})); }), "getListData" + why);
    QCOMPARE(errorOf([&] { noBroker.setData("a", 1); }), "setData" + why);
    QCOMPARE(errorOf([&] { noBroker.setListData(pairsOf({})); }), "setListData" + why);
    QCOMPARE(errorOf([&] { noBroker.setText("a", "1"); }), "setText" + why);
}

void TestZoMemoryProxy::aKeyListThatIsNoneThrows()
{
    ZoMemoryProxy noArray(boost::make_shared<FixedAnswer>(3));
    QCOMPARE(errorOf([&] { noArray.getDataListName(); }),
             std::string("getDataListName: the reply is no array"));
    ZoMemoryProxy noNames(boost::make_shared<FixedAnswer>(requestFor({"a"})));
    QVERIFY_EXCEPTION_THROWN(noNames.getDataListName(), ZoError);
}

void TestZoMemoryProxy::threadsMayShareIt()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    runTogether(2, [&memory](int number) {
        const std::string key = number == 0 ? "a" : "b";
        for (int i = 0; i < 1000; ++i) {
            memory.setData(key, i);
            memory.setData("shared", i);
            memory.getListData(requestFor({"a", "b", "shared"}));
            memory.getDataListName();
        }
    });
    QCOMPARE(memory.getListData(requestFor({"a", "b"})).toString(ZoWhole),
             std::string("[999,999]"));
}

void TestZoMemoryProxy::anAnswerTellsWhatHasChangedSinceTheLastOne()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    memory.setListData(pairsOf({{"a", 1}, {"b", std::nan("")}, {"c", "text"}}));
    const ZoValue request = requestFor({"a", "b", "c", "a", "missing"});
    const auto changed = [&] { return memory.getListAnswer(request).changed; };
    QCOMPARE(changed(), (std::vector<int>{0, 1, 2, 3, 4}));
    QCOMPARE(changed(), std::vector<int>());
    memory.setData("a", 2);
    QCOMPARE(changed(), (std::vector<int>{0, 3}));
    memory.setData("b", std::nan("")); // equal values are no change
    memory.setData("c", "other");
    memory.setData("c", "text");
    QCOMPARE(changed(), std::vector<int>());
    memory.setData("a", 2.0); // of another type
    memory.setData("missing", 0);
    QCOMPARE(changed(), (std::vector<int>{0, 3, 4}));
    memory.setData("missing", ZoValue());
    const ZoListAnswer answer = memory.getListAnswer(request);
    QCOMPARE(answer.changed, std::vector<int>{4});
    QCOMPARE(answer.values, memory.getListData(request));
    QCOMPARE(changed(), std::vector<int>());
}

void TestZoMemoryProxy::eachRequestHasALastAnswerOfItsOwn()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    const auto changed = [&](const std::vector<std::string>& keys) {
        return static_cast<int>(memory.getListAnswer(requestFor(keys)).changed.size());
    };
    QCOMPARE(changed({"a"}), 1);
    QCOMPARE(changed({"b"}), 1);
    QCOMPARE(changed({"a", "b"}), 2);
    QCOMPARE(changed({}), 0);
    memory.setData("a", 1);
    QCOMPARE(changed({"a"}), 1);
    QCOMPARE(changed({"b"}), 0);
    QCOMPARE(changed({"a", "b"}), 1);
    // The one that was asked for longest ago is forgotten.
    for (int i = 0; i < ZoMemoryProxy::fMostRemembered - 1; ++i)
        QCOMPARE(changed({"other " + std::to_string(i)}), 1);
    QCOMPARE(changed({"a", "b"}), 0);
    QCOMPARE(changed({"a"}), 1);
}

void TestZoMemoryProxy::aCopyGoesOnWithTheSameLastAnswers()
{
    const auto broker = ZoBroker::create("test");
    ZoMemoryProxy memory(broker);
    ZoMemoryProxy copy = memory;
    ZoMemoryProxy other(broker);
    const ZoValue request = requestFor({"a"});
    QCOMPARE(memory.getListAnswer(request).changed.size(), std::size_t{1});
    QCOMPARE(copy.getListAnswer(request).changed.size(), std::size_t{0});
    QCOMPARE(other.getListAnswer(request).changed.size(), std::size_t{1});
}

void TestZoMemoryProxy::aCallThatFailedIsNoAnswer()
{
    FakeMemory module;
    const auto memory = module.proxy();
    const ZoValue request = requestFor({"a"});
    const auto answer = [](int value) {
        return [value](const ZoValue&) {
            return ZoValue::fromElements({ZoValue::fromElements({value}), 0});
        };
    };
    module.answer = answer(1);
    QCOMPARE(memory->getListAnswer(request).changed.size(), std::size_t{1});
    module.answer = [](const ZoValue&) -> ZoValue { throw ZoError("gone"); };
    QCOMPARE(errorOf([&] { memory->getListAnswer(request); }), std::string("gone"));
    module.answer = answer(1);
    QCOMPARE(memory->getListAnswer(request).changed.size(), std::size_t{0});
}

void TestZoMemoryProxy::anAnswerTellsWhenItCame()
{
    ZoMemoryProxy memory(ZoBroker::create("test"));
    const auto before = std::chrono::steady_clock::now();
    const ZoListAnswer answer = memory.getListAnswer(requestFor({"a"}));
    QVERIFY(answer.arrived >= before && answer.arrived <= std::chrono::steady_clock::now());
}

void TestZoMemoryProxy::anAnswerThatIsNoneThrows()
{
    const ZoValue values = requestFor({"a"});
    for (const ZoValue& reply :
         {ZoValue(), ZoValue(3), values, ZoValue::fromElements({values, "now"}),
          ZoValue::fromElements({values, 0, "none"}), ZoValue::fromElements({values, 0, 0, 0}),
          ZoValue::fromElements({3, 0})}) {
        ZoMemoryProxy memory(boost::make_shared<FixedAnswer>(reply));
        const std::string error = errorOf([&] { memory.getListAnswer(requestFor({"a"})); });
        QCOMPARE(error, std::string("getListAnswer: the reply is not [values, time]"));
    }
}

REGISTER_TEST(TestZoMemoryProxy, NoApplication)
#include "tst_zo_memory_proxy.moc"
