// SPDX-License-Identifier: MIT
#include "e2e/desktop_program.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/program.h"
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
    void manualPagesNameEveryOption();
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
                            "bin/zo-record",
                            lib + "/libzo.so",
                            lib + "/" TARVEK_LIBRARY,
                            lib + "/" PLUGIN_FOLDER "/libglimmet.so",
                            lib + "/cmake/zo/zoConfig.cmake",
                            lib + "/cmake/tarvek/tarvekConfig.cmake",
                            "include/zo/zo.h",
                            "include/tarvek/widget_interface.h",
                            "share/tarvek/buttons/save.png",
                            "share/tarvek/docs/user-guide.md",
                            "share/tarvek/docs/pictures/panel.png",
                            "share/applications/tarvek-desktop.desktop",
                            "share/icons/hicolor/scalable/apps/tarvek-desktop.svg",
                            "share/icons/hicolor/16x16/apps/tarvek-desktop.png",
                            "share/icons/hicolor/256x256/apps/tarvek-desktop.png",
                            "share/man/man1/tarvek-desktop.1",
                            "share/man/man1/tarvek-robot.1",
                            "share/man/man1/zo.1",
                            "share/man/man1/zo-record.1",
                            "share/mime/packages/tarvek.xml",
                            "share/bash-completion/completions/zo",
                            "share/fish/vendor_completions.d/zo-record.fish",
                            "share/zsh/site-functions/_tarvek-robot",
                            "share/metainfo/org.tarvek.desktop.metainfo.xml"};
    for (const QString& file : files)
        QVERIFY2(QFile::exists(path(file)), qPrintable(file));
}

void TestInstall::programsRunFromTheInstalledTree()
{
    QVERIFY(run(path("bin/tarvek-desktop"), {"--version"}));
    QVERIFY(run(path("bin/tarvek-robot"), {"--version"}));
    QVERIFY(run(path("bin/zo"), {"--version"}));
    QVERIFY(run(path("bin/zo"), {"record", "--version"}));
}

void TestInstall::manualPagesNameEveryOption()
{
    const QRegularExpression option("--[a-z][a-z-]+");
    for (const QString program : {"tarvek-desktop", "tarvek-robot", "zo", "zo-record"}) {
        Program help(path("bin/" + program), {"--help"});
        help.start();
        QCOMPARE(help.waitForExit(), 0);
        QFile file(path("share/man/man1/" + program + ".1"));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(program));
        const QString page = QString::fromUtf8(file.readAll()).remove('\\');
        auto options = option.globalMatch(QString::fromUtf8(help.output()));
        QVERIFY(options.hasNext());
        while (options.hasNext()) {
            const QString name = options.next().captured();
            QVERIFY2(page.contains(name), qPrintable(program + ": " + name));
        }
    }
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
    QVERIFY(run(CMAKE_PROGRAM, {"--install", build}));
    DesktopProgram desktop(path("bin/tarvek-desktop"), desktopWords("libother"));
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
