// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "windows/window_settings.h"

#include <QSettings>
#include <QtTest>

/// What the settings know of windows and panels.
class TestWindowSettings : public GuardedTest
{
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void nothingIsKnownAtFirst();
    void aWindowsLookComesBack();
    void changedBytesAreIgnored_data();
    void changedBytesAreIgnored();
    void eachKindOfPanelHasItsOwn();
    void placesOfAnotherVersionsPanelStay();
    void valuesOfOtherKindsAreHarmless();
};

void TestWindowSettings::nothingIsKnownAtFirst()
{
    QVERIFY(savedLook().geometry.isEmpty());
    QVERIFY(savedLook().docks.isEmpty());
    QVERIFY(savedArrangement("Probe").isEmpty());
}

void TestWindowSettings::aWindowsLookComesBack()
{
    const QByteArray bytes("\0\xff geometry", 11);
    const QMap<QString, QString> titles{{"A/b %1\\ 1", "left/right"}, {"A 1", "an arm"}};
    saveLook({bytes, "docks", titles});
    QCOMPARE(savedLook().geometry, bytes);
    QCOMPARE(savedLook().docks, QByteArray("docks"));
    QCOMPARE(savedLook().titles, titles);
    saveLook({bytes, "docks", {}});
    QVERIFY(savedLook().titles.isEmpty());
}

void TestWindowSettings::changedBytesAreIgnored_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("short") << QByteArray("x");
    QTest::newRow("added") << QByteArray("+");
    QTest::newRow("other") << QByteArray(100, 'x');
}

void TestWindowSettings::changedBytesAreIgnored()
{
    QFETCH(QByteArray, change);
    saveLook({"geometry", "docks", {}});
    QSettings store;
    const QByteArray saved = store.value("window/docks").toByteArray();
    store.setValue("window/docks", change == "+" ? saved + change : change);
    store.sync();
    QCOMPARE(savedLook().docks, QByteArray());
    QCOMPARE(savedLook().geometry, QByteArray("geometry"));
}

void TestWindowSettings::eachKindOfPanelHasItsOwn()
{
    const PanelArrangement one{{"QSplitter1", "1,2"}};
    const PanelArrangement other{{"QSplitter1", "3,4"}, {"QSplitter1 QTreeWidget1", "5;6;7"}};
    saveArrangement("A/b %1\\", one);
    saveArrangement("A", other);
    QCOMPARE(savedArrangement("A/b %1\\"), one);
    QCOMPARE(savedArrangement("A"), other);
    QVERIFY(savedArrangement("b").isEmpty());
}

void TestWindowSettings::placesOfAnotherVersionsPanelStay()
{
    saveArrangement("A", {{"x", "1"}, {"y", "2"}});
    saveArrangement("A", {{"y", "3"}});
    QCOMPARE(savedArrangement("A"), PanelArrangement({{"x", "1"}, {"y", "3"}}));
}

void TestWindowSettings::valuesOfOtherKindsAreHarmless()
{
    QSettings store;
    store.setValue("window/geometry", QVariantList{1, 2});
    store.setValue("panels/A/x", QVariantList{1, 2});
    store.setValue("panels/A/y/z", 1);
    store.setValue("panels/B", 1);
    store.sync();
    QVERIFY(savedLook().geometry.isEmpty());
    QCOMPARE(savedArrangement("A").value("x"), QString());
    QVERIFY(savedArrangement("B").isEmpty());
}

REGISTER_TEST(TestWindowSettings, HostApplication)
#include "tst_window_settings.moc"
