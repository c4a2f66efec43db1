// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <tarvek/widget_interface.h>

#include <QtTest>

/// The host's plug-in loader, on real files.
class TestPluginLoader : public GuardedTest
{
    Q_OBJECT

private slots:
    void loadsAPluginUnderItsOwnName();
    void aPluginWithoutANameHasThatOfItsFile();
    void findsPluginsByNameInCapitalsOrNot();
    void copiesOfAPluginAreToldApart();
    void tellsFileAndReasonOfABrokenPlugin_data();
    void tellsFileAndReasonOfABrokenPlugin();
    void aPluginOfAnotherToolkitIsRefused_data();
    void aPluginOfAnotherToolkitIsRefused();
    void aFileThatIsNoLibraryIsAFailure_data();
    void aFileThatIsNoLibraryIsAFailure();
    void whatIsNotThereIsAFailure();
    void brokenPluginsKeepNoneFromLoading();
    void otherFilesInAFolderAreLeftAlone();
    void aFileIsLoadedOnceUnderAnyPath();
    void aFolderIsLoadedOnce();
};

namespace {

QString pluginFile(const QString& name)
{
    return QStringLiteral(TEST_PLUGIN_DIR "/%1.so").arg(name);
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

/// The plug-in `probe` as another Qt describes it: with this before the number of that Qt. Both
/// forms have a byte between that is the form's own number.
QByteArray probeOf(char toolkit, const QByteArray& mark, const QByteArray& otherMark)
{
    QFile whole(pluginFile("probe"));
    QByteArray library = whole.open(QIODevice::ReadOnly) ? whole.readAll() : QByteArray();
    const auto place = qMax(library.indexOf(mark), library.indexOf(otherMark));
    const auto end = place + (library.mid(place).startsWith(mark) ? mark : otherMark).size();
    return library.replace(end - mark.size(), mark.size(), mark)
        .replace(end + 1, 1, QByteArray(1, toolkit));
}

const QByteArray sectionMark("QTMETADATA !");
const QByteArray noteMark("\x01\0Qtqt-project!", 16);

} // namespace

void TestPluginLoader::loadsAPluginUnderItsOwnName()
{
    PluginLoader loader;
    loader.loadFile(pluginFile("probe"));
    QVERIFY(loader.failures().empty());
    QCOMPARE(loader.plugins().size(), size_t(1));
    QCOMPARE(loader.plugins()[0]->name, QString("Probe"));
    QCOMPARE(loader.plugins()[0]->file, pluginFile("probe"));
    QVERIFY(loader.plugins()[0]->panels->requiresConnection());
}

void TestPluginLoader::aPluginWithoutANameHasThatOfItsFile()
{
    PluginLoader loader;
    loader.loadFile(pluginFile("nothing"));
    QCOMPARE(loader.plugins().size(), size_t(1));
    QCOMPARE(loader.plugins()[0]->name, QString("nothing"));
}

void TestPluginLoader::findsPluginsByNameInCapitalsOrNot()
{
    PluginLoader loader;
    loader.loadFile(pluginFile("nothing"));
    loader.loadFile(pluginFile("probe"));
    QCOMPARE(loader.find("PROBE"), loader.plugins()[1].get());
    QCOMPARE(loader.find("prob"), nullptr);
}

void TestPluginLoader::copiesOfAPluginAreToldApart()
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath("probe.so");
    QVERIFY(QFile::copy(pluginFile("probe"), copy));
    PluginLoader loader;
    loader.loadFile(pluginFile("probe"));
    QCOMPARE(loader.plugins()[0]->label, QString("Probe"));
    loader.loadFile(pluginFile("nothing"));
    loader.loadFile(copy);
    QCOMPARE(loader.plugins()[0]->label, "Probe (" + pluginFile("probe") + ')');
    QCOMPARE(loader.plugins()[1]->label, QString("nothing"));
    QCOMPARE(loader.plugins()[2]->label, "Probe (" + copy + ')');
    QCOMPARE(loader.find("probe"), loader.plugins()[0].get());
    QCOMPARE(loader.find("Probe (" + copy + ')'), loader.plugins()[2].get());
}

void TestPluginLoader::tellsFileAndReasonOfABrokenPlugin_data()
{
    QTest::addColumn<QString>("part");
    QTest::newRow("no_plugin") << "no plug-in";
    QTest::newRow("no_object") << "makes no plug-in object";
    QTest::newRow("other_interface") << "\"org.tarvek.desktop.WidgetInterface/9.9\"";
    QTest::newRow("deaf_object") << "DeafObject";
    QTest::newRow("missing_symbol") << "functionThatNobodyHas";
    QTest::newRow("throws_at_start") << "no licence for a good start";
}

