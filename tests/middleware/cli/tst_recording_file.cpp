// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <row_sink.h>

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

std::atomic<int> syncs{0};
std::atomic<int> badSyncs{0}; ///< that are still to come

} // namespace

/// In place of the system's: it fails when a test wants that.
extern "C" int fdatasync(int descriptor)
{
    ++syncs;
    if (badSyncs == 0)
        return static_cast<int>(::syscall(SYS_fdatasync, descriptor));
    --badSyncs;
    errno = EIO;
    return -1;
}

/// The files of a recording.
class TestRecordingFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aNewFileHasItsHeaderAndTheRows();
    void aRecordingIsContinued_data();
    void aRecordingIsContinued();
    void aRowThatIsNotWholeIsCutAndTold();
    void whateverIsNoSuchRecordingIsRefusedAndStays_data();
    void whateverIsNoSuchRecordingIsRefusedAndStays();
    void nothingIsRecordedIntoAPipeOrAFolder();
    void aFileHasOneRecorder();
    void aFullDiskLeavesWholeRows();
    void anErrorOfTheDiskIsToldAtTheEnd();
    void aFileWithoutRightsIsNamed();
    void aFileThatIsMovedIsFollowedByAnother();
    void aFileThatIsDeletedIsTold();
    void anotherFileInItsPlaceIsNotTouched();
    void aFileThatOthersWriteIntoIsLeft_data();
    void aFileThatOthersWriteIntoIsLeft();
    void aRotatedFileThatIsMovedIsFollowedByAnother();
    void filesOfARotationAreNotNamedAfterAFolder();
    void anotherFileBeginsWhenOneIsFull();
    void anotherFileBeginsWhenOneIsOld();
    void aFileThatIsThereIsNeverReplaced();

private:
    QString path() const { return fFolder->filePath("a.csv"); }
    std::string error(const std::function<void()>& action) const;

    std::unique_ptr<QTemporaryDir> fFolder;
    QStringList fTold;
    const std::function<void(const std::string&)> fTell = [this](const std::string& text) {
        fTold += QString::fromStdString(text);
    };
};

namespace {

const RecordingFile::Form form{"time,a\r\n", 2};
constexpr auto now = 100s;

/// As a recorder does; whether they begin another file.
bool put(RowSink& sink, const std::string& rows, RowSink::Time time)
{
    const bool begins = sink.beginsFile(rows.size(), time);
    sink.add(rows, time);
    return begins;
}

void limitFileSize(rlim_t bytes)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

void TestRecordingFile::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    fTold.clear();
}

std::string TestRecordingFile::error(const std::function<void()>& action) const
{
    try {
        action();
    } catch (const std::runtime_error& caught) {
        return caught.what();
    }
    return {};
}

void TestRecordingFile::aNewFileHasItsHeaderAndTheRows()
{
    FileSink sink(path().toStdString(), form, now, fTell);
    QCOMPARE(bytesOf(path()), QByteArray("time,a\r\n"));
    put(sink, "1.000,2\r\n", 1s);
    put(sink, "2.000,2\r\n3.000,2\r\n", 3s);
    QCOMPARE(bytesOf(path()), QByteArray("time,a\r\n1.000,2\r\n2.000,2\r\n3.000,2\r\n"));
    QCOMPARE(sink.bytes(), std::uint64_t(35));
    QVERIFY(!sink.isContinued());
    QVERIFY(sink.freeBytes().value_or(0) > 0);
    sink.finish();
}

void TestRecordingFile::aRecordingIsContinued_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::newRow("header") << QByteArray("time,a\r\n");
    QTest::newRow("one row") << QByteArray("time,a\r\n1.000,2\r\n");
    QTest::newRow("rows") << QByteArray("time,a\r\n1.000,2\r\n100.000,\"a,b\"\r\n");
    QTest::newRow("large rows") << QByteArray("time,a\r\n1.000," + QByteArray(300000, '1') +
                                              "\r\n2.000," + QByteArray(300000, '2') + "\r\n");
}

