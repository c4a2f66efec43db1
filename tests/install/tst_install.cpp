// SPDX-License-Identifier: MIT
#include "e2e/desktop_program.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QtTest>

#include <csignal>

/// The tree that `cmake --install` makes, in a folder of its own.
class TestInstall : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void everythingIsThere();
    void programsRunFromTheInstalledTree();
    void theDesktopFindsItsPanelAndImages();
    void anotherPluginIsBuiltAgainstItAndRuns();

private:
    QString path(const QString& relative) const { return fTree.filePath("tree/" + relative); }
    bool run(const QString& program, const QStringList& words);
    QStringList desktopWords(const QString& panel) const;

    QTemporaryDir fTree;
    QScopedPointer<RedisServer> fRobot;
};

bool TestInstall::run(const QString& program, const QStringList& words)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, words);
    const bool ended = process.waitForFinished(250000);
    const bool good = ended && process.exitStatus() == QProcess::NormalExit && !process.exitCode();
    if (!good)
        qInfo("%s", process.readAll().constData());
    return good;
}

void TestInstall::initTestCase()
{
    GuardedTest::initTestCase();
    QVERIFY(run(CMAKE_PROGRAM, {"--install", BUILD_DIR, "--prefix", path("")}));
}

void TestInstall::init()
{
    fRobot.reset(new RedisServer);
}

QStringList TestInstall::desktopWords(const QString& panel) const
{
    return DesktopProgram::wordsFor(*fRobot) + QStringList{"--panel", panel};
}

void TestInstall::everythingIsThere()
{
    const QString lib = LIB_DIR;
    const QStringList files{"bin/tarvek-desktop",
                            "bin/tarvek-robot",
                            "bin/zo",
                            lib + "/libzo.so",
                            lib + "/libtarvek.so",
                            lib + "/tarvek/plugins/libglimmet.so",
                            lib + "/cmake/zo/zoConfig.cmake",
                            lib + "/cmake/tarvek/tarvekConfig.cmake",
                            "include/zo/zo.h",
                            "include/tarvek/widget_interface.h",
                            "share/tarvek/buttons/save.png",
                            "share/applications/tarvek-desktop.desktop",
                            "share/icons/hicolor/scalable/apps/tarvek-desktop.svg",
                            "share/icons/hicolor/128x128/apps/tarvek-desktop.png"};
    for (const QString& file : files)
        QVERIFY2(QFile::exists(path(file)), qPrintable(file));
}

void TestInstall::programsRunFromTheInstalledTree()
{
    QVERIFY(run(path("bin/tarvek-desktop"), {"--version"}));
    QVERIFY(run(path("bin/tarvek-robot"), {"--version"}));
    QVERIFY(run(path("bin/zo"), {"--version"}));
}

void TestInstall::theDesktopFindsItsPanelAndImages()
{
    DesktopProgram desktop(path("bin/tarvek-desktop"), desktopWords("Glimmet"));
    desktop.start();
    QVERIFY(desktop.waitForDialogOf("libglimmet.so"));
    desktop.signal(SIGTERM);
    QVERIFY(desktop.waitForFinished(patience));
    QCOMPARE(desktop.warnings(), QString());
}

void TestInstall::anotherPluginIsBuiltAgainstItAndRuns()
{
    const QString build = fTree.filePath("other");
    QVERIFY(run(CMAKE_PROGRAM,
                {"-S", OTHER_PLUGIN_DIR, "-B", build, "-G", "Ninja",
                 "-DCMAKE_PREFIX_PATH=" + path(""), QString("-DCMAKE_CXX_COMPILER=") + CXX_PROGRAM,
                 QString("-DCMAKE_CXX_FLAGS=") + CXX_FLAGS}));
    QVERIFY(run(CMAKE_PROGRAM, {"--build", build}));
    DesktopProgram desktop(path("bin/tarvek-desktop"),
                           desktopWords("libother") +
                               QStringList{"--plugin", build + "/libother.so"});
    desktop.start();
    TRY_COMPARE(fRobot->command({"EXISTS", "Other/Images"}), std::string("1"));
    QCOMPARE(QString::fromStdString(fRobot->command({"GET", "Other/Images"})),
             '"' + QDir(path("share/tarvek")).canonicalPath() + "/\"");
    desktop.signal(SIGTERM);
    QVERIFY(desktop.waitForFinished(patience));
    QCOMPARE(desktop.warnings(), QString());
}

REGISTER_TEST(TestInstall, QCoreApplication)
#include "tst_install.moc"
