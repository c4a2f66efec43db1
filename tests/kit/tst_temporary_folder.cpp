// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <kit/temporary_folder.h>

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>
#include <system_error>

using kit::TemporaryFolder;

/// Where programs put files that go with them.
class TestTemporaryFolder : public GuardedTest
{
    Q_OBJECT

private slots:
    void onlyItsUserMayEnterIt();
    void goesWithAllThatIsInIt();
    void everyoneIsANewOne();
    void noPlaceForItIsAnError();
};

void TestTemporaryFolder::onlyItsUserMayEnterIt()
{
    const mode_t before = ::umask(0);
    const TemporaryFolder folder("some-name");
    ::umask(before);
    struct stat status = {};
    QCOMPARE(::stat(folder.path().c_str(), &status), 0);
    QVERIFY(S_ISDIR(status.st_mode));
    QCOMPARE(status.st_mode & 0777U, 0700U);
    QVERIFY(QFileInfo(QString::fromStdString(folder.path())).fileName().startsWith("some-name-"));
}

void TestTemporaryFolder::goesWithAllThatIsInIt()
{
    QString path;
    {
        const TemporaryFolder folder("test");
        path = QString::fromStdString(folder.path());
        QVERIFY(QDir(path).mkpath("one/two"));
        QFile file(path + "/one/two/file");
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(!path.isEmpty() && !QFileInfo::exists(path));
}

void TestTemporaryFolder::everyoneIsANewOne()
{
    const TemporaryFolder first("test");
    const TemporaryFolder second("test");
    QVERIFY(first.path() != second.path());
}

void TestTemporaryFolder::noPlaceForItIsAnError()
{
    QVERIFY_EXCEPTION_THROWN(TemporaryFolder("no/such/place"), std::system_error);
}

REGISTER_TEST(TestTemporaryFolder, NoApplication)
#include "tst_temporary_folder.moc"
