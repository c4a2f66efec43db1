// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/redis_server.h"
#include "support/register_test.h"

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <zo/error.h>
#include <zo/memory_proxy.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

class PlainPlugin : public WidgetInterface
{
public:
    TarvekWidget* getWidget(QWidget*, const std::string&, int, const std::string&) override
    {
        return nullptr;
    }
};

/// One whose panels make do without a robot.
class LonePlugin : public PlainPlugin
{
public:
    bool requiresConnection() const override { return false; }
};

} // namespace

/// What a plug-in gets from the host's library.
class TestWidgetInterface : public GuardedTest
{
    Q_OBJECT

private slots:
    void needsAConnectionUnlessOverridden();
    void startsWithoutBrokerPanelAndParent();
    void isKnownByItsIdentifier();
    void connectsToTheRobotWithTheHostsOptions();
    void keepsTheOldBrokerWhenTheRobotCannotBeReached();
    void withoutNeedForTheRobotItIsNotWaitedFor();
    void panelsCanBeToldThatTheRobotIsGone();
};

void TestWidgetInterface::needsAConnectionUnlessOverridden()
{
    const PlainPlugin plugin;
    QVERIFY(plugin.requiresConnection());
}

void TestWidgetInterface::startsWithoutBrokerPanelAndParent()
{
    const PlainPlugin plugin;
    QVERIFY(!plugin.fBroker);
    QCOMPARE(plugin.fPanel, nullptr);
    QCOMPARE(plugin.fParent, nullptr);
}

void TestWidgetInterface::isKnownByItsIdentifier()
{
    QCOMPARE(QByteArray(qobject_interface_iid<WidgetInterface*>()),
             QByteArray("org.tarvek.desktop.WidgetInterface/0.1"));
}

void TestWidgetInterface::connectsToTheRobotWithTheHostsOptions()
{
    RedisServer::Options options;
    options.users = {"reader on >look ~* +@all"};
    options.defaultPassword = "not-for-everybody";
    const RedisServer robot(options);
    robot.command({"SET", "Arm/Angle", "0.5"});
    PlainPlugin plugin;
    plugin.fBrokerOptions.user = "reader";
    plugin.fBrokerOptions.password = "look";
    plugin.initBroker(plugin.fBroker, "PlainBroker", "127.0.0.1", robot.port(), "");
    QCOMPARE(plugin.fBroker->getName(), std::string("PlainBroker"));
    ZoMemoryProxy memory(plugin.fBroker->getProxy("ZoMemory", 0));
    QCOMPARE(memory.getDataListName(), std::vector<std::string>{"Arm/Angle"});
}

void TestWidgetInterface::keepsTheOldBrokerWhenTheRobotCannotBeReached()
{
    RedisServer robot;
    PlainPlugin plugin;
    plugin.initBroker(plugin.fBroker, "first", "127.0.0.1", robot.port(), "");
    const boost::shared_ptr<ZoBroker> first = plugin.fBroker;
    robot.kill();
    TRY_VERIFY(!first->isConnected()); // or the second one would share its link
    QVERIFY_EXCEPTION_THROWN(
        plugin.initBroker(plugin.fBroker, "second", "127.0.0.1", robot.port(), ""), ZoError);
    QCOMPARE(plugin.fBroker, first);
}

void TestWidgetInterface::withoutNeedForTheRobotItIsNotWaitedFor()
{
    RedisServer robot;
    robot.stop(); // it takes connections, and says nothing
    LonePlugin plugin;
    plugin.fBrokerOptions.connectTimeout = std::chrono::hours(1);
    plugin.initBroker(plugin.fBroker, "lone", "127.0.0.1", robot.port(), "");
    QVERIFY(plugin.fBroker && !plugin.fBroker->isConnected());
    QVERIFY(plugin.fBroker->linkStatus().opening);
    robot.resume();
    TRY_VERIFY(plugin.fBroker->isConnected());
}

void TestWidgetInterface::panelsCanBeToldThatTheRobotIsGone()
{
    PlainPlugin plugin;
    QWidget window;
    TarvekWidget panel(&window);
    QCOMPARE(panel.parentWidget(), &window);
    QSignalSpy told(&panel, &TarvekWidget::disconnected);
    emit panel.disconnected(&plugin);
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.at(0).at(0).value<WidgetInterface*>(), &plugin);
}

REGISTER_TEST(TestWidgetInterface, QApplication)
#include "tst_widget_interface.moc"
