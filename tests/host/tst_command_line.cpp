// SPDX-License-Identifier: MIT
#include "command_line.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/usage_error.h>
#include <kit/version_text.h>

#include <QtTest>

#include <algorithm>

using Words = std::vector<std::string>;

Q_DECLARE_METATYPE(Words)

/// What the program makes of its words.
class TestCommandLine : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void withoutWordsItAsks();
    void understandsEveryOption();
    void takesThePasswordFromAFile();
    void aRelativeFolderStaysTheSame();
    void aFileIsAConfigurationOrAWorkspace();
    void refusesWithAReason_data();
    void refusesWithAReason();
    void aWorkspaceGoesWithNoOptionOfOneRobot_data();
    void aWorkspaceGoesWithNoOptionOfOneRobot();
    void aWorkspaceGoesWithWhatHoldsForAllRobots();
    void keepsItsPluginOptionFromTheToolkit();
    void helpNamesEveryOption();
    void versionNamesTheProgramAndItsToolkit();
    void aTextIsSeenBeforehand();
    void aShellIsToldOfTheOptions();

private:
    QString file(const QByteArray& content);

    QScopedPointer<QTemporaryDir> fFolder;
};

void TestCommandLine::init()
{
    fFolder.reset(new QTemporaryDir);
}

QString TestCommandLine::file(const QByteArray& content)
{
    QFile file(fFolder->filePath("file"));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

void TestCommandLine::withoutWordsItAsks()
{
    const CommandLine line = parseCommandLine({});
    QVERIFY(line.action == CommandLine::Action::Run);
    QVERIFY(!line.connectAtOnce);
    QVERIFY(line.settings.address == ZoAddress());
    QVERIFY(line.panel.isEmpty() && line.imageDir.isEmpty());
    QVERIFY(line.pluginFiles.isEmpty() && line.pluginDirs.isEmpty());
    QVERIFY(!line.lostAfter);
    QVERIFY(line.language.isEmpty());
}

void TestCommandLine::understandsEveryOption()
{
    const std::string some = file("secret\n").toStdString();
    const std::string dir = fFolder->path().toStdString();
    const CommandLine line = parseCommandLine({"--connect",
                                               "robot:7000",
                                               "--user",
                                               "me",
                                               "--password-file",
                                               some,
                                               "--tls",
                                               "--ca",
                                               some,
                                               "--plugin",
                                               "a.so",
                                               "--plugin",
                                               "b.so",
                                               "--plugin-dir",
                                               dir,
                                               "--image-dir",
                                               dir,
                                               "--panel",
                                               "Glimmet",
                                               "--cert",
                                               some,
                                               "--key",
                                               some,
                                               "--timeout",
                                               "300",
                                               "--no-remember",
                                               "--lost-after",
                                               "120",
                                               "--ssh",
                                               "me@gate",
                                               "--prefix",
                                               "robot7/",
                                               "--language",
                                               "ja"});
    QCOMPARE(line.language, QString("ja"));
    QCOMPARE(line.settings.prefix, QString("robot7/"));
    QCOMPARE(line.settings.jumpHost, QString("me@gate"));
    QVERIFY(line.forgets && !parseCommandLine({}).forgets);
    QVERIFY(line.action == CommandLine::Action::Run);
    QVERIFY(line.connectAtOnce);
    QCOMPARE(line.settings.addressText(), QString("robot:7000"));
    QCOMPARE(line.settings.user, QString("me"));
    QCOMPARE(line.settings.password, std::string("secret"));
    QVERIFY(line.settings.tls);
    QCOMPARE(line.settings.caFile.toStdString(), some);
    const ZoBrokerOptions options = line.settings.brokerOptions();
    QCOMPARE(options.tlsCertFile, some);
    QCOMPARE(options.tlsKeyFile, some);
    QCOMPARE(options.connectTimeout.count(), 300);
    QCOMPARE(line.pluginFiles, QStringList({"a.so", "b.so"}));
    QCOMPARE(line.pluginDirs, QStringList(fFolder->path()));
    QCOMPARE(line.imageDir, fFolder->path());
    QCOMPARE(line.panel, QString("Glimmet"));
    QVERIFY(line.lostAfter == std::chrono::minutes(2));
}

void TestCommandLine::takesThePasswordFromAFile()
{
    const std::string path = file("gr\xc3\xbc\xc3\x9f\nnote\n").toStdString();
    const CommandLine line = parseCommandLine({"--password-file", path});
    QCOMPARE(line.settings.password, std::string("gr\u00fc\u00df"));
    QCOMPARE(line.settings.brokerOptions().password, std::string("gr\u00fc\u00df"));
}

void TestCommandLine::aRelativeFolderStaysTheSame()
{
    QCOMPARE(parseCommandLine({"--plugin-dir", "."}).pluginDirs, QStringList(QDir::currentPath()));
}

void TestCommandLine::aFileIsAConfigurationOrAWorkspace()
{
    const QString some = file("<stm_viewer/>");
    const CommandLine configuration = parseCommandLine({"--panel", "x", some.toStdString()});
    QCOMPARE(configuration.file, some);
    QVERIFY(configuration.workspace.isEmpty());
    const QString workspace = fFolder->filePath("my robots.TARVEK");
    QVERIFY(QFile::rename(some, workspace));
    const CommandLine line = parseCommandLine({"--", workspace.toStdString()});
    QCOMPARE(line.workspace, workspace);
    QVERIFY(line.file.isEmpty());
    for (const Words& words :
         {Words{"--workspace", workspace.toStdString(), workspace.toStdString()},
          Words{"--connect", "robot", workspace.toStdString()}})
        QVERIFY_EXCEPTION_THROWN(parseCommandLine(words), kit::UsageError);
}

void TestCommandLine::refusesWithAReason_data()
{
    QTest::addColumn<Words>("words");
    QTest::addColumn<QString>("part");
    QTest::newRow("unknown option") << Words{"--colour"} << "colour";
    QTest::newRow("stray word") << Words{"robot:7000"} << "--connect HOST";
    QTest::newRow("two files") << Words{"/proc/version", "/proc/stat"} << "one file too many";
    QTest::newRow("a folder") << Words{"/proc"} << "there is no file '/proc'";
    QTest::newRow("no value") << Words{"--connect"} << "connect";
    QTest::newRow("bad address") << Words{"--connect", "robot:x"} << "port must be a number";
    QTest::newRow("no password file")
        << Words{"--password-file", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("authorities without encryption") << Words{"--ca", "/dev/null"} << "--tls";
    QTest::newRow("no file of authorities")
        << Words{"--tls", "--ca", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("an option for ssh") << Words{"--ssh", "-oProxyCommand=x"} << "USER@HOST";
    QTest::newRow("an option for ssh in a URL") << Words{"--ssh", "ssh://-x"} << "USER@HOST";
    QTest::newRow("ssh to several nodes")
        << Words{"--ssh", "gate", "--connect", "arm,leg"} << "--ssh: ssh leads to one server";
    QTest::newRow("ssh to sentinels")
        << Words{"--ssh", "gate", "--sentinel", "arms"} << "--ssh: ssh leads to one server";
    QTest::newRow("a sentinel's name without end")
        << Words{"--sentinel", std::string(257, 'x')} << "--sentinel: the name";
    QTest::newRow("no workspace") << Words{"--workspace", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("a folder as a workspace") << Words{"--workspace", "/"} << "--workspace";
    QTest::newRow("no plug-in folder")
        << Words{"--plugin-dir", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("too long a wait") << Words{"--lost-after", "604801"} << "604800";
    QTest::newRow("no wait") << Words{"--lost-after", "1h"} << "--lost-after";
    QTest::newRow("no image folder") << Words{"--image-dir", "/dev/null"} << "/dev/null";
    QTest::newRow("no such language")
        << Words{"--language", "tlh"}
        << "there is no language 'tlh', but these: de, en, es, fr, ja";
    QTest::newRow("a country's language") << Words{"--language", "de_AT"} << "'de_AT'";
}

void TestCommandLine::refusesWithAReason()
{
    QFETCH(Words, words);
    QFETCH(QString, part);
    try {
        parseCommandLine(words);
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QVERIFY2(QString(error.what()).contains(part), error.what());
    }
}

void TestCommandLine::aWorkspaceGoesWithNoOptionOfOneRobot_data()
{
    QTest::addColumn<Words>("words");
    const char* some = "/proc/self/exe";
    for (const Words& words :
         {Words{"--connect", "robot"}, Words{"--user", "me"}, Words{"--password-file", some},
          Words{"--tls"}, Words{"--ca", some}, Words{"--cert", some}, Words{"--key", some},
          Words{"--timeout", "9"}, Words{"--ssh", "me@gate"}, Words{"--panel", "Glimmet"},
          Words{"--no-remember"}})
        QTest::newRow(words[0].c_str()) << words;
}

void TestCommandLine::aWorkspaceGoesWithNoOptionOfOneRobot()
{
    QFETCH(Words, words);
    const QString reason = "--workspace: has robots and panels of its own: leave %1 out";
    const QString option = QString::fromStdString(words[0]);
    words.insert(words.end(), {"--workspace", "/proc/self/exe"});
    try {
        parseCommandLine(words);
        QFAIL("accepted");
    } catch (const kit::UsageError& error) {
        QCOMPARE(QString(error.what()), reason.arg(option));
    }
}

void TestCommandLine::aWorkspaceGoesWithWhatHoldsForAllRobots()
{
    const std::string dir = fFolder->path().toStdString();
    const CommandLine line =
        parseCommandLine({"--workspace", "/proc/self/exe", "--lost-after", "60", "--plugin", "a.so",
                          "--plugin-dir", dir, "--image-dir", dir});
    QCOMPARE(line.workspace, QString("/proc/self/exe"));
    QVERIFY(line.lostAfter == std::chrono::minutes(1));
}

void TestCommandLine::keepsItsPluginOptionFromTheToolkit()
{
    QCOMPARE(hidePluginOption({"a", "--plugin", "b.so", "--tls"}),
             Words({"a", "--plugin=b.so", "--tls"}));
    QCOMPARE(hidePluginOption({"--plugin=b.so", "--plugin-dir", "c"}),
             Words({"--plugin=b.so", "--plugin-dir", "c"}));
    QCOMPARE(hidePluginOption({"--plugin", "--plugin"}), Words({"--plugin=--plugin"}));
    QCOMPARE(hidePluginOption({"--plugin"}), Words({"--plugin"}));
    QCOMPARE(hidePluginOption({}), Words());
}

void TestCommandLine::helpNamesEveryOption()
{
    QVERIFY(parseCommandLine({"--tls", "--help", "--colour"}).action == CommandLine::Action::Help);
    const QString help = QString::fromStdString(desktopHelp());
    for (const QString option :
         {"--connect", "--user", "--password-file", "--tls", "--ca", "--cert", "--key", "--timeout",
          "--plugin", "--plugin-dir", "--no-remember", "--ssh", "--workspace", "--image-dir",
          "--panel", "--language", "--help", "--version"})
        QVERIFY2(help.contains(option), qPrintable(option));
}

void TestCommandLine::versionNamesTheProgramAndItsToolkit()
{
    QVERIFY(parseCommandLine({"-v"}).action == CommandLine::Action::Version);
    const QString text = QString::fromStdString(desktopVersion());
    QVERIFY2(text.startsWith(QCoreApplication::applicationName() + ' ' +
                             QString::fromStdString(kit::programVersion()) + "\nQt " + qVersion() +
                             "\nQtKeychain "),
             qPrintable(text));
}

void TestCommandLine::aShellIsToldOfTheOptions()
{
    const Words names = completeCommandLine({"--tls", "--"}).texts;
    QVERIFY(std::find(names.begin(), names.end(), "--workspace") != names.end());
    QCOMPARE(completeCommandLine({"--language", ""}).texts, Words({"de", "en", "es", "fr", "ja"}));
    QVERIFY(completeCommandLine({"--image-dir", ""}).isFile);
    QVERIFY(!completeCommandLine({"--panel", ""}).isFile);
    QVERIFY(completeCommandLine({"x"}).isFile);
}

void TestCommandLine::aTextIsSeenBeforehand()
{
    QVERIFY(actionOf({"--tls", "--help"}) == CommandLine::Action::Help);
    QVERIFY(actionOf({"-v", "--nonsense"}) == CommandLine::Action::Version);
    QVERIFY(actionOf({}) == CommandLine::Action::Run);
    QVERIFY(actionOf({"--panel", "--help"}) == CommandLine::Action::Run);
    QVERIFY(actionOf({"-platform", "offscreen", "--help"}) == CommandLine::Action::Run);
    QVERIFY(actionOf({"--password-file", "/nowhere"}) == CommandLine::Action::Run);
}

REGISTER_TEST(TestCommandLine, QCoreApplication)
#include "tst_command_line.moc"
