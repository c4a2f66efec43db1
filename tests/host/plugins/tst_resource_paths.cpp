// SPDX-License-Identifier: MIT
#include "plugins/resource_paths.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QtTest>

/// How panels are told where their images are.
class TestResourcePaths : public GuardedTest
{
    Q_OBJECT

private slots:
    void aPlainFolderGoesByItsName();
    void aFolderWithOtherLettersIsFoundByPanelsToo_data();
    void aFolderWithOtherLettersIsFoundByPanelsToo();
};

void TestResourcePaths::aPlainFolderGoesByItsName()
{
    QCOMPARE(imageDirForPanels("/opt/tarvek"), std::string("/opt/tarvek/"));
    QCOMPARE(imageDirForPanels("/opt/tarvek/"), std::string("/opt/tarvek/"));
}

void TestResourcePaths::aFolderWithOtherLettersIsFoundByPanelsToo_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Latin-1") << QString::fromUtf8("J\u00fcrgen");
    QTest::newRow("not Latin-1") << QString::fromUtf8("J\u00fcrgen \u673a\u5668");
}

void TestResourcePaths::aFolderWithOtherLettersIsFoundByPanelsToo()
{
    QFETCH(QString, name);
    const QTemporaryDir outer;
    const QDir folder(outer.filePath(name));
    QVERIFY(folder.mkpath("buttons"));
    QFile image(folder.filePath("buttons/save.png"));
    QVERIFY(image.open(QIODevice::WriteOnly));
    const std::string told = imageDirForPanels(folder.path());
    QVERIFY(QFile::exists(QString::fromLatin1(told.c_str()) + "buttons/save.png"));
    QVERIFY(!QFile::exists(QString::fromLatin1(told.c_str()) + "buttons/open.png"));
}

REGISTER_TEST(TestResourcePaths, QCoreApplication)
#include "tst_resource_paths.moc"