void TestRecordingFile::aRecordingIsContinued()
{
    QFETCH(QByteArray, before);
    writeBytes(path(), before);
    FileSink sink(path().toStdString(), form, now, fTell);
    QVERIFY(sink.isContinued());
    put(sink, "101.000,2\r\n", 101s);
    QCOMPARE(bytesOf(path()), before + "101.000,2\r\n");
    QCOMPARE(sink.bytes(), std::uint64_t(bytesOf(path()).size()));
    QVERIFY(fTold.isEmpty());
}

void TestRecordingFile::aRowThatIsNotWholeIsCutAndTold()
{
    for (const QByteArray torn : {"2.000,\"ab", "2", "\r", "2.0,\0\0"}) {
        for (const QByteArray whole : {"time,a\r\n", "time,a\r\n1.000,2\r\n"}) {
            writeBytes(path(), whole + torn);
            FileSink sink(path().toStdString(), form, now, fTell);
            put(sink, "3.000,2\r\n", 3s);
            QCOMPARE(bytesOf(path()), whole + "3.000,2\r\n");
            QCOMPARE(fTold.size(), 1);
            QVERIFY2(fTold[0].contains("last " + QString::number(torn.size()) + " bytes"),
                     qPrintable(fTold[0]));
            fTold.clear();
        }
    }
}

void TestRecordingFile::whateverIsNoSuchRecordingIsRefusedAndStays_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("message");
    QTest::newRow("other columns") << QByteArray("time,b\r\n1.000,2\r\n") << "these columns";
    QTest::newRow("more columns") << QByteArray("time,a,b\r\n") << "these columns";
    QTest::newRow("begin of a header") << QByteArray("time,") << "these columns";
    QTest::newRow("letter") << QByteArray("Dear Ada,\nhow are you?\n") << "these columns";
    QTest::newRow("row with more") << QByteArray("time,a\r\n1.000,2,3\r\n") << "does not fit";
    QTest::newRow("no time") << QByteArray("time,a\r\nx,2\r\n") << "does not fit";
    QTest::newRow("no number") << QByteArray("time,a\r\nnan,2\r\n") << "does not fit";
    QTest::newRow("endless time") << QByteArray("time,a\r\n1e300,2\r\n") << "does not fit";
    QTest::newRow("time before all") << QByteArray("time,a\r\n-0.5,2\r\n") << "does not fit";
    QTest::newRow("empty row") << QByteArray("time,a\r\n\r\n") << "does not fit";
    QTest::newRow("future") << QByteArray("time,a\r\n100.001,2\r\n") << "still to come";
    QTest::newRow("bad and torn") << QByteArray("time,a\r\nx,2\r\n3.0") << "does not fit";
}

void TestRecordingFile::whateverIsNoSuchRecordingIsRefusedAndStays()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, message);
    writeBytes(path(), before);
    const std::string said = error([&] { FileSink(path().toStdString(), form, now, fTell); });
    QVERIFY2(said.find(message.toStdString()) != std::string::npos, said.c_str());
    QVERIFY2(said.find(path().toStdString()) != std::string::npos, said.c_str());
    QCOMPARE(bytesOf(path()), before);
}

void TestRecordingFile::nothingIsRecordedIntoAPipeOrAFolder()
{
    QCOMPARE(::mkfifo(path().toLocal8Bit().constData(), 0600), 0);
    for (const QString& wrong : {path(), fFolder->path()}) {
        const std::string said = error([&] { FileSink(wrong.toStdString(), form, now, fTell); });
        QVERIFY2(said.find("cannot record into") != std::string::npos, said.c_str());
    }
}

void TestRecordingFile::aFileHasOneRecorder()
{
    const FileSink first(path().toStdString(), form, now, fTell);
    const std::string said = error([&] { FileSink(path().toStdString(), form, now, fTell); });
    QVERIFY2(said.find("by another program") != std::string::npos, said.c_str());
}

void TestRecordingFile::aFullDiskLeavesWholeRows()
{
    std::signal(SIGXFSZ, SIG_IGN);
    FileSink sink(path().toStdString(), form, now, fTell);
    put(sink, "1.000,2\r\n", 1s);
    limitFileSize(22);
    const std::string said = error([&] { put(sink, "2.000,2\r\n", 2s); });
    limitFileSize(RLIM_INFINITY);
    QVERIFY2(said.find("cannot write") != std::string::npos, said.c_str());
    QVERIFY2(said.find("until 1.000") != std::string::npos, said.c_str());
    QCOMPARE(bytesOf(path()), QByteArray("time,a\r\n1.000,2\r\n"));
}

