// SPDX-License-Identifier: MIT
#include "support/fake_memory.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/request_for.h"

#include <replay/replay_control.h>

#include <zo/zo.h>

#include <QtTest>

#include <atomic>
#include <future>

using namespace std::chrono_literals;

/// How a robot that plays a recording is ruled.
class TestReplayControl : public GuardedTest
{
    Q_OBJECT

private slots:
    void commandsAreRead();
    void commandsAreTakenFromTheControlKey();
    void aCommandThatComesWhileAnotherIsTakenIsNotLost();
    void aLookThatTakesLongHoldsUpNobody();
    void aLookThatFailsIsTold();
};

namespace {

/// Adds the commands that have come; how many there are then.
std::size_t takeInto(std::vector<kit::ReplayCommand>& commands, ReplayControl& control)
{
    const auto more = control.take();
    commands.insert(commands.end(), more.begin(), more.end());
    return commands.size();
}

} // namespace

void TestReplayControl::commandsAreRead()
{
    using Kind = kit::ReplayCommand::Kind;
    QVERIFY(kit::replayCommandFrom(" play\n")->kind == Kind::Play);
    QVERIFY(kit::replayCommandFrom("step")->steps == 1);
    QVERIFY(kit::replayCommandFrom("step 12")->steps == 12);
    QVERIFY(kit::replayCommandFrom("jump 1.5")->kind == Kind::JumpTo);
    QVERIFY(kit::replayCommandFrom("jump 1.5")->time == 1500ms);
    QVERIFY(kit::replayCommandFrom("jump 2min")->kind == Kind::JumpFrom);
    QVERIFY(kit::replayCommandFrom("jump -2min")->time == -2min);
    QVERIFY(kit::replayCommandFrom("speed 0.25")->speed == 0.25);
    for (const char* wrong : {"", " ", "stop", "play it", "step 0", "step x", "step 1 2", "jump",
                              "jump x", "jump -5", "jump +", "speed 0", "speed nan", "speed 1e9"})
        QVERIFY2(!kit::replayCommandFrom(wrong), wrong);
}

void TestReplayControl::commandsAreTakenFromTheControlKey()
{
    const auto broker = ZoBroker::create("test");
    ZoMemoryProxy memory(broker);
    QStringList told;
    ReplayControl control(memory, [&](const std::string& text) { told += text.c_str(); });
    std::vector<kit::ReplayCommand> taken;
    for (std::size_t i = 1; i <= 3; ++i) {
        memory.setText(kit::replayControlKey, "step " + std::to_string(i));
        TRY_VERIFY(takeInto(taken, control) == i);
        QCOMPARE(taken.back().steps, int(i));
    }
    QVERIFY(memory.getListData(requestFor({kit::replayControlKey}))[0] == ZoValue());
    memory.setText(kit::replayControlKey, "42");
    TRY_VERIFY(takeInto(taken, control) == 3 && !told.isEmpty());
    QVERIFY2(told[0].contains("no command: '42'"), qPrintable(told[0]));
    QCOMPARE(control.problem(), std::string());
}

void TestReplayControl::aCommandThatComesWhileAnotherIsTakenIsNotLost()
{
    std::atomic<bool> isTaken{false};
    FakeMemory memory;
    memory.answer = [&](const ZoValue& arguments) {
        if (arguments[0].getType() == ZoValue::Array) // a look
            return ZoValue::fromElements({isTaken ? ZoValue() : ZoValue("pause")});
        isTaken = true;
        return ZoValue("step 3"); // what was there, and is replaced
    };
    ReplayControl control(*memory.proxy(), [](const std::string&) {});
    TRY_VERIFY(isTaken);
    std::vector<kit::ReplayCommand> commands;
    TRY_VERIFY(takeInto(commands, control) == 2);
    QVERIFY(commands[0].kind == kit::ReplayCommand::Kind::Pause);
    QCOMPARE(commands[1].steps, 3);
}

void TestReplayControl::aLookThatTakesLongHoldsUpNobody()
{
    std::promise<void> end;
    FakeMemory memory;
    memory.answer = [&, ended = end.get_future().share()](const ZoValue&) {
        ended.wait();
        return ZoValue::fromElements({ZoValue()});
    };
    ReplayControl control(*memory.proxy(), [](const std::string&) {});
    QVERIFY(control.take().empty());
    QVERIFY(control.problem().empty());
    end.set_value();
}

void TestReplayControl::aLookThatFailsIsTold()
{
    std::atomic<bool> fails{true};
    FakeMemory memory;
    memory.answer = [&](const ZoValue&) -> ZoValue {
        if (fails)
            throw ZoError("no answer");
        return ZoValue::fromElements({ZoValue()});
    };
    ReplayControl control(*memory.proxy(), [](const std::string&) {});
    TRY_VERIFY(control.problem() == "no answer");
    QVERIFY(control.take().empty());
    fails = false;
    TRY_VERIFY(control.problem().empty());
}

REGISTER_TEST(TestReplayControl, NoApplication)
#include "tst_replay_control.moc"
