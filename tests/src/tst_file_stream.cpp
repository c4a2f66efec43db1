// SPDX-License-Identifier: MIT
#include "broken_pipe_shield.h"
#include "file_stream.h"
#include "support/config_files.h"
#include "support/files.h"
#include "support/forked_action.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "support/watched_thread.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#if QT_VERSION_MAJOR == 5
#include <QTextCodec>
#endif

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int timesOpen(const QString& path)
{
    int count = 0;
    const QDir descriptors("/proc/self/fd");
    for (const QString& each : descriptors.entryList(QDir::System | QDir::Files)) {
        if (QFile::symLinkTarget(descriptors.filePath(each)) == path)
            ++count;
    }
    return count;
}

// What the system tells about an open file of this process, in the words of fcntl; -1 when there
// is not exactly one at the path.
int flagsOf(const QString& path)
{
    const QDir descriptors("/proc/self/fd");
    QStringList found;
    for (const QString& each : descriptors.entryList(QDir::System | QDir::Files)) {
        if (QFile::symLinkTarget(descriptors.filePath(each)) == path)
            found += each;
    }
    if (found.size() != 1)
        return -1;
    const QByteArray info = bytesOf("/proc/self/fdinfo/" + found.first());
    const QByteArray flags = info.mid(info.indexOf("flags:") + 6);
    return flags.left(flags.indexOf('\n')).trimmed().toInt(nullptr, 8);
}

#if QT_VERSION_MAJOR == 5
/// What the toolkit takes for the encoding of the locale, until its end. Later ones know UTF-8
/// only.
class LocaleEncoding
{
public:
    explicit LocaleEncoding(const QByteArray& name)
        : fBefore(QTextCodec::codecForLocale()), fCodec(QTextCodec::codecForName(name))
    {
        QTextCodec::setCodecForLocale(fCodec);
    }
    ~LocaleEncoding() { QTextCodec::setCodecForLocale(fBefore); }
    LocaleEncoding(const LocaleEncoding&) = delete;
    LocaleEncoding& operator=(const LocaleEncoding&) = delete;

    bool isKnown() const { return fCodec; }

private:
    QTextCodec* fBefore;
    QTextCodec* fCodec;
};
#endif

/// A pipe's name in a folder, with nobody at either end.
bool makePipe(const QString& path)
{
    return mkfifo(path.toUtf8().constData(), 0600) == 0;
}

