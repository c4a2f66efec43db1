// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <replay/recorded_file.h>

#include <QTemporaryDir>
#include <QtTest>

#include <functional>

/// Files of recordings that somebody has made to hurt, or changes while they are played.
class TestRecordedFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void aLoopedFileThatChangesIsRefused_data();
    void aLoopedFileThatChangesIsRefused();
    void changesOfTooManyBytesAreRefused_data();
    void changesOfTooManyBytesAreRefused();
    void valuesThatReplaceOthersTakeNoMoreRoom();

private:
    QString path() const { return fFolder.filePath("a.csv"); }
    void readAll() const { readAll(RecordedFile(path().toStdString())); }
    static void readAll(RecordedFile&& recording)
    {
        ReplayStep step;
        while (recording.next(step)) {
        }
    }

    QTemporaryDir fFolder;
};

namespace {

const QByteArray table = "time,a,b\r\n1,1,2\r\n2,1,2\r\n";
const QByteArray changes = "time,key,type,value\r\n1,a,int,1\r\n2,a,int,2\r\n";

QString errorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

} // namespace

void TestRecordedFile::aLoopedFileThatChangesIsRefused_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray other = "time,a,c\r\n100.000,1,2\r\n";
    QTest::newRow("another name") << table << other;
    QTest::newRow("another form") << table << changes;
    QTest::newRow("changes no more") << changes << QByteArray("time,a,b,c\r\n100.000,1,2,3\r\n");
    QTest::newRow("a column less") << table << QByteArray("time,a\r\n100.000,1\r\n");
    QTest::newRow("empty") << table << QByteArray();
}

void TestRecordedFile::aLoopedFileThatChangesIsRefused()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    writeBytes(path(), before);
    RecordedFile recording(path().toStdString());
    ReplayStep step;
    for (int round = 0; round < 2; ++round) {
        QVERIFY(recording.next(step) && recording.next(step) && !recording.next(step));
        recording.rewind();
    }
    writeBytes(path(), after);
    const QString error = errorOf([&] { recording.rewind(); });
    QVERIFY2(error.contains("somebody has changed the file"), qPrintable(error));
}

void TestRecordedFile::changesOfTooManyBytesAreRefused_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("message");
    const QString atOnce = "1";
    const QString apart = "%1";
    QTest::newRow("keys") << 1000001 << 1 << "%1" << apart << "one key more than 1000000";
    QTest::newRow("values") << 70 << 1000000 << "%1" << apart
                            << "of all keys take more than 64 MiB";
    QTest::newRow("a moment") << 70 << 1000000 << "a" << atOnce
                              << "of one moment take more than 64 MiB";
}

void TestRecordedFile::changesOfTooManyBytesAreRefused()
{
    QFETCH(int, count);
    QFETCH(int, size);
    QFETCH(QString, key);
    QFETCH(QString, time);
    QFETCH(QString, message);
    QByteArray text = "time,key,type,value\r\n";
    const QByteArray value(size, '1');
    const auto numbered = [](const QString& form, int i) {
        return form.contains('%') ? form.arg(i).toLatin1() : form.toLatin1();
    };
    for (int i = 0; i < count; ++i)
        text += numbered(time, i) + "," + numbered(key, i) + ",int," + value + "\r\n";
    writeBytes(path(), text);
    const QString error = errorOf([&] { readAll(); });
    QVERIFY2(error.contains(message), qPrintable(error));
}

void TestRecordedFile::valuesThatReplaceOthersTakeNoMoreRoom()
{
    QByteArray text = "time,key,type,value\r\n";
    const QByteArray value(1000000, '1');
    for (int i = 0; i < 100; ++i)
        text += QByteArray::number(i) + ",a,int," + value + "\r\n";
    text += "100,,gap,\r\n";
    for (int i = 101; i < 160; ++i)
        text += QByteArray::number(i) + "," + QByteArray::number(i) + ",int," + value + "\r\n";
    writeBytes(path(), text);
    readAll();
}

REGISTER_TEST(TestRecordedFile, NoApplication)
#include "tst_recorded_file.moc"
