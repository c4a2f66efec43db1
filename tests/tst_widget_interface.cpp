#include "support/guarded_test.h"

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

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

} // namespace

/// What a plug-in gets from the host's library.
class TestWidgetInterface : public GuardedTest
{
    Q_OBJECT

private slots:
    void needsAConnectionUnlessOverridden();
    void startsWithoutBrokerPanelAndParent();
    void isKnownByItsIdentifier();
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

QTEST_MAIN(TestWidgetInterface)
#include "tst_widget_interface.moc"