/// The reading end of a pipe that lies in a folder.
class PipeReader
{
public:
    explicit PipeReader(const QString& path)
        : fMade(makePipe(path)),
          fFile(open(path.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~PipeReader() { stop(); }
    PipeReader(const PipeReader&) = delete;
    PipeReader& operator=(const PipeReader&) = delete;

    bool isOpen() const { return fMade && fFile >= 0; }

    /// Waits until the writer can write no more.
    bool waitUntilFull() const
    {
        const int size = fcntl(fFile, F_GETPIPE_SZ);
        return QTest::qWaitFor([&] { return waiting() == size; }, patience);
    }

    /// All that comes until the writer closes its end, or takes longer than a test has.
    QByteArray readAll() const
    {
        QByteArray all;
        char bytes[1000];
        for (ssize_t got = 1; got > 0;) {
            pollfd input{fFile, POLLIN, 0};
            got = poll(&input, 1, patience) > 0 ? read(fFile, bytes, sizeof bytes) : 0;
            all.append(bytes, static_cast<int>(qMax<ssize_t>(got, 0)));
        }
        return all;
    }

    void stop()
    {
        if (fFile >= 0)
            close(fFile);
        fFile = -1;
    }

private:
    int waiting() const
    {
        int bytes = 0;
        return ioctl(fFile, FIONREAD, &bytes) == 0 ? bytes : -1;
    }

    bool fMade;
    int fFile;
};

/// Whether `action` comes back at all: in a process of its own, as nothing else would end it.
template <class Action>
bool returns(Action action)
{
    ForkedAction child([&action] {
        action();
        return 0;
    });
    return child.waitForExit() == 0;
}

/// A configuration of several times what a pipe holds.
boost::shared_ptr<Module> largeModule()
{
    auto module = newModule();
    for (int i = 0; i < 5000; ++i)
        addEntry(*module, std::to_string(i), std::string(40, 'x'));
    return module;
}

sigset_t pipeSignal()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

bool isBlocked()
{
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return sigismember(&blocked, SIGPIPE) == 1;
}

bool isPending()
{
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

/// How files are opened, whatever a path names, and given back.
class TestFileStream : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void aPathOutsideAsciiIsOpened_data();
    void aPathOutsideAsciiIsOpened();
    void newFilesAreForWhomTheUserAllows_data();
    void newFilesAreForWhomTheUserAllows();
    void aFolderOrAPipeCannotBeSavedTo();
    void aPipeIsGivenEveryByteHoweverSlowItsReader();
    void aReaderThatIsGoneDoesNotEndTheProcess();
    void aSignalThatWasPendingBeforeStaysSo();
    void aFailedWriteGoesUnnoticed();
    void whatIsNoOrdinaryFileCannotBeLoaded();
    void aTerminalThatIsOpenedDoesNotBecomeTheMaster();
    void aFileBeyondTheLimitCannotBeLoaded();
    void onlyASuccessfulLoadLeavesTheFileOpen();
    void savingClosesTheFile();
    void otherProgramsDoNotInheritTheFile();

private:
    QString path(const QString& name) const { return fFolder->filePath(name); }

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestFileStream::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(fFolder->isValid());
}

void TestFileStream::aPathOutsideAsciiIsOpened_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::newRow("UTF-8") << QByteArray("UTF-8");
#if QT_VERSION_MAJOR == 5
    for (const char* encoding : {"ISO-8859-1", "US-ASCII"})
        QTest::newRow(encoding) << QByteArray(encoding);
#endif
}

// Whatever the toolkit takes for the encoding of the locale. Also run in other locales.
void TestFileStream::aPathOutsideAsciiIsOpened()
{
    QFETCH(QByteArray, encoding);
#if QT_VERSION_MAJOR == 5
    const LocaleEncoding other(encoding);
    QVERIFY(other.isKnown());
#endif
    const QByteArray bytes = fFolder->path().toUtf8() + "/Schl\xC3\xBCssel \xE2\x82\xAC.xml";
    const QString name = QString::fromUtf8(bytes);
    const auto module = newModule();
    addEntry(*module, "a", "a");
    ConfigManager::saveConfigurationFile(module->fModel, name);
    QCOMPARE(access(bytes.constData(), R_OK), 0);
    ConfigManager::loadConfigurationFile(module, name);
    QCOMPARE(module->fModel->fSTMVals.size(), std::size_t(2));
    QCOMPARE(unlink(bytes.constData()), 0);
    QVERIFY(loadMessage(module, name).contains(name));
    QVERIFY(saveMessage(module, name + "/none").contains(name));
}

void TestFileStream::newFilesAreForWhomTheUserAllows_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("mode");
    QTest::newRow("everybody") << 0 << 0666;
    QTest::newRow("the group") << 0017 << 0660;
    QTest::newRow("the user") << 0077 << 0600;
}

void TestFileStream::newFilesAreForWhomTheUserAllows()
{
    QFETCH(int, mask);
    QFETCH(int, mode);
    const mode_t before = umask(static_cast<mode_t>(mask));
    ConfigManager::saveConfigurationFile(newModule()->fModel, path("keys.xml"));
    umask(before);
    struct stat status = {};
    QCOMPARE(stat(path("keys.xml").toUtf8().constData(), &status), 0);
    QCOMPARE(static_cast<int>(status.st_mode & 0777), mode);
}

void TestFileStream::aFolderOrAPipeCannotBeSavedTo()
{
    QVERIFY(makePipe(path("pipe")));
    for (const QString& name : {path("pipe"), fFolder->path()}) {
        QVERIFY(returns([&name] { saveMessage(newModule(), name); }));
        QCOMPARE(saveMessage(newModule(), name),
                 "Failed to open location " + name +
                     " for writing.\n%2\nConfiguration file will not be saved.");
    }
}

void TestFileStream::aPipeIsGivenEveryByteHoweverSlowItsReader()
{
    const auto module = largeModule();
    ConfigManager::saveConfigurationFile(module->fModel, path("keys.xml"));
    PipeReader reader(path("pipe"));
    QVERIFY(reader.isOpen());
    QString message("none yet");
    WatchedThread saving([&] { message = saveMessage(module, path("pipe")); });
    const bool wasFull = reader.waitUntilFull();
    const QByteArray got = reader.readAll();
    reader.stop();
    saving.join();
    QVERIFY(wasFull);
    QCOMPARE(message, QString());
    QVERIFY(got == bytesOf(path("keys.xml")));
}

// In a process of its own, as the signal would end it.
void TestFileStream::aReaderThatIsGoneDoesNotEndTheProcess()
{
    const auto module = largeModule();
    PipeReader reader(path("pipe"));
    QVERIFY(reader.isOpen());
    ForkedAction child([&] {
        reader.stop();
        const bool quiet = saveMessage(module, path("pipe")).isEmpty();
        return quiet && !isBlocked() && !isPending() ? 0 : 1;
    });
    const bool wasFull = reader.waitUntilFull();
    reader.stop();
    QCOMPARE(child.waitForExit(), 0);
    QVERIFY(wasFull);
}