void TestRecordingFile::anErrorOfTheDiskIsToldAtTheEnd()
{
    const int before = syncs;
    FileSink sink(path().toStdString(), form, now, fTell);
    TRY_VERIFY(syncs > before);
    badSyncs = 1;
    put(sink, "1.000,2\r\n", 1s);
    TRY_VERIFY(badSyncs == 0); // who brings it to the disk now hears of no error
    const std::string said = error([&] { sink.finish(); });
    QVERIFY2(said.find("to the disk") != std::string::npos, said.c_str());
    QVERIFY2(said.find("its last rows may be lost") != std::string::npos, said.c_str());
    QVERIFY2(said.find(path().toStdString()) != std::string::npos, said.c_str());
}

void TestRecordingFile::aFileWithoutRightsIsNamed()
{
    const std::string said = error([&] { FileSink("/proc/version", form, now, fTell); });
    QVERIFY2(said.find("'/proc/version'") != std::string::npos, said.c_str());
}

void TestRecordingFile::anotherFileBeginsWhenOneIsFull()
{
    Rotation rotation;
    rotation.bytes = 30;
    RotatingSink sink(path().toStdString(), form, rotation, fTell);
    QVERIFY(QDir(fFolder->path()).isEmpty());
    put(sink, "1.000,2\r\n", 1s);
    put(sink, "1.500,2\r\n", 1500ms);
    put(sink, "1.800,2\r\n", 1800ms);
    put(sink, "5.000,234567890123456789012345678901\r\n", 5s); // larger than any file may be
    put(sink, "6.000,2\r\n", 6s);
    sink.finish();
    const auto read = [&](const char* name) { return bytesOf(fFolder->filePath(name)); };
    QCOMPARE(read("a-19700101T000001.000Z.csv"), QByteArray("time,a\r\n1.000,2\r\n1.500,2\r\n"));
    QCOMPARE(read("a-19700101T000001.800Z.csv"), QByteArray("time,a\r\n1.800,2\r\n"));
    QCOMPARE(read("a-19700101T000005.000Z.csv"),
             QByteArray("time,a\r\n5.000,234567890123456789012345678901\r\n"));
    QCOMPARE(read("a-19700101T000006.000Z.csv"), QByteArray("time,a\r\n6.000,2\r\n"));
    QCOMPARE(sink.bytes(), std::uint64_t(4 * 8 + 4 * 9 + 38));
}

void TestRecordingFile::anotherFileBeginsWhenOneIsOld()
{
    Rotation rotation;
    rotation.time = 10s;
    RotatingSink sink(path().toStdString(), form, rotation, fTell);
    for (const auto time : {1s, 2s, 10s, 11s, 12s})
        put(sink, std::to_string(time.count()) + ".000,2\r\n", time);
    QCOMPARE(QDir(fFolder->path()).entryList(QDir::Files),
             (QStringList{"a-19700101T000001.000Z.csv", "a-19700101T000011.000Z.csv"}));
    QCOMPARE(bytesOf(fFolder->filePath("a-19700101T000011.000Z.csv")),
             QByteArray("time,a\r\n11.000,2\r\n12.000,2\r\n"));
}

void TestRecordingFile::aFileThatIsThereIsNeverReplaced()
{
    writeBytes(fFolder->filePath("a-19700101T000001.000Z.csv"), "mine");
    RotatingSink sink(path().toStdString(), form, {1, 0s}, fTell);
    put(sink, "1.000,2\r\n", 1s);
    QCOMPARE(bytesOf(fFolder->filePath("a-19700101T000001.000Z.csv")), QByteArray("mine"));
    QCOMPARE(bytesOf(fFolder->filePath("a-19700101T000001.000Z-2.csv")),
             QByteArray("time,a\r\n1.000,2\r\n"));
}

