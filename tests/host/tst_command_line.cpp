// SPDX-License-Identifier: MIT
#include "command_line.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

/// What the program makes of its words.
class TestCommandLine : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void withoutWordsItAsks();
    void understandsEveryOption();
    void takesThePasswordFromTheFirstLine_data();
    void takesThePasswordFromTheFirstLine();
    void refusesWithAReason_data();
    void refusesWithAReason();
    void refusesAPasswordFileOfAnotherKind();
    void keepsItsPluginOptionFromTheToolkit();
    void helpNamesEveryOption();
    void versionNamesTheProgram();

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
    const QString some = file("secret\n");
    const QString dir = fFolder->path();
    const CommandLine line =
        parseCommandLine({"--connect", "robot:7000", "--user", "me", "--password-file", some,
                          "--tls", "--ca", some, "--plugin", "a.so", "--plugin", "b.so",
                          "--plugin-dir", dir, "--image-dir", dir, "--panel", "Glimmet"});
    QCOMPARE(line.text, QString());
    QVERIFY(line.action == CommandLine::Action::Run);
    QVERIFY(line.connectAtOnce);
    QCOMPARE(line.settings.addressText(), QString("robot:7000"));
    QCOMPARE(line.settings.user, QString("me"));
    QCOMPARE(line.settings.password, QString("secret"));
    QVERIFY(line.settings.tls);
    QCOMPARE(line.settings.caFile, some);
    QCOMPARE(line.pluginFiles, QStringList({"a.so", "b.so"}));
    QCOMPARE(line.pluginDirs, QStringList(dir));
    QCOMPARE(line.imageDir, dir);
    QCOMPARE(line.panel, QString("Glimmet"));
}

void TestCommandLine::takesThePasswordFromTheFirstLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("password");
    QTest::newRow("no line end") << QByteArray("secret") << "secret";
    QTest::newRow("line end") << QByteArray("secret\n") << "secret";
    QTest::newRow("other line end") << QByteArray("secret\r\n") << "secret";
    QTest::newRow("more lines") << QByteArray("secret\nnote\n") << "secret";
    QTest::newRow("blanks count") << QByteArray(" two words \n") << " two words ";
    QTest::newRow("UTF-8") << QByteArray("gr\xc3\xbc\xc3\x9f\n")
                           << QString::fromUtf8("gr\u00fc\u00df");
}

void TestCommandLine::takesThePasswordFromTheFirstLine()
{
    QFETCH(QByteArray, content);
    const CommandLine line = parseCommandLine({"--password-file", file(content)});
    QTEST(line.settings.password, "password");
}

void TestCommandLine::refusesWithAReason_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("part");
    QTest::newRow("unknown option") << QStringList{"--colour"} << "colour";
    QTest::newRow("stray word") << QStringList{"robot:7000"} << "--connect HOST";
    QTest::newRow("no value") << QStringList{"--connect"} << "connect";
    QTest::newRow("bad address") << QStringList{"--connect", "robot:x"} << "port must be a number";
    QTest::newRow("no password file")
        << QStringList{"--password-file", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("authorities without encryption") << QStringList{"--ca", "/dev/null"} << "--tls";
    QTest::newRow("no file of authorities")
        << QStringList{"--tls", "--ca", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("no plug-in folder")
        << QStringList{"--plugin-dir", "/does/not/exist"} << "/does/not/exist";
    QTest::newRow("no image folder") << QStringList{"--image-dir", "/dev/null"} << "/dev/null";
}

void TestCommandLine::refusesWithAReason()
{
    QFETCH(QStringList, words);
    QFETCH(QString, part);
    const CommandLine line = parseCommandLine(words);
    QVERIFY(line.action == CommandLine::Action::Refuse);
    QVERIFY2(line.text.contains(part), qPrintable(line.text));
}

void TestCommandLine::refusesAPasswordFileOfAnotherKind()
{
    for (const QByteArray& content :
         {QByteArray(), QByteArray("\nsecret"), QByteArray(4097, 'x')}) {
        const QString path = file(content);
        const CommandLine line = parseCommandLine({"--password-file", path});
        QVERIFY(line.action == CommandLine::Action::Refuse);
        QVERIFY2(line.text.contains(path), qPrintable(line.text));
        QVERIFY(!line.text.contains("secret"));
    }
}

void TestCommandLine::keepsItsPluginOptionFromTheToolkit()
{
    using Words = std::vector<std::string>;
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
    const CommandLine line = parseCommandLine({"--help"});
    QVERIFY(line.action == CommandLine::Action::Inform);
    for (const QString option :
         {"--connect", "--user", "--password-file", "--tls", "--ca", "--plugin", "--plugin-dir",
          "--image-dir", "--panel", "--help", "--version"})
        QVERIFY2(line.text.contains(option), qPrintable(option));
}

void TestCommandLine::versionNamesTheProgram()
{
    QCoreApplication::setApplicationVersion("1.2.3");
    const CommandLine line = parseCommandLine({"--version"});
    QVERIFY(line.action == CommandLine::Action::Inform);
    QCOMPARE(line.text, QCoreApplication::applicationName() + " 1.2.3\n");
}

REGISTER_TEST(TestCommandLine, QCoreApplication)
#include "tst_command_line.moc"
