// SPDX-License-Identifier: MIT
#include "command_line.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/usage_error.h>

#include <QtTest>

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
    void refusesWithAReason_data();
    void refusesWithAReason();
    void keepsItsPluginOptionFromTheToolkit();
    void helpNamesEveryOption();
    void versionNamesTheProgram();
    void aTextIsSeenBeforehand();

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
}

void TestCommandLine::understandsEveryOption()
{
    const std::string some = file("secret\n").toStdString();
    const std::string dir = fFolder->path().toStdString();
    const CommandLine line =
        parseCommandLine({"--connect",   "robot:7000", "--user",  "me",           "--password-file",
                          some,          "--tls",      "--ca",    some,           "--plugin",
                          "a.so",        "--plugin",   "b.so",    "--plugin-dir", dir,
                          "--image-dir", dir,          "--panel", "Glimmet",      "--cert",
                          some,          "--key",      some,      "--timeout",    "300"});
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

void TestCommandLine::refusesWithAReason_data()
{
    QTest::addColumn<Words>("words");
    QTest::addColumn<QString>("part");
    QTest::newRow("unknown option") << Words{"--colour"} << "colour";
    QTest::newRow("stray word") << Words{"robot:7000"} << "--connect HOST";
    QTest::newRow("no value") << Words{"--connect"} << "connect";
    QTest::newRow("bad address") << Words{"--connect", "robot:x"} << "port must be a number";
    QTest::newRow("no password file")
        << Words{"--password-file", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("authorities without encryption") << Words{"--ca", "/dev/null"} << "--tls";
    QTest::newRow("no file of authorities")
        << Words{"--tls", "--ca", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("no plug-in folder")
        << Words{"--plugin-dir", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("no image folder") << Words{"--image-dir", "/dev/null"} << "/dev/null";
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
          "--plugin", "--plugin-dir", "--image-dir", "--panel", "--help", "--version"})
        QVERIFY2(help.contains(option), qPrintable(option));
}

void TestCommandLine::versionNamesTheProgram()
{
    QVERIFY(parseCommandLine({"-v"}).action == CommandLine::Action::Version);
    QCoreApplication::setApplicationVersion("1.2.3");
    QCOMPARE(desktopVersion(), (QCoreApplication::applicationName() + " 1.2.3\n").toStdString());
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
