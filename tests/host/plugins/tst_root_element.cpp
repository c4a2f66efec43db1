// SPDX-License-Identifier: MIT
#include "plugins/root_element.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

/// Which panel a file is for is told by its root element.
class TestRootElement : public GuardedTest
{
    Q_OBJECT

private slots:
    void itIsReadFromTheBeginning_data();
    void itIsReadFromTheBeginning();
    void whatCannotBeReadHasNone();
};

void TestRootElement::itIsReadFromTheBeginning_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("name");
    const QString name = "stm_viewer";
    QTest::newRow("bare") << QByteArray("<stm_viewer><a/></stm_viewer>") << name;
    QTest::newRow("declared") << QByteArray("<?xml version=\"1.0\"?>\n<stm_viewer/>") << name;
    QTest::newRow("behind a comment") << QByteArray("<!-- <other/> --><stm_viewer a='1'/>") << name;
    QTest::newRow("Latin-1 behind it")
        << QByteArray("<stm_viewer><stm_value alias=\"\xe9\"/></stm_viewer>") << name;
    QTest::newRow("another") << QByteArray("<svg/>") << QString("svg");
    QTest::newRow("no end") << QByteArray("<stm_view") << QString();
    QTest::newRow("text") << QByteArray("stm_viewer") << QString();
    QTest::newRow("nothing") << QByteArray() << QString();
    QTest::newRow("too far away") << QByteArray("<!--" + QByteArray(1 << 17, ' ') +
                                                "--><stm_viewer/>")
                                  << QString();
}

void TestRootElement::itIsReadFromTheBeginning()
{
    QFETCH(QByteArray, text);
    QTemporaryFile file;
    QVERIFY(file.open() && file.write(text) == text.size() && file.flush());
    QTEST(rootElementOf(file.fileName()), "name");
}

void TestRootElement::whatCannotBeReadHasNone()
{
    for (const char* path : {"/no/where", "/proc", "/dev/zero"})
        QCOMPARE(rootElementOf(path), QString());
}

REGISTER_TEST(TestRootElement, QCoreApplication)
#include "tst_root_element.moc"