void TestPluginLoader::tellsFileAndReasonOfABrokenPlugin()
{
    QFETCH(QString, part);
    const QString file = pluginFile(QTest::currentDataTag());
    PluginLoader loader;
    loader.loadFile(file);
    QVERIFY(loader.plugins().empty());
    QCOMPARE(loader.failures().size(), size_t(1));
    QCOMPARE(loader.failures()[0].file, file);
    QVERIFY2(loader.failures()[0].reason.contains(part), qPrintable(loader.failures()[0].reason));
}

void TestPluginLoader::aPluginOfAnotherToolkitIsRefused_data()
{
    QTest::addColumn<QByteArray>("library");
    QTest::addColumn<int>("toolkit");
    for (const int toolkit : {4, 5, 6, 7, 100})
        for (const auto& [mark, other] :
             {std::pair(sectionMark, noteMark), std::pair(noteMark, sectionMark)})
            if (toolkit != QT_VERSION_MAJOR)
                QTest::addRow("Qt %d, %s", toolkit, mark.constData() + 2)
                    << probeOf(static_cast<char>(toolkit), mark, other) << toolkit;
}

void TestPluginLoader::aPluginOfAnotherToolkitIsRefused()
{
    QFETCH(QByteArray, library);
    QFETCH(int, toolkit);
    const QTemporaryDir folder;
    const QString file = folder.filePath("other.so");
    write(file, library);
    PluginLoader loader;
    loader.loadFile(file);
    QVERIFY(loader.plugins().empty());
    QCOMPARE(loader.failures().size(), size_t(1));
    QCOMPARE(loader.failures()[0].reason,
             QString("It was built with Qt %1, and this program with Qt %2. Get a version made for "
                     "this program.")
                 .arg(toolkit)
                 .arg(QT_VERSION_MAJOR));
}

void TestPluginLoader::aFileThatIsNoLibraryIsAFailure_data()
{
    QFile whole(pluginFile("probe"));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray library = whole.readAll();
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("#!/bin/sh\nexit 1\n");
    QTest::newRow("head of a library only") << library.left(64);
    QTest::newRow("half a library") << library.left(library.size() / 2);
    QTest::newRow("noise behind the head") << library.left(64) + QByteArray(100000, '\xa5');
}

void TestPluginLoader::aFileThatIsNoLibraryIsAFailure()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString file = folder.filePath("odd.so");
    write(file, content);
    PluginLoader loader;
    loader.loadFile(file);
    QVERIFY(loader.plugins().empty());
    QCOMPARE(loader.failures().size(), size_t(1));
    QVERIFY(!loader.failures()[0].reason.isEmpty());
}

void TestPluginLoader::whatIsNotThereIsAFailure()
{
    const QTemporaryDir folder;
    PluginLoader loader;
    loader.loadFile(folder.filePath("none.so"));
    loader.loadFolder(folder.filePath("none"));
    QCOMPARE(loader.failures().size(), size_t(2));
    QCOMPARE(loader.failures()[0].file, folder.filePath("none.so"));
    QCOMPARE(loader.failures()[1].file, folder.filePath("none"));
}

void TestPluginLoader::brokenPluginsKeepNoneFromLoading()
{
    PluginLoader loader;
    loader.loadFolder(TEST_PLUGIN_DIR);
    QVERIFY(loader.find("Probe"));
    QVERIFY(loader.find("throws"));
    QVERIFY(loader.find("nothing"));
    QVERIFY(loader.find("table"));
    QCOMPARE(loader.plugins().size(), size_t(4));
    QCOMPARE(loader.failures().size(), size_t(6));
    QCOMPARE(loader.folders(), QStringList(TEST_PLUGIN_DIR));
}

void TestPluginLoader::otherFilesInAFolderAreLeftAlone()
{
    const QTemporaryDir folder;
    write(folder.filePath("README.txt"), "not for loading");
    QVERIFY(QDir(folder.path()).mkdir("sub.so"));
    PluginLoader loader;
    loader.loadFolder(folder.path());
    QVERIFY(loader.plugins().empty());
    QVERIFY(loader.failures().empty());
}

void TestPluginLoader::aFileIsLoadedOnceUnderAnyPath()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath("again.so");
    QVERIFY(QFile::link(pluginFile("probe"), link));
    QStringList paths{pluginFile("probe"), TEST_PLUGIN_DIR "/./probe.so", link};
    for (int first = 0; first < paths.size(); ++first) {
        PluginLoader loader;
        for (const QString& path : paths)
            loader.loadFile(path);
        QCOMPARE(loader.plugins().size(), size_t(1));
        QVERIFY(loader.failures().empty());
        paths.append(paths.takeFirst());
    }
}

void TestPluginLoader::aFolderIsLoadedOnce()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath("none");
    PluginLoader loader;
    for (const QString& path : {missing, missing, missing + "/"})
        loader.loadFolder(path);
    QCOMPARE(loader.failures().size(), size_t(1));
    QCOMPARE(loader.folders(), QStringList(missing));
}

REGISTER_TEST(TestPluginLoader, QApplication)
#include "tst_plugin_loader.moc"