void TestFileStream::aSignalThatWasPendingBeforeStaysSo()
{
    ForkedAction child([] {
        const sigset_t set = pipeSignal();
        pthread_sigmask(SIG_BLOCK, &set, nullptr);
        std::raise(SIGPIPE);
        {
            const BrokenPipeShield shield;
        }
        return isBlocked() && isPending() ? 0 : 1;
    });
    QCOMPARE(child.waitForExit(), 0);
}

void TestFileStream::aFailedWriteGoesUnnoticed()
{
    QCOMPARE(saveMessage(newModule(), "/dev/full"), QString());
}

void TestFileStream::whatIsNoOrdinaryFileCannotBeLoaded()
{
    QVERIFY(makePipe(path("pipe")));
    const QString begin = "Could not parse XML from location ";
    const QString end = ".\nConfiguration file will not be loaded.";
    QCOMPARE(loadMessage(newModule(), fFolder->path()),
             begin + fFolder->path() + ".\nFailed to open file: it is a directory" + end);
    for (const QString& name : {path("pipe"), QString("/dev/zero"), QString("/dev/null")}) {
        QVERIFY(returns([&name] { loadMessage(newModule(), name); }));
        QCOMPARE(loadMessage(newModule(), name),
                 begin + name + ".\nFailed to open file: it is a device or a pipe" + end);
    }
}

// In a process of its own, of which a terminal that it opens could become the master.
void TestFileStream::aTerminalThatIsOpenedDoesNotBecomeTheMaster()
{
    const int end = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(grantpt(end) == 0 && unlockpt(end) == 0);
    const QString name = ptsname(end);
    ForkedAction child([&name] {
        setsid();
        const bool isRefused = loadMessage(newModule(), name).contains("a device or a pipe");
        return isRefused && open("/dev/tty", O_RDWR | O_CLOEXEC) < 0 ? 0 : 1;
    });
    QCOMPARE(child.waitForExit(), 0);
    close(end);
}

void TestFileStream::aFileBeyondTheLimitCannotBeLoaded()
{
    const QString name = path("large.xml");
    writeBytes(name, "<stm_viewer/>");
    QVERIFY(QFile::resize(name, 3000000000));
    QCOMPARE(loadMessage(newModule(), name), "Could not parse XML from location " + name +
                                                 ".\nError: the file is larger than 64 MiB.\n"
                                                 "Configuration file will not be loaded.");
}

void TestFileStream::onlyASuccessfulLoadLeavesTheFileOpen()
{
    const QString name = QFileInfo(fFolder->path()).canonicalFilePath() + "/given.xml";
    writeBytes(name, "<stm_viewer/>");
    ConfigManager::loadConfigurationFile(newModule(), name);
    QCOMPARE(timesOpen(name), 1);
    ConfigManager::loadConfigurationFile(newModule(), name);
    QCOMPARE(timesOpen(name), 2);
    for (const char* bad : {"", "<other/>", "<stm_viewer>"}) {
        writeBytes(name, bad);
        QVERIFY(!loadMessage(newModule(), name).isEmpty());
    }
    QCOMPARE(timesOpen(name), 2);
}

void TestFileStream::savingClosesTheFile()
{
    const QString name = QFileInfo(fFolder->path()).canonicalFilePath() + "/saved.xml";
    ConfigManager::saveConfigurationFile(newModule()->fModel, name);
    QCOMPARE(timesOpen(name), 0);
}

// While the file is being written, and behind a load.
void TestFileStream::otherProgramsDoNotInheritTheFile()
{
    const QString name = QFileInfo(fFolder->path()).canonicalFilePath() + "/keys.xml";
    const auto module = newModule();
    module->fModel->fMutex->lockWrite();
    QString message("none yet");
    WatchedThread saving([&] { message = saveMessage(module, name); });
    const bool isOpen = QTest::qWaitFor([&] { return timesOpen(name) == 1; }, patience);
    const int flags = flagsOf(name);
    module->fModel->fMutex->unlockWrite();
    QVERIFY(isOpen);
    saving.join();
    QCOMPARE(message, QString());
    QCOMPARE(flags & (O_ACCMODE | O_CLOEXEC), O_WRONLY | O_CLOEXEC);
    ConfigManager::loadConfigurationFile(module, name);
    QCOMPARE(flagsOf(name) & (O_ACCMODE | O_CLOEXEC), O_RDONLY | O_CLOEXEC);
}

REGISTER_TEST(TestFileStream, QCoreApplication)
#include "tst_file_stream.moc"
