// SPDX-License-Identifier: MIT
#include "support/config_files.h"
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <memory>

namespace {

// Marks every text that asks for its translation in the context of the class.
class Marker : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "ConfigManager") == 0 ? "~" + QString::fromUtf8(text) : QString();
    }
};

} // namespace

/// What the user is told about a configuration file that cannot be used.
class TestConfigMessages : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aMissingFolderCannotBeSavedTo();
    void aMissingFileCannotBeLoaded();
    void aFileThatIsNoXmlCannotBeLoaded_data();
    void aFileThatIsNoXmlCannotBeLoaded();
    void anotherRootElementCannotBeLoaded();
    void theDescriptionFillsTheLowestMarkerOfThePath();
    void messagesAreTranslated();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestConfigMessages::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(fFolder->isValid());
}

void TestConfigMessages::aMissingFolderCannotBeSavedTo()
{
    const QString name = path("none/%2/keys.xml");
    QCOMPARE(saveMessage(newModule(), name),
             "Failed to open location " + name +
                 " for writing.\n%2\nConfiguration file will not be saved.");
}

void TestConfigMessages::aMissingFileCannotBeLoaded()
{
    const QString name = path("none %1 %2.xml");
    QCOMPARE(loadMessage(newModule(), name),
             "Failed to open location " + name +
                 " for reading.\nConfiguration file will not be loaded.");
}

void TestConfigMessages::aFileThatIsNoXmlCannotBeLoaded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("description");
    const QByteArray entry = "<stm_viewer><stm_value name='a' alias='a'/>";
    const QString cut = "Error reading Element value: the file ends inside a character.";
    QTest::newRow("empty") << QByteArray() << "Error document empty.";
    QTest::newRow("text") << QByteArray("hello") << "Error document empty.";
    QTest::newRow("open root") << entry << "Error reading Element value.";
    const QByteArray otherEnd = entry + "</x>";
    QTest::newRow("other end tag") << otherEnd << "Error reading end tag.";
    QTest::newRow("twice the same attribute")
        << QByteArray("<a b='1' b='2'/>") << "Error parsing Element.";
    QTest::newRow("mark and a cut character, 8 bytes")
        << QByteArray("\xEF\xBB\xBF<a>\xE2\x82") << cut;
    QTest::newRow("declared and cut in a character")
        << "<?xml version='1.0' encoding='UTF-8'?>" + entry + "\xF0\x9F" << cut;
    QTest::newRow("36,000 nested elements")
        << QByteArray("<a>").repeated(36000) + QByteArray("</a>").repeated(36000)
        << "Error parsing Element: more than 256 nested elements.";
}

void TestConfigMessages::aFileThatIsNoXmlCannotBeLoaded()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, description);
    const QString name = path("given.xml");
    writeBytes(name, bytes);
    const auto module = newModule();
    QCOMPARE(loadMessage(module, name), "Could not parse XML from location " + name + ".\n" +
                                            description +
                                            "\nConfiguration file will not be loaded.");
    QVERIFY(module->fModel->fSTMVals.empty());
}

void TestConfigMessages::anotherRootElementCannotBeLoaded()
{
    const QString name = path("other.xml");
    writeBytes(name, "<viewer><stm_value name='a' alias='a'/></viewer>");
    const auto module = newModule();
    QCOMPARE(loadMessage(module, name),
             "Incorrect Tarvek Glimmet configuration file at location " + name + ".\n.");
    QVERIFY(module->fModel->fSTMVals.empty());
}

void TestConfigMessages::theDescriptionFillsTheLowestMarkerOfThePath()
{
    const QString name = path("100%1.xml");
    writeBytes(name, "");
    QCOMPARE(loadMessage(newModule(), name), "Could not parse XML from location " +
                                                 path("100Error document empty..xml") +
                                                 ".\n%2\nConfiguration file will not be loaded.");
    writeBytes(path("100%2.xml"), "");
    QCOMPARE(loadMessage(newModule(), path("100%2.xml")),
             "Could not parse XML from location " + path("100Error document empty..xml") +
                 ".\nError document empty.\nConfiguration file will not be loaded.");
}

void TestConfigMessages::messagesAreTranslated()
{
    Marker marker;
    QVERIFY(QCoreApplication::installTranslator(&marker));
    writeBytes(path("empty.xml"), "");
    writeBytes(path("other.xml"), "<a/>");
    QVERIFY(saveMessage(newModule(), path("none/a")).startsWith("~Failed to open location /"));
    QVERIFY(loadMessage(newModule(), path("none")).startsWith("~Failed to open location /"));
    QVERIFY(loadMessage(newModule(), path("empty.xml")).startsWith("~Could not parse XML from"));
    QVERIFY(loadMessage(newModule(), path("other.xml")).startsWith("~Incorrect Tarvek Glimmet"));
}

REGISTER_TEST(TestConfigMessages, QCoreApplication)
#include "tst_config_messages.moc"