void TestRecordingFile::aFileThatIsMovedIsFollowedByAnother()
{
    FileSink sink(path().toStdString(), form, now, fTell);
    QVERIFY(!put(sink, "1.000,2\r\n", 1s));
    const QString moved = fFolder->filePath("b.csv");
    QVERIFY(QFile::rename(path(), moved));
    QVERIFY(put(sink, "2.000,2\r\n", 2s));
    QVERIFY(!put(sink, "3.000,2\r\n", 3s));
    sink.finish();
    QCOMPARE(bytesOf(moved), QByteArray("time,a\r\n1.000,2\r\n"));
    QCOMPARE(bytesOf(path()), QByteArray("time,a\r\n2.000,2\r\n3.000,2\r\n"));
    QCOMPARE(sink.bytes(), std::uint64_t(2 * 8 + 3 * 9));
    QCOMPARE(fTold.size(), 1);
    QVERIFY2(fTold[0].contains("was moved: rows go on in a new one"), qPrintable(fTold[0]));
}

void TestRecordingFile::aFileThatIsDeletedIsTold()
{
    FileSink sink(path().toStdString(), form, now, fTell);
    QVERIFY(QFile::remove(path()));
    put(sink, "1.000,2\r\n", 1s);
    QCOMPARE(bytesOf(path()), QByteArray("time,a\r\n1.000,2\r\n"));
    QVERIFY2(fTold.value(0).contains("deleted, and its rows are lost"), "nothing was told");
    QVERIFY(QFile::remove(path()));
    const std::string said = error([&] { sink.finish(); });
    QVERIFY2(said.find("deleted, and its rows are lost") != std::string::npos, said.c_str());
}

void TestRecordingFile::anotherFileInItsPlaceIsNotTouched()
{
    FileSink sink(path().toStdString(), form, now, fTell);
    QVERIFY(QFile::rename(path(), fFolder->filePath("b.csv")));
    writeBytes(path(), "mine");
    const std::string said = error([&] { put(sink, "1.000,2\r\n", 1s); });
    QVERIFY2(said.find("which is not replaced") != std::string::npos, said.c_str());
    QCOMPARE(bytesOf(path()), QByteArray("mine"));
}

void TestRecordingFile::aFileThatOthersWriteIntoIsLeft_data()
{
    QTest::addColumn<QByteArray>("others");
    QTest::newRow("cut") << QByteArray("time,a\r\n");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("more") << QByteArray("time,a\r\n1.000,2\r\n1.500,2\r\n");
}

void TestRecordingFile::aFileThatOthersWriteIntoIsLeft()
{
    QFETCH(QByteArray, others);
    FileSink sink(path().toStdString(), form, now, fTell);
    put(sink, "1.000,2\r\n", 1s);
    writeBytes(path(), others);
    for (const auto& action : {std::function<void()>([&] { put(sink, "2.000,2\r\n", 2s); }),
                               std::function<void()>([&] { sink.finish(); })}) {
        const std::string said = error(action);
        QVERIFY2(said.find("was changed by another program") != std::string::npos, said.c_str());
    }
    QCOMPARE(bytesOf(path()), others);
}

void TestRecordingFile::aRotatedFileThatIsMovedIsFollowedByAnother()
{
    RotatingSink sink(path().toStdString(), form, {1000, 0s}, fTell);
    QVERIFY(put(sink, "1.000,2\r\n", 1s));
    QVERIFY(!put(sink, "2.000,2\r\n", 2s));
    QVERIFY(QFile::remove(fFolder->filePath("a-19700101T000001.000Z.csv")));
    QVERIFY(put(sink, "3.000,2\r\n", 3s));
    QCOMPARE(bytesOf(fFolder->filePath("a-19700101T000003.000Z.csv")),
             QByteArray("time,a\r\n3.000,2\r\n"));
    QVERIFY2(fTold.value(0).contains("deleted, and its rows are lost"), "nothing was told");
}

void TestRecordingFile::filesOfARotationAreNotNamedAfterAFolder()
{
    for (const QString& folder : {fFolder->path(), fFolder->path() + "/new/"}) {
        const std::string said = error([&] {
            RotatingSink(folder.toStdString(), form, {1000, 0s}, fTell);
        });
        QVERIFY2(said.find("': it is a folder; add the name") != std::string::npos, said.c_str());
    }
}

REGISTER_TEST(TestRecordingFile, NoApplication)
#include "tst_recording_file.moc"
