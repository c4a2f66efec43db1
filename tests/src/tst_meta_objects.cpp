// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include "color_button.h"
#include "config_dialog.h"
#include "config_manager.h"
#include "graph.h"
#include "graph_config.h"
#include "stmlist_dialog.h"
#include "widget.h"

#include <QDirIterator>
#include <QMetaMethod>
#include <QPluginLoader>
#include <QtTest>

namespace {

using Slots = QStringList;

QString signatureOf(const QMetaMethod& method)
{
    static const char* const access[] = {"private", "protected", "public"};
    QStringList words{access[method.access()], QString(method.methodSignature())};
    for (const QByteArray& name : method.parameterNames())
        words += name;
    return words.join(' ');
}

/// What a class adds to its base: its operations known by name.
Slots slotsOf(const QMetaObject& meta)
{
    Slots found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        found += signatureOf(meta.method(i));
    return found;
}

/// The meta objects of all classes of the plug-in, by name.
QMap<QString, const QMetaObject*> metaObjects()
{
    const QList<const QMetaObject*> all{
        &ColorButton::staticMetaObject,
        &ConfigDialog::staticMetaObject,
        &ConfigManager::staticMetaObject,
        &Graph::staticMetaObject,
        &GraphConfig::staticMetaObject,
        &StmListDialog::staticMetaObject,
        &Widget::staticMetaObject,
        QPluginLoader(GLIMMET_PLUGIN).instance()->metaObject()}; // hidden in its file
    QMap<QString, const QMetaObject*> byName;
    for (const QMetaObject* meta : all)
        byName[meta->className()] = meta;
    return byName;
}

/// The classes whose definitions in the sources begin with the toolkit's macro.
QStringList classesInSources()
{
    static const QRegularExpression definition(
        R"((?:class|struct)\s+(?:[A-Z_]+\s+)?(\w+)[^;{}]*\{\s*Q_OBJECT)");
    QStringList names;
    QDirIterator files(GLIMMET_SOURCES, {"*.h", "*.cpp"}, QDir::Files);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QString text = file.readAll();
        const auto macros = text.count("Q_OBJECT\n");
        auto found = definition.globalMatch(text);
        for (int i = 0; i < macros; ++i)
            names += found.hasNext() ? found.next().captured(1) : "unknown in " + file.fileName();
    }
    names.sort();
    return names;
}

} // namespace

/// What the plug-in's classes tell the toolkit of themselves: connections are made by these names.
class TestMetaObjects : public GuardedTest
{
    Q_OBJECT

private slots:
    void noClassOfTheSourcesIsLeftOut();
    void slotsHaveTheirNamesOrderAndParameters_data();
    void slotsHaveTheirNamesOrderAndParameters();
    void privateSlotsAndSlotParametersHaveTheirPrefixes();
    void noClassHasSignalsOrPropertiesOfItsOwn();
};

void TestMetaObjects::noClassOfTheSourcesIsLeftOut()
{
    QCOMPARE(classesInSources(), QStringList(metaObjects().keys()));
}

void TestMetaObjects::slotsHaveTheirNamesOrderAndParameters_data()
{
    QTest::addColumn<Slots>("expected");
    QTest::newRow("ColorButton") << Slots{"public xOnClick()"};
    QTest::newRow("ConfigDialog") << Slots{"private xOnOpen()", "private xOnNew()",
                                           "private xOnAll()"};
    QTest::newRow("ConfigManager") << Slots{};
    QTest::newRow("Graph") << Slots{"public setPlay(bool) pPlay", "public xUpdateTime()"};
    QTest::newRow("GraphConfig") << Slots{
        "public xOnChangePlayMode(bool) pChecked", "public xSpeedChanged(double) pSpeed",
        "public xMinYChange(double) pMin", "public xMaxYChange(double) pMax",
        "public xAutoScaleChange(int) pState"};
    QTest::newRow("Interface") << Slots{};
    QTest::newRow("StmListDialog") << Slots{"public onOk()", "private xOnFilterChanged()"};
    QTest::newRow("Widget") << Slots{"private xRefreshTree()",
                                     "private xOnRefresh()",
                                     "private xOnRefreshAll()",
                                     "private xOnChangeSubscription(int) pIndex",
                                     "private xOnItemClicked(QTreeWidgetItem*,int) pItem pColumn",
                                     "private xUselessNameUpdate(QTreeWidgetItem*) pItem",
                                     "private xSaveConfig()",
                                     "private xLoadConfig()",
                                     "private xOnWatchAll(int) pCheckState",
                                     "private xOnGraphAll(int) pCheckState"};
}

void TestMetaObjects::slotsHaveTheirNamesOrderAndParameters()
{
    const QMetaObject* meta = metaObjects().value(QTest::currentDataTag());
    QVERIFY(meta);
    QTEST(slotsOf(*meta), "expected");
}

void TestMetaObjects::privateSlotsAndSlotParametersHaveTheirPrefixes()
{
    static const QRegularExpression slot("^x[A-Z]");
    static const QRegularExpression parameter("^p[A-Z]");
    int checked = 0;
    for (const QMetaObject* meta : metaObjects()) {
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QMetaMethod method = meta->method(i);
            const QByteArray where = meta->className() + ("::" + method.methodSignature());
            QVERIFY2(method.access() != QMetaMethod::Private ||
                         slot.match(QString(method.name())).hasMatch(),
                     where);
            for (const QByteArray& name : method.parameterNames())
                QVERIFY2(parameter.match(QString(name)).hasMatch(), where + " " + name);
            ++checked;
        }
    }
    QVERIFY(checked > 20);
}

void TestMetaObjects::noClassHasSignalsOrPropertiesOfItsOwn()
{
    for (const QMetaObject* meta : metaObjects()) {
        QVERIFY2(meta->propertyCount() == meta->propertyOffset(), meta->className());
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            QVERIFY2(meta->method(i).methodType() == QMetaMethod::Slot, meta->className());
    }
    QCOMPARE(metaObjects()["Interface"]->superClass(), &QObject::staticMetaObject);
}

REGISTER_TEST(TestMetaObjects, QApplication)
#include "tst_meta_objects.moc"
